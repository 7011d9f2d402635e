#pragma once

#include "shell/access/rights.h"
#include "shell/forms/journalactions.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

class QAction;

namespace shell {

class Prompt;

// What must be there for a command to be enabled.
enum class Needs {
    Nothing,
    OpenFile,
    WritableFile, // open, and not for reading only
    NotReadOnly,  // no file, or a writable one
    ChildWindow,
};

// Ties the menu's actions to what carries them out and keeps them enabled exactly while
// they can do something. An action that is tied to nothing is disabled, not missing.
class Commands final : public QObject
{
    Q_OBJECT

public:
    // `actions` are all that may ever be tied; they begin disabled.
    Commands(const QList<QAction*>& actions, Prompt& prompt, QObject* parent);

    // What the body throws is told to the user.
    void bind(QAction* action, Needs needs, std::function<void()> body);
    // The action goes to the active journal.
    void bindJournal(QAction* action, JournalAction what);

    // Whether the open file may be changed; in force from the next refresh().
    void setWritable(bool writable) { m_writable = writable; }
    // To be called when the file, the active child window, the user or the tied commands change.
    void refresh(bool fileOpen, QWidget* activeChild, Role role);

private:
    struct Bound
    {
        QAction* action;
        Needs needs;
    };
    struct JournalBound
    {
        QAction* action;
        JournalAction what;
        QString caption; // the usual one
    };
    void refreshJournal();

    bool mayBeDone(Needs needs, bool fileOpen, const QWidget* activeChild) const;

    Prompt& m_prompt;
    bool m_writable = true;
    std::vector<Bound> m_bound;
    std::vector<JournalBound> m_journalBound;
    QPointer<JournalActions> m_journal; // the active child window, if it is a journal
    QMetaObject::Connection m_watch;
};

} // namespace shell
