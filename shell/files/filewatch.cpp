#include "shell/files/filewatch.h"

#include "data/convert.h"
#include "jet/error.h"
#include "jet/storage/store.h"
#include "shell/files/filetexts.h"
#include "shell/session.h"

#include <QPointer>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace shell {

FileWatch::FileWatch(Session& session, QObject* parent)
    : QObject(parent)
    , m_session(session)
{
    connect(&session, &Session::journalChanged, this, &FileWatch::watch);
    watch();
}

FileWatch::~FileWatch()
{
    if (m_session.isOpen())
        m_session.database().store().setBeforeChange({});
}

void FileWatch::watch()
{
    m_changing = false;
    m_stamp.reset();
    if (!m_session.isOpen())
        return;
    accept();
    m_session.database().store().setBeforeChange([this] { check(); });
}

void FileWatch::accept()
{
    m_stamp = FileStamp::of(m_session.journal().filePath());
}

FileWatch::State FileWatch::state() const
{
    if (!m_session.isOpen() || m_changing)
        return State::Untouched;
    const auto now = FileStamp::of(m_session.journal().filePath());
    if (!now)
        return State::Gone;
    return now == m_stamp ? State::Untouched : State::Changed;
}

void FileWatch::check()
{
    const State found = state();
    if (found != State::Untouched) {
        QMetaObject::invokeMethod(this, &FileWatch::refused, Qt::QueuedConnection);
        const QString file = quotedPath(m_session.journal().path());
        throw found == State::Gone
            ? jet::Error(jet::Fault::NotFound,
                         data::toUtf8(u"изменение не записано: файл %1 недоступен"_s.arg(file)))
            : jet::Error(
                jet::Fault::Locked,
                data::toUtf8(
                    u"изменение не записано: файл %1 изменен другой программой"_s.arg(file)));
    }
    if (m_changing)
        return;
    if (m_beforeChange)
        m_beforeChange();
    m_changing = true;
    QMetaObject::invokeMethod(this, &FileWatch::settle, Qt::QueuedConnection);
}

// Back in the event loop, our own change has been written or dropped, unless the command
// waits with an open transaction.
void FileWatch::settle()
{
    constexpr int kAgainMilliseconds = 200;
    if (!m_changing || !m_session.isOpen())
        return;
    if (m_session.database().store().inTransaction()) {
        QTimer::singleShot(kAgainMilliseconds, this, &FileWatch::settle);
        return;
    }
    m_changing = false;
    accept();
}

} // namespace shell
