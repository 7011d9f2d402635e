#include "jet/storage/recovery.h"

#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/journalstate.h"

#include <string>
#include <system_error>

namespace jet {

namespace {

// Access keeps locks on the `.ldb` beside a file that it has open.
void refuseForeignUser(FileSystem& files, const std::filesystem::path& path)
{
    for (const char* extension : {".ldb", ".LDB"}) {
        std::filesystem::path lockFile = path;
        lockFile.replace_extension(extension);
        if (!files.exists(lockFile))
            continue;
        try {
            files.open(lockFile, FileMode::ReadOnly);
        } catch (const Error& error) {
            if (error.fault() == Fault::Locked)
                throw Error(Fault::Locked,
                            "файл «" + path.string() + "» открыт в Access или другой программой");
        }
    }
}

std::string named(const std::filesystem::path& journal)
{
    return "журнал отката «" + journal.string() + "»";
}

// Without the journal nobody can tell whether the file is whole, so it is not opened.
JournalState readState(FileSystem& files, const std::filesystem::path& path, const File& file)
{
    try {
        return inspectJournal(files, path, file);
    } catch (const Error& error) {
        const bool wrongKind = error.fault() == Fault::NotADatabase;
        throw Error(wrongKind ? Fault::Io : error.fault(),
                    "рядом с файлом есть " + named(journalPath(path))
                        + ", но прочитать его нельзя: " + error.what());
    }
}

[[noreturn]] void refuseHalfWritten(const std::filesystem::path& path)
{
    throw Error(Fault::Damaged, "последняя запись в файл «" + path.string() + "» была прервана, а "
                                    + named(journalPath(path))
                                    + " повреждён или к нему не подходит: верните файл из копии; "
                                      "чтобы открыть его как есть, переименуйте журнал отката");
}

void rollBack(FileSystem& files, const std::filesystem::path& path, File& file)
{
    {
        const auto found = files.open(journalPath(path), FileMode::ReadOnly);
        journal::Header header;
        if (!journal::readComplete(*found, header))
            refuseHalfWritten(path);
        for (std::uint32_t i = 0; i < header.changed; ++i) {
            const journal::Entry entry = journal::readEntry(*found, i);
            file.write(std::uint64_t{entry.number} * kPageSize, entry.before);
        }
        file.truncate(header.lengthBefore);
        file.sync();
    }
    files.remove(journalPath(path));
}

void settle(FileSystem& files, const std::filesystem::path& path, JournalState state, File& file)
{
    switch (state) {
    case JournalState::None:
        break;
    case JournalState::Unfinished:
        files.remove(journalPath(path));
        break;
    case JournalState::Settled:
        file.sync(); // what was read may be in the system's memory only
        files.remove(journalPath(path));
        break;
    case JournalState::Hot:
        rollBack(files, path, file);
        break;
    case JournalState::Foreign:
        setJournalAside(files, path);
        break;
    case JournalState::Unusable:
        refuseHalfWritten(path);
    }
}

void recoverForReading(FileSystem& files, const std::filesystem::path& path)
{
    try {
        openRecovered(files, path, false);
    } catch (const Error& error) {
        throw Error(error.fault(),
                    "последняя запись в файл была прервана, и восстановить его не удалось: "
                        + std::string(error.what()));
    }
}

} // namespace

std::filesystem::path withoutLinks(const std::filesystem::path& path)
{
    std::error_code ignored;
    if (!std::filesystem::is_symlink(path, ignored))
        return path;
    const std::filesystem::path target = std::filesystem::canonical(path, ignored);
    return ignored ? path : target;
}

void setJournalAside(FileSystem& files, const std::filesystem::path& path)
{
    const std::filesystem::path journal = journalPath(path);
    if (!files.exists(journal))
        return;
    std::filesystem::path aside;
    int number = 0;
    do {
        aside = journal;
        aside += "-" + std::to_string(++number);
    } while (files.exists(aside));
    files.rename(journal, aside);
}

std::unique_ptr<File> openRecovered(FileSystem& files, const std::filesystem::path& path,
                                    bool readOnly)
{
    constexpr int kAttempts = 3;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        auto file = files.open(path, readOnly ? FileMode::ReadOnly : FileMode::ReadWrite);
        refuseForeignUser(files, path);
        const JournalState state = readState(files, path, *file);
        if (!readOnly) {
            settle(files, path, state, *file);
            return file;
        }
        if (state == JournalState::Unusable)
            refuseHalfWritten(path);
        if (state != JournalState::Hot)
            return file;
        file.reset();
        recoverForReading(files, path);
        // Another process may have had the file, and failed, before it is locked again.
    }
    throw Error(Fault::Locked, "файл «" + path.string() + "» занят другой программой");
}

} // namespace jet
