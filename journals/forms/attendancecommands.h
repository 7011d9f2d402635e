#pragma once

#include "journals/forms/journalparts.h"
#include "journals/studenthead.h"

#include <QModelIndexList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QAction;
class QPoint;
class QTableView;

namespace journals {

class AttendanceModel;
class History;

// The commands of the attendance journal that go beyond the cells chosen: the entry dialogs, a
// whole column, whole days, and the way back.
class AttendanceCommands final : public QObject
{
    Q_OBJECT

public:
    // All of it outlives this.
    AttendanceCommands(const JournalParts& parts, QTableView& grid, AttendanceModel& model,
                       QObject* parent);
    ~AttendanceCommands() override;

    History& history() { return *m_history; }

    // Puts a command of the window, or those of this class, into the grid's context menu after
    // what is there. The column headers get a menu of their own.
    void offer(QAction* command, const QString& text);
    void offerInMenus();

    // The selected cells, or the current one where it is not among them.
    QModelIndexList chosenCells() const;

    void enterHours();
    void enterPeriod();
    void markColumn(int column); // of the grid; all students without an absence there
    void markDays();             // all lessons of the chosen students on the chosen days
    void undo();
    void redo();
    void copy() const; // the chosen cells

    // Whether there is a cell or student to act on.
    bool hasCell() const;
    bool hasStudent() const;
    // "Отменить: пропуск, Иванов И. И., 12.11", "" when there is nothing to take back.
    QString undoCaption() const;
    QString redoCaption() const;

signals:
    void written();      // the grid is to be filled again
    void historyMoved(); // undo or redo became another

private:
    void showHeaderMenu(const QPoint& at);
    bool isCell(const QModelIndex& index) const;
    std::optional<StudentHead> studentOf(int row);
    void takeSteps(bool (History::*move)(), const QString& failed);

    JournalParts m_parts;
    QTableView& m_grid;
    AttendanceModel& m_model;
    std::unique_ptr<History> m_history;
};

} // namespace journals
