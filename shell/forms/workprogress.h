#pragma once

#include "shell/forms/waitcursor.h"

#include <QProgressDialog>

namespace shell {

// The box of work that reads or writes the open journal: such work stays in the thread of the
// windows, since the journal is open there. The box appears after half a second, can cancel, and
// keeps all other windows from being used while it lives.
class WorkProgress final
{
public:
    // `name` is the box's object name.
    WorkProgress(const QString& name, const QString& text, QWidget* parent);

    // Shows how far the work is, up to 100; false when the user cancelled. Events are handled in
    // here, and only once the box is up. After a cancel none are: whatever closed the box goes on
    // when the journal is no longer in use.
    bool operator()(int percent);

private:
    WaitCursor m_cursor;
    QProgressDialog m_box;
};

} // namespace shell
