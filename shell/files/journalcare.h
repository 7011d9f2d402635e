#pragma once

#include "shell/files/autocopies.h"
#include "shell/files/filewatch.h"
#include "shell/files/locknote.h"

#include <QObject>

#include <memory>

namespace shell {

class Session;

// What is done for the open journal without being asked: copies, the lock note, watching for
// changes from outside. Also answers Session::beforeMassAction().
class JournalCare final : public QObject
{
    Q_OBJECT

public:
    JournalCare(Session& session, Prompt& prompt, StatusLine& status, const Archive& archive,
                QObject* parent = nullptr);
    ~JournalCare() override;

    const Archive& archive() const { return m_copies.archive(); }
    AutoCopies& copies() { return m_copies; }
    FileWatch& watch() { return m_watch; }

private:
    void noteLock();

    Session& m_session;
    AutoCopies m_copies;
    FileWatch m_watch;
    std::unique_ptr<LockNote> m_note; // while the journal is open for changing
};

} // namespace shell
