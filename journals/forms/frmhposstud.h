#pragma once

#include "journals/absenceentry.h"
#include "journals/forms/journalparts.h"

#include <QDialog>

#include <memory>
#include <optional>

class QKeyEvent;
class QLineEdit;

namespace journals {

class AbsenceDayModel;

namespace Ui {
class frmHPosStud;
}

// How many hours one student missed on one date: two counts for one discipline, or all lessons
// of the day in a grid.
class frmHPosStud final : public QDialog
{
    Q_OBJECT

public:
    // Begins with the discipline, if one is given, else with the whole day. `lesson` is where a
    // first absence of the discipline goes. What is saved becomes a step of the history.
    frmHPosStud(const JournalParts& parts, History& history, AbsenceEntry entry,
                std::optional<DisciplineId> discipline, std::optional<int> lesson,
                QWidget* parent = nullptr);
    ~frmHPosStud() override;

    // Whether anything was written while it was open.
    bool wrote() const { return m_wrote; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    bool wholeDay() const;
    bool modified() const;
    void setUpTexts();
    void setUpGrid();
    void connectControls();

    void load();
    void showDiscipline();
    void showDay();
    void typeHours(QLineEdit& field, int& hours);
    bool gridKey(const QKeyEvent& key);
    void typeDigit(int digit);

    bool save();
    bool mayLoseUnplaced();
    bool keepChanges(); // before they would go; false when the user goes back
    void saveAndClose();
    void switchWay();
    void enterPeriod();
    void leave();

    JournalParts m_parts;
    History& m_history;
    AbsenceEntry m_entry;
    std::optional<DisciplineId> m_discipline;
    std::optional<int> m_lesson;
    DisciplineAbsences m_counts; // of the discipline, as entered
    bool m_countsModified = false;
    bool m_wrote = false;
    bool m_typing = false; // the next digit follows the one before it
    std::unique_ptr<Ui::frmHPosStud> ui;
    AbsenceDayModel* m_day = nullptr;
};

} // namespace journals
