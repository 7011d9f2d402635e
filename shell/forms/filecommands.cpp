#include "shell/forms/filecommands.h"

#include "data/convert.h"
#include "data/journal.h"
#include "jet/error.h"
#include "shell/files/copyfile.h"
#include "shell/files/filetexts.h"
#include "shell/files/locknote.h"
#include "shell/files/snapshot.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/waitcursor.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kNotCreated = u"Создание базы данных не выполнено."_s;
const QString kNotOpened = u"Файл базы данных не был открыт."_s;
const QString kDemoFile = u"Демонстрация.mdb"_s;

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
    return finishCommand(m_prompt, kNotCreated,
                         [&] { return !path.isEmpty() && take(path, Way::Create); });
}

bool FileCommands::open()
{
    return open(m_chooser.openJournal(startFolder()));
}

bool FileCommands::open(const QString& path, Access access)
{
    const Way way = access == Access::Full ? Way::Open : Way::OpenReadOnly;
    return finishCommand(m_prompt, kNotOpened, [&] { return !path.isEmpty() && take(path, way); });
}

bool FileCommands::openAs(const SignedIn& user, const QString& path, Access access)
{
    m_sameUser = user;
    const bool done = open(path, access);
    m_sameUser.reset();
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

bool FileCommands::reload()
{
    const QString path = m_session.journal().path();
    const SignedIn user = m_session.user();
    const bool readOnly = m_session.database().readOnly();
    return close() && openAs(user, path, readOnly ? Access::ReadOnly : Access::Full);
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
    std::optional<jet::Error> refusal;
    data::OpenHooks hooks;
    hooks.beforeUpgrade = [&] {
        if (!m_beforeUpgrade(path)) {
            throw jet::Error(jet::Fault::ReadOnly, "обновление файла отменено");
        }
    };
    hooks.failed = [&](const jet::Error& error) {
        const bool held = error.fault() == jet::Fault::Locked && way != Way::Create;
        const bool guarded = error.fault() == jet::Fault::Permission && way == Way::Open;
        if (held || guarded) {
            refusal = error;
        }
        return held || guarded;
    };
    std::unique_ptr<data::Journal> journal;
    {
        const WaitCursor wait;
        m_status.show(way == Way::Create ? u"Создание базы данных..."_s
                                         : u"Открытие базы данных..."_s);
        journal = way == Way::OpenReadOnly
                      ? data::Journal::openReadOnly(path, m_prompt, hooks)
                      : data::Journal::openAndCheck(path, way == Way::Create, m_prompt, hooks);
        m_status.show({});
    }
    if (!refusal) {
        return journal;
    }
    return way == Way::OpenReadOnly ? heldJournal(path) : offerReading(path, *refusal);
}

std::unique_ptr<data::Journal> FileCommands::offerReading(const QString& path,
                                                          const jet::Error& error)
{
    const QString file = quotedPath(path);
    const QString readOnly = u"Открыть только для чтения"_s;
    if (error.fault() == jet::Fault::Permission) {
        const QString text = u"Файл базы данных %1 нельзя изменять. Ошибка: %2."_s.arg(
            file, data::fromUtf8(error.what()));
        return m_prompt.offer(text, readOnly) ? journalAt(path, Way::OpenReadOnly) : nullptr;
    }
    const auto holder = lockHolder(path);
    const QString text =
        u"Файл базы данных %1 уже открыт: %2.\n\nДля чтения откроется то, что в нем сейчас "
        "сохранено."_s.arg(file, holder ? holder->text() : u"другой программой"_s);
    return m_prompt.offer(text, readOnly) ? heldJournal(path) : nullptr;
}

std::unique_ptr<data::Journal> FileCommands::heldJournal(const QString& path)
{
    const WaitCursor wait;
    return openSnapshot(path, m_prompt);
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
    const std::optional<SignedIn> user = m_sameUser ? m_sameUser : signIn(*journal);
    if (!user || !m_release()) {
        journal.reset();
        if (way == Way::Create) {
            QFile::remove(path);
        }
        return false;
    }
    m_session.openJournal(std::move(journal));
    m_session.signIn(*user);
    m_settings.addRecentFile(QFileInfo(path).absoluteFilePath());
    m_status.show(u"Готово."_s);
    return true;
}

std::optional<SignedIn> FileCommands::signIn(data::Journal& journal)
{
    const Users users = Users::of(journal.database());
    const auto user = users.withoutAsking();
    return user ? user : m_askUser(users);
}

bool FileCommands::changeUser()
{
    const auto user = m_askUser(Users::of(m_session.database()));
    if (!user || !m_release()) {
        return false;
    }
    m_session.signIn(*user);
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
