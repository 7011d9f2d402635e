#include "jet/storage/recovery.h"

#include "jet/error.h"
#include "jet/storage/journal.h"

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

} // namespace

std::filesystem::path withoutLinks(const std::filesystem::path& path)
{
    std::error_code ignored;
    if (!std::filesystem::is_symlink(path, ignored))
        return path;
    const std::filesystem::path target = std::filesystem::canonical(path, ignored);
    return ignored ? path : target;
}

std::unique_ptr<File> openRecovered(FileSystem& files, const std::filesystem::path& path,
                                    bool readOnly)
{
    auto file = files.open(path, readOnly ? FileMode::ReadOnly : FileMode::ReadWrite);
    refuseForeignUser(files, path);
    const JournalState state = inspectJournal(files, path, *file);
    if (state == JournalState::Incomplete && !readOnly)
        files.remove(journalPath(path));
    if (state != JournalState::Hot)
        return file;
    if (!readOnly) {
        rollBackJournal(files, path, *file);
        return file;
    }
    file.reset();
    try {
        openRecovered(files, path, false);
    } catch (const Error& error) {
        throw Error(error.fault(),
                    "последняя запись в файл была прервана, и восстановить его не удалось: "
                        + std::string(error.what()));
    }
    return files.open(path, FileMode::ReadOnly);
}

} // namespace jet
