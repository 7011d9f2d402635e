#pragma once

#include "jet/storage/file.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>

namespace jet::jet3 {

// Files in memory that nobody else sees; they live as long as this does. Locks, durability
// and directories mean nothing here.
class PrivateFiles final : public FileSystem
{
public:
    // Throws Error (Limit) from write() when a file would grow beyond.
    explicit PrivateFiles(std::uint64_t mostBytes)
        : m_mostBytes(mostBytes)
    {}

    std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) override;
    bool exists(const std::filesystem::path& path) const override;
    void remove(const std::filesystem::path& path) override { m_files.erase(path); }
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                 const std::function<void()>& release) override
    {
        m_files.insert_or_assign(to, m_files.at(from));
        m_files.erase(from);
        release();
    }
    void syncDirectory(const std::filesystem::path&) override {}

    struct Content;

private:
    std::uint64_t m_mostBytes;
    std::map<std::filesystem::path, std::shared_ptr<Content>> m_files;
};

} // namespace jet::jet3
