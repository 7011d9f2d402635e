#pragma once

#include "jet/storage/bytes.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

namespace jet {

// One open file. All methods throw Error (Io, DiskFull, Permission).
class File
{
public:
    virtual ~File() = default;
    virtual std::uint64_t size() const = 0;
    // Reads exactly buffer.size() bytes; short files are an Error (Damaged).
    virtual void read(std::uint64_t offset, ByteSpan buffer) const = 0;
    virtual void write(std::uint64_t offset, ByteView bytes) = 0;
    virtual void truncate(std::uint64_t size) = 0;
    // Returns only when all that was written is on the medium.
    virtual void sync() = 0;
    // False when the file was deleted or moved away while it was open.
    virtual bool isInPlace() const { return true; }
};

enum class FileMode {
    ReadOnly,  // shared lock where the system has one
    ReadWrite, // exclusive lock; Error (Locked) when another process has the file open
    Create,    // as ReadWrite; Error (Exists) when the path exists
};

// All contact of the engine with the system's files: posixfiles.cpp, windowsfiles.cpp, and
// in the tests a memory file system that can fail at the n-th operation.
class FileSystem
{
public:
    virtual ~FileSystem() = default;
    virtual std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) = 0;
    virtual bool exists(const std::filesystem::path& path) const = 0;
    // Removes the file if it exists and makes the removal durable.
    virtual void remove(const std::filesystem::path& path) = 0;
    // Gives the file another name in the same folder and makes that durable. Error (Exists)
    // when the new name is taken.
    virtual void rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    // Puts the file `from` in the place of `to`, at once, and makes that durable. It gets the
    // permissions of `to`, and its owner if the system allows that. `release` closes the
    // caller's own handle of `to`, as late as the system can bear.
    virtual void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                         const std::function<void()>& release) = 0;
    // Makes the creation of a file in `directory` durable.
    virtual void syncDirectory(const std::filesystem::path& directory) = 0;

    static FileSystem& system();
};

} // namespace jet
