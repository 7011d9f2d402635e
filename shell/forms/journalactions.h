#pragma once

#include <QString>
#include <QWidget>

namespace shell {

// The commands that the main window passes on to the active journal.
enum class JournalAction {
    SetGrade,
    RemoveGrade,
    Mark, // set an absence
    MakeExcused,
    MakeUnexcused,
    Delete, // remove an absence
    Undo,   // take back what was done last
    Redo,
    Refresh,
    Print,
};

// The base of every child window that takes the commands of the menu "Действия", of
// "Печать..." and of F5. The main window asks available() whenever the window becomes the
// active one and on each availabilityChanged().
class JournalActions : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    // Whether the action does something in the current cell.
    virtual bool available(JournalAction action) const = 0;
    // What the menu calls the action at present, as "Отменить: пропуск, Иванов И. И., 12.11";
    // "" leaves its usual caption. Asked when available() is.
    virtual QString caption(JournalAction /*action*/) const { return {}; }
    // Carries the action out; the same path as the window's own keys and context menu.
    // May throw: the caller reports.
    virtual void run(JournalAction action) = 0;

signals:
    void availabilityChanged();
};

} // namespace shell
