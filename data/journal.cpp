#include "data/journal.h"

#include "data/convert.h"
#include "data/fileversion.h"
#include "data/messages.h"
#include "data/structure.h"
#include "data/upgrade.h"
#include "jet/error.h"
#include "jet/storage/file.h"
#include "jet/storage/store.h"

#include <QFileInfo>

#include <exception>
#include <filesystem>
#include <utility>

using namespace Qt::StringLiterals;

namespace data {

namespace {

// A refusal whose message is settled; leaves the transaction to be rolled back.
struct Refusal
{
    QString message;
};

// The version rule: true when the file was last written by a later release.
bool isNewer(jet::Database& database, const QString& path)
{
    if (!database.hasTable("RASP"))
        throw Refusal{u"Файл "_s + path
                      + u" не является базой данных журнала: в нем нет таблицы RASP."_s};
    const auto version = fileVersion(database);
    if (!version)
        throw Refusal{u"Файл базы данных "_s + path
                      + u" не открыт: в таблице RASP нет строки с настройками."_s};
    return version->number() > programVersion().number();
}

void check(jet::Database& database)
{
    structure::createMissingTables(database);
    if (const auto problem = structure::problem(database))
        throw Refusal{*problem};
}

void bringUpToDate(jet::Database& database)
{
    upgrade::addFields(database);
    upgrade::resizeFields(database);
    upgrade::refillMonths(database);
    upgrade::appendSupplement(database);
}

void tellNewer(Messages& messages)
{
    messages.information(u"Версия базы данных новее, чем версия программы. Для работы с этой "
                         "базой рекомендуется обновить программу."_s);
}

std::unique_ptr<jet::Database> openForReading(const QString& path, Messages& messages)
{
    if (!QFileInfo(path).isFile())
        throw Refusal{u"Файл базы данных "_s + path + u" не найден!"_s};
    auto database = jet::Database::open(toPath(path), jet::OpenMode::ReadOnly);
    if (isNewer(*database, path))
        tellNewer(messages);
    else if (fileVersion(*database)->number() < programVersion().number())
        throw Refusal{u"Файл базы данных "_s + path
                      + u" сохранен прежней версией программы и должен быть обновлен. Сначала "
                        "откройте его для изменения."_s};
    if (const auto problem = structure::problem(*database))
        throw Refusal{*problem};
    return database;
}

std::unique_ptr<jet::Database> openExisting(jet::FileSystem& files, const QString& path,
                                            Messages& messages, const OpenHooks& hooks)
{
    const auto file = toPath(path);
    if (!files.exists(file) || QFileInfo(path).isDir())
        throw Refusal{u"Файл базы данных "_s + path + u" не найден!"_s};
    auto database = jet::Database::open(files, file, jet::OpenMode::Exclusive);
    if (database->store().isOlderFormat())
        throw Refusal{u"Файл базы данных "_s + path
                      + u" сохранен в Access 95/97 и открывается только для чтения. Чтобы вести "
                        "в нем журнал, сначала сожмите его: он получит нынешний формат."_s};
    database->store().setBeforeChange([called = false, call = hooks.beforeUpgrade]() mutable {
        if (call && !std::exchange(called, true))
            call();
    });
    jet::Transaction transaction(*database);
    const bool newer = isNewer(*database, path);
    if (newer)
        tellNewer(messages);
    check(*database);
    bringUpToDate(*database);
    if (!newer)
        stampFile(*database);
    transaction.commit();
    database->store().setBeforeChange({});
    return database;
}

void fillNew(jet::Database& database)
{
    jet::Transaction transaction(database);
    check(database);
    upgrade::addSettingsRow(database);
    bringUpToDate(database);
    stampFile(database);
    transaction.commit();
}

// The failure that led here is the one to tell.
void removeQuietly(jet::FileSystem& files, const std::filesystem::path& file)
{
    try {
        files.remove(file);
    } catch (const jet::Error&) {
    }
}

std::unique_ptr<jet::Database> createNew(jet::FileSystem& files, const QString& path)
{
    const auto file = toPath(path);
    auto database = jet::Database::create(files, file, {.encoded = true});
    try {
        fillNew(*database);
    } catch (...) {
        database.reset();
        removeQuietly(files, file);
        throw;
    }
    return database;
}

// Runs what opens or creates the file at `path` and tells why it could not.
template <class Body>
std::unique_ptr<jet::Database> guarded(const QString& path, const QString& failed,
                                       Messages& messages, const OpenHooks& hooks, Body body)
{
    try {
        return body();
    } catch (const Refusal& refusal) {
        messages.critical(refusal.message);
    } catch (const jet::Error& error) {
        if (!hooks.failed || !hooks.failed(error))
            messages.critical(u"Файл базы данных "_s + path + failed + fromUtf8(error.what())
                              + u'.');
    } catch (const std::exception& error) {
        messages.critical(u"Файл базы данных "_s + path + failed + fromUtf8(error.what()) + u'.');
    }
    return nullptr;
}

const QString kNotOpened = u" не открыт. Ошибка: "_s;
const QString kNotCreated = u" не создан. Ошибка: "_s;

} // namespace

std::unique_ptr<Journal> Journal::openReadOnly(const QString& path, Messages& messages,
                                               const OpenHooks& hooks)
{
    return wrapped(
        guarded(path, kNotOpened, messages, hooks, [&] { return openForReading(path, messages); }));
}

std::unique_ptr<Journal> Journal::openAndCheck(const QString& path, bool create, Messages& messages,
                                               const OpenHooks& hooks)
{
    return openAndCheck(jet::FileSystem::system(), path, create, messages, hooks);
}

std::unique_ptr<Journal> Journal::openAndCheck(jet::FileSystem& files, const QString& path,
                                               bool create, Messages& messages,
                                               const OpenHooks& hooks)
{
    return wrapped(guarded(path, create ? kNotCreated : kNotOpened, messages, hooks, [&] {
        return create ? createNew(files, path) : openExisting(files, path, messages, hooks);
    }));
}

std::unique_ptr<Journal> Journal::wrapped(std::unique_ptr<jet::Database> database)
{
    return database ? std::unique_ptr<Journal>(new Journal(std::move(database))) : nullptr;
}

Journal::Journal(std::unique_ptr<jet::Database> database)
    : m_database(std::move(database))
{}

void Journal::standFor(const QString& path, std::shared_ptr<void> keep)
{
    m_standsFor = path;
    m_keep = std::move(keep);
}

QString Journal::path() const
{
    return m_standsFor.isEmpty() ? filePath() : m_standsFor;
}

QString Journal::filePath() const
{
    return fromPath(m_database->path());
}

} // namespace data
