#include "jet/storage/file.h"

#include "jet/error.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <string>

namespace jet {

namespace {

std::string quoted(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return "«" + std::string(text.begin(), text.end()) + "»";
}

struct Reason
{
    Fault fault;
    std::string text;
};

Reason reasonOf(DWORD code)
{
    switch (code) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_DISK_QUOTA_EXCEEDED:
        return {Fault::DiskFull, "на диске нет места"};
    case ERROR_FILE_TOO_LARGE:
        return {Fault::DiskFull, "файл такого размера на этом диске невозможен"};
    case ERROR_ACCESS_DENIED:
        return {Fault::Permission, "нет прав доступа"};
    case ERROR_WRITE_PROTECT:
        return {Fault::Permission, "диск доступен только для чтения"};
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return {Fault::Locked, "файл занят другой программой"};
    default:
        return {Fault::Io, "ошибка операционной системы " + std::to_string(code)};
    }
}

[[noreturn]] void fail(DWORD code, const std::string& what, const std::filesystem::path& path)
{
    const Reason reason = reasonOf(code);
    throw Error(reason.fault, what + " " + quoted(path) + ": " + reason.text);
}

class WindowsFile final : public File
{
public:
    WindowsFile(HANDLE handle, std::filesystem::path path)
        : m_handle(handle)
        , m_path(std::move(path))
    {}
    WindowsFile(const WindowsFile&) = delete;
    WindowsFile& operator=(const WindowsFile&) = delete;
    ~WindowsFile() override { CloseHandle(m_handle); }

    std::uint64_t size() const override
    {
        LARGE_INTEGER size;
        if (!GetFileSizeEx(m_handle, &size))
            fail(GetLastError(), "не удалось узнать размер файла", m_path);
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    void read(std::uint64_t offset, ByteSpan buffer) const override
    {
        while (!buffer.empty()) {
            OVERLAPPED place = at(offset);
            DWORD got = 0;
            if (!ReadFile(m_handle, buffer.data(), chunk(buffer.size()), &got, &place)
                && GetLastError() != ERROR_HANDLE_EOF)
                fail(GetLastError(), "не удалось прочитать файл", m_path);
            if (got == 0)
                throw Error(Fault::Damaged, "файл " + quoted(m_path) + " обрезан");
            offset += got;
            buffer = buffer.subspan(got);
        }
    }

    void write(std::uint64_t offset, ByteView bytes) override
    {
        while (!bytes.empty()) {
            OVERLAPPED place = at(offset);
            DWORD put = 0;
            if (!WriteFile(m_handle, bytes.data(), chunk(bytes.size()), &put, &place))
                fail(GetLastError(), "не удалось записать файл", m_path);
            if (put == 0)
                fail(ERROR_DISK_FULL, "не удалось записать файл", m_path);
            offset += put;
            bytes = bytes.subspan(put);
        }
    }

    void truncate(std::uint64_t size) override
    {
        FILE_END_OF_FILE_INFO info;
        info.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        if (!SetFileInformationByHandle(m_handle, FileEndOfFileInfo, &info, sizeof info))
            fail(GetLastError(), "не удалось изменить размер файла", m_path);
    }

    void sync() override
    {
        if (!FlushFileBuffers(m_handle))
            fail(GetLastError(), "не удалось сохранить на диск файл", m_path);
    }

private:
    static OVERLAPPED at(std::uint64_t offset)
    {
        OVERLAPPED place = {};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        return place;
    }
    static DWORD chunk(std::size_t size)
    {
        return static_cast<DWORD>(std::min<std::size_t>(size, 1u << 30));
    }

    HANDLE m_handle;
    std::filesystem::path m_path;
};

[[noreturn]] void failOpen(DWORD code, const std::filesystem::path& path)
{
    if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND)
        throw Error(Fault::NotFound, "файл " + quoted(path) + " не найден");
    if (code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS)
        throw Error(Fault::Exists, "файл " + quoted(path) + " уже существует");
    if (code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION)
        throw Error(Fault::Locked, "файл " + quoted(path) + " уже открыт другой программой");
    fail(code, "не удалось открыть файл", path);
}

class WindowsFiles final : public FileSystem
{
public:
    std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) override
    {
        const bool reading = mode == FileMode::ReadOnly;
        const DWORD access = reading ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
        // Nobody else may write, move or delete it, so isInPlace() stays true. Reading stays
        // possible so that an open file can be copied; a second opener of this engine asks for
        // more than that and is refused.
        const DWORD sharing = FILE_SHARE_READ;
        const DWORD how = mode == FileMode::Create ? CREATE_NEW : OPEN_EXISTING;
        const HANDLE handle = CreateFileW(path.c_str(), access, sharing, nullptr, how,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            const DWORD code = GetLastError();
            const DWORD attributes = GetFileAttributesW(path.c_str());
            if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
                throw Error(Fault::NotADatabase, quoted(path) + " — не файл, а папка");
            failOpen(code, path);
        }
        return std::make_unique<WindowsFile>(handle, path);
    }

    bool exists(const std::filesystem::path& path) const override
    {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    void remove(const std::filesystem::path& path) override
    {
        if (!DeleteFileW(path.c_str()) && GetLastError() != ERROR_FILE_NOT_FOUND)
            fail(GetLastError(), "не удалось удалить файл", path);
    }

    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        if (!MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH)) {
            if (exists(to))
                throw Error(Fault::Exists, "файл " + quoted(to) + " уже существует");
            fail(GetLastError(), "не удалось переименовать файл", from);
        }
    }

    void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                 const std::function<void()>& release) override
    {
        release(); // an open file cannot be replaced
        if (!ReplaceFileW(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                          nullptr, nullptr))
            fail(GetLastError(), "не удалось заменить файл", to);
    }

    // NTFS journals its directories; there is no call for this.
    void syncDirectory(const std::filesystem::path&) override {}
};

} // namespace

FileSystem& FileSystem::system()
{
    static WindowsFiles files;
    return files;
}

} // namespace jet
