#pragma once

#include "jet/storage/file.h"
#include "jet/storage/header.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <memory>

namespace jet {

// Pages put together in memory, before there is a file to hold them. Its pager has one
// transaction open, which is never committed; the pages are plain.
class ImagePager
{
public:
    // `used` pages are there and in use, at most 512: page 0 of the header, page 1 with the
    // maps of free pages, the others zeroed.
    ImagePager(const DatabaseHeader& header, PageNumber used);
    ~ImagePager();

    Pager& pager() { return *m_pager; }

private:
    Bytes m_start;
    std::unique_ptr<FileSystem> m_files;
    std::unique_ptr<Pager> m_pager;
};

} // namespace jet
