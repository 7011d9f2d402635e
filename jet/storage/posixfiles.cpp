#include "jet/storage/file.h"

#include "jet/error.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace jet {

namespace {

std::string quoted(const std::filesystem::path& path)
{
    return "«" + path.string() + "»";
}

struct Reason
{
    Fault fault;
    std::string text;
};

Reason reasonOf(int code)
{
    switch (code) {
    case ENOSPC:
    case EDQUOT:
        return {Fault::DiskFull, "на диске нет места"};
    case EFBIG:
        return {Fault::DiskFull, "файл такого размера на этом диске невозможен"};
    case EACCES:
    case EPERM:
        return {Fault::Permission, "нет прав доступа"};
    case EROFS:
        return {Fault::Permission, "диск доступен только для чтения"};
    case EBUSY:
    case ETXTBSY:
        return {Fault::Locked, "файл занят другой программой"};
    case EIO:
        return {Fault::Io, "сбой диска или сети"};
    default:
        return {Fault::Io, "ошибка операционной системы " + std::to_string(code)};
    }
}

[[noreturn]] void fail(int code, const std::string& what, const std::filesystem::path& path)
{
    const Reason reason = reasonOf(code);
    throw Error(reason.fault, what + " " + quoted(path) + ": " + reason.text);
}

// A descriptor's lock over the whole file, dropped when it is closed. Locks of the open file
// description are seen by other processes, by other descriptors of this one and, through
// Samba and NFS, by other machines.
bool lockWhole(int descriptor, bool exclusive)
{
#ifdef F_OFD_SETLK
    struct flock range = {};
    range.l_type = exclusive ? F_WRLCK : F_RDLCK;
    range.l_whence = SEEK_SET;
    if (::fcntl(descriptor, F_OFD_SETLK, &range) == 0)
        return true;
    if (errno != EINVAL && errno != EOPNOTSUPP && errno != ENOSYS)
        return false;
#endif
    return ::flock(descriptor, (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0;
}

class PosixFile final : public File
{
public:
    PosixFile(int descriptor, std::filesystem::path path)
        : m_descriptor(descriptor)
        , m_names(namesOf(descriptor))
        , m_path(std::move(path))
    {}
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;
    ~PosixFile() override { ::close(m_descriptor); }

    std::uint64_t size() const override
    {
        struct stat info = {};
        if (::fstat(m_descriptor, &info) != 0)
            fail(errno, "не удалось узнать размер файла", m_path);
        return static_cast<std::uint64_t>(info.st_size);
    }

    void read(std::uint64_t offset, ByteSpan buffer) const override
    {
        while (!buffer.empty()) {
            const ssize_t got =
                ::pread(m_descriptor, buffer.data(), buffer.size(), static_cast<off_t>(offset));
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                fail(errno, "не удалось прочитать файл", m_path);
            if (got == 0)
                throw Error(Fault::Damaged, "файл " + quoted(m_path) + " обрезан");
            offset += static_cast<std::uint64_t>(got);
            buffer = buffer.subspan(static_cast<std::size_t>(got));
        }
    }

    void write(std::uint64_t offset, ByteView bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t put =
                ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0)
                fail(put < 0 ? errno : ENOSPC, "не удалось записать файл", m_path);
            offset += static_cast<std::uint64_t>(put);
            bytes = bytes.subspan(static_cast<std::size_t>(put));
        }
    }

    void truncate(std::uint64_t size) override
    {
        while (::ftruncate(m_descriptor, static_cast<off_t>(size)) != 0) {
            if (errno != EINTR)
                fail(errno, "не удалось изменить размер файла", m_path);
        }
    }

    void sync() override
    {
#ifdef F_FULLFSYNC
        const int result = ::fcntl(m_descriptor, F_FULLFSYNC);
#elif defined(__linux__)
        const int result = ::fdatasync(m_descriptor);
#else
        const int result = ::fsync(m_descriptor);
#endif
        if (result != 0)
            fail(errno, "не удалось сохранить на диск файл", m_path);
    }

    // Inode numbers are not compared: on network file systems they may change under an open
    // file. A count of names that is 0 from the beginning is a file system that has none.
    bool isInPlace() const override
    {
        struct stat named = {};
        if (::stat(m_path.c_str(), &named) != 0 && errno == ENOENT)
            return false;
        struct stat open = {};
        return ::fstat(m_descriptor, &open) != 0 || open.st_nlink > 0 || m_names == 0;
    }

private:
    static nlink_t namesOf(int descriptor)
    {
        struct stat info = {};
        return ::fstat(descriptor, &info) == 0 ? info.st_nlink : 0;
    }

    int m_descriptor;
    nlink_t m_names; // when it was opened
    std::filesystem::path m_path;
};

[[noreturn]] void failOpen(int code, const std::filesystem::path& path)
{
    if (code == ENOENT || code == ENOTDIR)
        throw Error(Fault::NotFound, "файл " + quoted(path) + " не найден");
    if (code == EEXIST)
        throw Error(Fault::Exists, "файл " + quoted(path) + " уже существует");
    if (code == EISDIR)
        throw Error(Fault::NotADatabase, quoted(path) + " — не файл, а папка");
    fail(code, "не удалось открыть файл", path);
}

class PosixFiles final : public FileSystem
{
public:
    std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) override
    {
        const int access = mode == FileMode::ReadOnly ? O_RDONLY
                           : mode == FileMode::Create ? O_RDWR | O_CREAT | O_EXCL
                                                      : O_RDWR;
        int descriptor;
        do {
            descriptor = ::open(path.c_str(), access | O_CLOEXEC | O_NONBLOCK, 0666);
        } while (descriptor < 0 && errno == EINTR);
        if (descriptor < 0)
            failOpen(errno, path);
        auto file = std::make_unique<PosixFile>(descriptor, path);
        struct stat info = {};
        if (::fstat(descriptor, &info) == 0 && !S_ISREG(info.st_mode))
            throw Error(Fault::NotADatabase, quoted(path)
                                                 + (S_ISDIR(info.st_mode) ? " — не файл, а папка"
                                                                          : " — не обычный файл"));
        if (!lockWhole(descriptor, mode != FileMode::ReadOnly)) {
            if (errno == EAGAIN || errno == EACCES || errno == EWOULDBLOCK)
                throw Error(Fault::Locked,
                            "файл " + quoted(path) + " уже открыт другой программой");
            fail(errno, "не удалось заблокировать файл", path);
        }
        return file;
    }

    bool exists(const std::filesystem::path& path) const override
    {
        struct stat info = {};
        return ::stat(path.c_str(), &info) == 0;
    }

    void remove(const std::filesystem::path& path) override
    {
        if (::unlink(path.c_str()) != 0) {
            if (errno == ENOENT)
                return;
            fail(errno, "не удалось удалить файл", path);
        }
        syncDirectory(path.parent_path());
    }

    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        if (exists(to))
            throw Error(Fault::Exists, "файл " + quoted(to) + " уже существует");
        if (::rename(from.c_str(), to.c_str()) != 0)
            fail(errno, "не удалось переименовать файл", from);
        syncDirectory(to.parent_path());
    }

    void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                 const std::function<void()>& release) override
    {
        struct stat info = {};
        if (::stat(to.c_str(), &info) != 0)
            failOpen(errno, to);
        if (::chown(from.c_str(), info.st_uid, info.st_gid) != 0) {
            // Only the system's administrator may give files away; then it is the user's own.
        }
        if (::chmod(from.c_str(), info.st_mode & 07777) != 0)
            fail(errno, "не удалось задать права доступа к файлу", from);
        if (::rename(from.c_str(), to.c_str()) != 0)
            fail(errno, "не удалось заменить файл", to);
        release();
        syncDirectory(to.parent_path());
    }

    void syncDirectory(const std::filesystem::path& directory) override
    {
        const std::filesystem::path named = directory.empty() ? "." : directory;
        const int descriptor = ::open(named.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0)
            fail(errno, "не удалось открыть папку", named);
        const int result = ::fsync(descriptor);
        const int code = errno;
        ::close(descriptor);
        // Network file systems cannot sync a directory and say so with EINVAL.
        if (result != 0 && code != EINVAL)
            fail(code, "не удалось сохранить на диск папку", named);
    }
};

} // namespace

FileSystem& FileSystem::system()
{
    static PosixFiles files;
    return files;
}

} // namespace jet
