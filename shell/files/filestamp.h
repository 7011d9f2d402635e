#pragma once

#include <QString>

#include <cstdint>
#include <filesystem>
#include <optional>

namespace shell {

// Size and time of the last write: two stamps that differ mean that somebody wrote the file.
struct FileStamp
{
    std::uintmax_t bytes = 0;
    std::filesystem::file_time_type written;

    // Nothing when there is no such file.
    static std::optional<FileStamp> of(const QString& path);
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

} // namespace shell
