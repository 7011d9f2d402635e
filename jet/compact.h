#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace jet {

class FileSystem;

struct CompactOptions
{
    // Save what can be read of a damaged file. Without it such a file is refused.
    bool repair = false;
    // Whether the new file is encoded; if not set, it is as the old one.
    std::optional<bool> encoded = {};
    // Called now and then with a number that grows to 100; false cancels.
    std::function<bool(int percent)> progress = {};
};

// What a repair could not save, or had to change.
struct Loss
{
    std::string table = {}; // "" when it concerns the whole file
    std::uint32_t page = 0; // of the old file; 0 when not known
    int row = -1;           // row of the page, -1 when it does not concern one
    std::string text = {};  // a Russian clause, without the three above
};

struct CompactReport
{
    std::uint64_t bytesBefore = 0, bytesAfter = 0;
    std::size_t tables = 0; // those of the user
    std::int64_t rows = 0;  // in these
    std::vector<Loss> losses = {};
    bool cancelled = false; // by the progress callback; no file was made or changed
};

// Writes a new file that holds everything the old one does and no dead space: rows lie
// densely in the order of the primary key, indexes are built anew. Object numbers of tables
// change (they are page numbers), those of all other objects stay, as do the creation date
// and with it all permissions.
//
// The new file appears under its name only when it is complete, safe on the medium and
// checked; on failure there is none. The old file is not changed. Throws Error: Exists when
// there is a file of the new name, Damaged for a damaged file without `repair`, and all that
// opening throws.
CompactReport compactDatabase(const std::filesystem::path& source,
                              const std::filesystem::path& target,
                              const CompactOptions& options = {});
CompactReport compactDatabase(FileSystem& files, const std::filesystem::path& source,
                              const std::filesystem::path& target,
                              const CompactOptions& options = {});

// The same, and puts the new file in the place of the old one, with its permissions and
// owner. A crash at any point leaves the whole old or the whole new file. No one may have
// the file open.
CompactReport compactInPlace(const std::filesystem::path& path, const CompactOptions& options = {});
CompactReport compactInPlace(FileSystem& files, const std::filesystem::path& path,
                             const CompactOptions& options = {});

} // namespace jet
