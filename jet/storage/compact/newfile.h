#pragma once

#include "jet/storage/compact/progress.h"
#include "jet/storage/file.h"
#include "jet/storage/header.h"
#include "jet/storage/pager.h"

#include <cstdint>
#include <filesystem>
#include <functional>

namespace jet::compact {

// The new file while it is made, under a name of its own beside the place it is for. Gone
// with the object unless it was put in that place.
class NewFile
{
public:
    // Removes what a crash may have left of an earlier one. Throws Error (Locked) when
    // somebody is making one for the same place just now.
    NewFile(FileSystem& files, const std::filesystem::path& place);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    // The pages of `image` under this header, safe on the medium.
    void write(Pager& image, const DatabaseHeader& header, Progress& progress);
    // Reads it back and checks it. Throws Error (Damaged).
    void verify();
    std::uint64_t size() const { return m_size; }

    // Throws Error (Exists) when the place is taken.
    void moveToPlace();
    // Takes the place of the file there. `release` closes the handle that keeps others from
    // that file.
    void replacePlace(const std::function<void()>& release);

private:
    FileSystem& m_files;
    std::filesystem::path m_place;
    std::filesystem::path m_path;
    std::uint64_t m_size = 0;
    bool m_exists = false;
};

} // namespace jet::compact
