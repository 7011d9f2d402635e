#pragma once

#include "journals/forms/journalparts.h"
#include "journals/gradebook.h"
#include "journals/grademodel.h"
#include "journals/journalpaper.h"
#include "shell/forms/journalactions.h"

#include <memory>

class QAction;

namespace journals {

class ColumnWidths;
class GradeSelectors;

namespace Ui {
class frmHUsp;
}

// The grades journal: selectors, a grid of students against days, months or disciplines, and
// the commands that set and delete grades.
class frmHUsp final : public shell::JournalActions
{
    Q_OBJECT

public:
    explicit frmHUsp(const JournalParts& parts, QWidget* parent = nullptr);
    ~frmHUsp() override;

    bool available(shell::JournalAction action) const override;
    QString caption(shell::JournalAction action) const override;
    void run(shell::JournalAction action) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void setUpGrid();
    void setUpCommands();
    void applyWording();

    void selectionChanged();
    bool mayLeave();
    void refresh();
    void refill();
    void showSheet();
    void goTo(int row, int column);

    void setGrade(int grade);
    void goOn();
    void chooseGrade();
    void save();
    void step(bool back);
    void computeGrades();
    bool gesture(const QKeyEvent& key);
    JournalHeading heading() const; // requires a sheet
    void refreshCommands();

    JournalParts m_parts;
    std::unique_ptr<Ui::frmHUsp> ui;
    GradeBook m_book;
    GradeModel* m_model = nullptr; // a child, so that it outlives the grid
    GradeSelectors* m_selectors = nullptr;
    ColumnWidths* m_widths = nullptr;
    QAction* m_moveRight = nullptr; // after a grade, instead of down
};

} // namespace journals
