#include "shell/forms/outsidechange.h"

#include "shell/files/filetexts.h"
#include "shell/files/filewatch.h"
#include "shell/forms/filecommands.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"

using namespace Qt::StringLiterals;

namespace shell {

OutsideChange::OutsideChange(Session& session, Prompt& prompt, FileCommands& files,
                             FileWatch& watch, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_prompt(prompt)
    , m_files(files)
    , m_watch(watch)
{
    connect(&watch, &FileWatch::refused, this, &OutsideChange::tell);
    connect(&session, &Session::journalChanged, this, [this] { m_told = false; });
}

void OutsideChange::look()
{
    if (m_watch.state() == FileWatch::State::Untouched) {
        m_told = false; // the drive is back
        return;
    }
    const auto stamp = FileStamp::of(m_session.journal().filePath());
    if (!m_told || stamp != m_toldOf) {
        tell();
    }
}

void OutsideChange::tell()
{
    const FileWatch::State state = m_watch.state();
    if (m_telling || state == FileWatch::State::Untouched) {
        return;
    }
    m_telling = true; // a box takes the window's activity and gives it back
    m_told = true;
    m_toldOf = FileStamp::of(m_session.journal().filePath());
    const QString file = quotedPath(m_session.journal().path());
    if (state == FileWatch::State::Gone) {
        m_prompt.exclamation(
            u"Файл базы данных %1 недоступен: он удален, перемещен или диск отключен. Изменения "
            "не записываются. Верните файл на место и повторите."_s.arg(file));
    } else if (m_prompt.question(
                   u"Файл базы данных %1 изменен другой программой. Открыть его заново?\n\nПока "
                   "файл не открыт заново, изменения не записываются."_s.arg(file),
                   Answer::Yes)) {
        m_files.reload();
    }
    m_telling = false;
}

} // namespace shell
