#pragma once

#include "journals/forms/journalparts.h"
#include "journals/keys.h"
#include "journals/periodabsence.h"

#include <QDate>
#include <QDialog>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace journals {

namespace Ui {
class frmHPosStudPer;
}

// "Пропуск на период": one or several students miss every lesson from one date to another.
// Where the group has several lessons at one time the same window asks, one after the other,
// which of them the student attends; nothing is written before the last answer.
class frmHPosStudPer final : public QDialog
{
    Q_OBJECT

public:
    struct Candidate
    {
        StudentId id{};
        QString name;
        bool checked = true;
    };

    // What is written becomes one step of the history.
    frmHPosStudPer(const JournalParts& parts, History& history,
                   const std::vector<Candidate>& students, QDate from, QDate to,
                   QWidget* parent = nullptr);
    ~frmHPosStudPer() override;

    bool wrote() const { return m_wrote; }

private:
    PeriodRequest request() const;
    void setUpTexts();
    void goOn();
    void begin();
    void showConflict(const PeriodConflict& conflict);
    void finish();
    void showHelp();

    JournalParts m_parts;
    History& m_history;
    std::unique_ptr<Ui::frmHPosStudPer> ui;
    std::optional<PeriodAbsence> m_period; // once conflicts are being settled
    int m_asked = 0;
    bool m_wrote = false;
};

} // namespace journals
