#include "shell/forms/filecommands.h"

#include "data/journal.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kNotCreated = u"Создание базы данных не выполнено."_s;
const QString kNotOpened = u"Файл базы данных не был открыт."_s;
const QString kDemoFile = u"Демонстрация.mdb"_s;

class WaitCursor final
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

bool sameFile(const QString& left, const QString& right)
{
    const QString real = QFileInfo(left).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(right).canonicalFilePath();
}

} // namespace

FileCommands::FileCommands(Session& session, Settings& settings, Prompt& prompt,
                           FileChooser& chooser, StatusLine& status, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_settings(settings)
    , m_prompt(prompt)
    , m_chooser(chooser)
    , m_status(status)
{}

void FileCommands::setDemo(DemoBuilder builder, const QString& folder)
{
    m_demo = std::move(builder);
    m_demoFolder = folder;
}

bool FileCommands::create()
{
    return create(m_chooser.newJournal(startFolder()));
}

bool FileCommands::create(const QString& path)
{
    bool done = false;
    const bool ran = runCommand(m_prompt, kNotCreated,
                                [&] { done = !path.isEmpty() && take(path, Way::Create); });
    if (ran && !done) {
        m_prompt.exclamation(kNotCreated);
    }
    return done;
}

bool FileCommands::open()
{
    return open(m_chooser.openJournal(startFolder()));
}

bool FileCommands::open(const QString& path, Access access)
{
    const Way way = access == Access::Full ? Way::Open : Way::OpenReadOnly;
    bool done = false;
    const bool ran =
        runCommand(m_prompt, kNotOpened, [&] { done = !path.isEmpty() && take(path, way); });
    if (ran && !done) {
        m_prompt.exclamation(kNotOpened);
    }
    return done;
}

bool FileCommands::close()
{
    if (!m_release()) {
        return false;
    }
    m_session.closeJournal();
    m_status.show(u"Файл базы данных закрыт."_s);
    return true;
}

bool FileCommands::reveal()
{
    const bool shown = m_chooser.reveal(m_session.journal().path());
    if (!shown) {
        m_prompt.exclamation(u"Не удалось показать расположение файла: %1"_s.arg(
            QDir::toNativeSeparators(m_session.journal().path())));
    }
    return shown;
}

bool FileCommands::demonstrate()
{
    const QString path = QDir(m_demoFolder).filePath(kDemoFile);
    bool there = QFileInfo::exists(path);
    if (!there) {
        runCommand(m_prompt, u"Демонстрационный журнал не создан."_s,
                   [&] { there = buildDemo(path); });
    }
    return there && open(path);
}

// Built under another name, so that a build cut short is never taken for the whole.
bool FileCommands::buildDemo(const QString& path)
{
    const WaitCursor wait;
    const QString unfinished = path + u".part"_s;
    m_status.show(u"Создание демонстрационного журнала..."_s);
    QDir().mkpath(m_demoFolder);
    QFile::remove(unfinished);
    const bool built = m_demo(unfinished) && QFile::rename(unfinished, path);
    m_status.show({});
    return built;
}

std::unique_ptr<data::Journal> FileCommands::journalAt(const QString& path, Way way)
{
    const WaitCursor wait;
    m_status.show(way == Way::Create ? u"Создание базы данных..."_s : u"Открытие базы данных..."_s);
    auto journal = way == Way::OpenReadOnly
                       ? data::Journal::openReadOnly(path, m_prompt)
                       : data::Journal::openAndCheck(path, way == Way::Create, m_prompt);
    m_status.show({});
    return journal;
}

bool FileCommands::take(const QString& path, Way way)
{
    if (way != Way::Create && m_session.isOpen() && sameFile(path, m_session.journal().path())) {
        m_status.show(u"Этот файл уже открыт."_s);
        return true;
    }
    auto journal = journalAt(path, way);
    if (!journal) {
        return false;
    }
    if (!m_release()) {
        journal.reset();
        if (way == Way::Create) {
            QFile::remove(path);
        }
        return false;
    }
    m_session.openJournal(std::move(journal));
    m_settings.addRecentFile(QFileInfo(path).absoluteFilePath());
    m_status.show(u"Готово."_s);
    return true;
}

QString FileCommands::startFolder() const
{
    if (m_session.isOpen()) {
        return QFileInfo(m_session.journal().path()).absolutePath();
    }
    for (const QString& path : m_settings.recentFiles()) {
        if (const QFileInfo folder(QFileInfo(path).absolutePath()); folder.isDir()) {
            return folder.filePath();
        }
    }
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

} // namespace shell
