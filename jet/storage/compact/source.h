#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/file.h"
#include "jet/storage/pager.h"
#include "jet/storage/store.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace jet::compact {

// The file that is compacted, open for reading. A repair also opens files whose catalogue
// cannot be read and files that were cut short.
class Source
{
public:
    // With `alone` nobody else may open the file until it is released. Throws Error.
    Source(FileSystem& files, const std::filesystem::path& path, bool alone, Losses& losses);

    Pager& pager();
    std::uint64_t size() const { return m_size; }
    void release();

private:
    std::uint64_t m_size = 0;
    std::unique_ptr<FileSystem> m_wholePages; // of a file cut short
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Pager> m_pager; // where there can be no store
};

} // namespace jet::compact
