#include "shell/files/filestamp.h"

#include "data/convert.h"

namespace shell {

std::optional<FileStamp> FileStamp::of(const QString& path)
{
    const auto file = data::toPath(path);
    std::error_code failed;
    FileStamp stamp;
    stamp.bytes = std::filesystem::file_size(file, failed);
    if (failed)
        return std::nullopt;
    stamp.written = std::filesystem::last_write_time(file, failed);
    if (failed)
        return std::nullopt;
    return stamp;
}

} // namespace shell
