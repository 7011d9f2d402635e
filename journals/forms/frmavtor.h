#pragma once

#include "journals/autofinals.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace shell {
class Prompt;
class Session;
class StatusLine;
} // namespace shell

namespace journals {

namespace Ui {
class FrmAvtoR;
}

// Automatic grades: what to compute is chosen, "Рассчитать" shows each result beside the
// present one, and "Записать" stores those that are ticked.
class FrmAvtoR final : public QDialog
{
    Q_OBJECT

public:
    // Opens on the journal's group, discipline and month. Requires an open journal. What is
    // written becomes one step of the history.
    FrmAvtoR(shell::Session& session, shell::Prompt& prompt, shell::StatusLine& status,
             History& history, std::optional<GroupId> group, std::optional<DisciplineId> discipline,
             Month month, QWidget* parent = nullptr);
    ~FrmAvtoR() override;

signals:
    void written(); // the journal is to be filled again

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setUpTexts();
    void setUpTable();
    void fillMonths(Month month);
    void connectControls();

    FinalsKind kind() const;
    FinalsRequest request() const;
    std::vector<std::size_t> tickedRows() const;

    void groupChanged();
    void choiceChanged();
    void count();
    void write();
    void forgetPlan();
    void showPlan();
    void ticksChanged();
    void tickAll();

    shell::Session& m_session;
    shell::Prompt& m_prompt;
    shell::StatusLine& m_status;
    History& m_history;
    AutoFinals m_finals;
    std::optional<FinalsPlan> m_plan; // that the table shows
    std::unique_ptr<Ui::FrmAvtoR> ui;
};

} // namespace journals
