#include "shell/files/journalcare.h"

#include "shell/session.h"

namespace shell {

JournalCare::JournalCare(Session& session, Prompt& prompt, StatusLine& status,
                         const Archive& archive, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_copies(archive, prompt, status)
    , m_watch(session)
{
    m_watch.setBeforeChange([this] {
        data::Journal& journal = m_session.journal();
        m_copies.beforeChange(journal.path(), journal.filePath());
    });
    session.setMassActionGuard([this](const QString& action) {
        data::Journal& journal = m_session.journal();
        return m_copies.beforeAction(journal.path(), journal.filePath(), action);
    });
    connect(&session, &Session::journalChanged, this, &JournalCare::noteLock);
    noteLock();
}

JournalCare::~JournalCare()
{
    m_session.setMassActionGuard({});
}

void JournalCare::noteLock()
{
    m_note.reset();
    if (m_session.isOpen() && !m_session.database().readOnly())
        m_note = std::make_unique<LockNote>(m_session.journal().path());
}

} // namespace shell
