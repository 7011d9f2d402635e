#pragma once

#include "journals/attendance.h"
#include "journals/attendancemodel.h"
#include "journals/forms/journalparts.h"
#include "journals/journalpaper.h"
#include "shell/forms/journalactions.h"

#include <memory>
#include <optional>

namespace journals {

class AttendanceCommands;
class ColumnWidths;
class JournalSelectors;

namespace Ui {
class frmHPos;
}

// The attendance journal: selectors, a grid of students against days or lessons, and the
// commands that act on its cells.
class frmHPos final : public shell::JournalActions
{
    Q_OBJECT

public:
    explicit frmHPos(const JournalParts& parts, QWidget* parent = nullptr);
    ~frmHPos() override;

    // Shows a group's discipline in the month that is chosen, else in that of the working date.
    // No subgroup means all of them.
    void choose(GroupId group, std::optional<int> subgroup, DisciplineId discipline);

    bool available(shell::JournalAction action) const override;
    QString caption(shell::JournalAction action) const override;
    void run(shell::JournalAction action) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void setUpCommands();
    void setUpGrid();
    void applyWording();
    void loadSettings();
    void saveSettings();

    void refill();
    void showSheet();
    void goTo(int row, int column);
    void setMode(AttendanceMode mode);
    void wantMode(AttendanceMode mode);
    void act(AbsenceAction action);
    bool gesture(const QKeyEvent& key);
    JournalHeading heading() const; // requires a sheet
    void refreshCommands();

    AttendanceSelection selection() const;

    JournalParts m_parts;
    std::unique_ptr<Ui::frmHPos> ui;
    Attendance m_attendance;
    JournalSelectors* m_selectors = nullptr;
    AttendanceModel* m_model = nullptr; // a child, so that it outlives the grid
    AttendanceCommands* m_commands = nullptr;
    ColumnWidths* m_widths = nullptr;
    AttendanceMode m_mode = AttendanceMode::Days;
};

} // namespace journals
