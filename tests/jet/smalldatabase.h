#pragma once

#include "jet/storage/header.h"
#include "jet/storage/maprow.h"
#include "jet/storage/pager.h"
#include "tests/support/memoryfiles.h"

#include <algorithm>

namespace jet::test {

inline const std::filesystem::path kDatabase = "folder/base.mdb";

// A file image of `pages` pages that has no catalogue: page 0, the global maps on page 1,
// further pages filled with their number.
inline Bytes smallImage(PageNumber pages, std::uint32_t databaseKey = 0)
{
    DatabaseHeader header;
    header.created = {40000};
    header.databaseKey = databaseKey;
    Bytes image = encodeHeader(header);
    image.resize(pages * kPageSize);
    const ByteSpan maps = ByteSpan(image).subspan(kPageSize, kPageSize);
    maprow::initialise(maps);
    maps[4] = 1;
    for (std::uint8_t row = 0; row < 2; ++row)
        maprow::append(maps, 1);
    const maprow::Place place = maprow::locate(maps, {1, 0});
    for (PageNumber page = pages; page < 512; ++page)
        maps[place.offset + 5 + page / 8] |= static_cast<std::uint8_t>(1u << (page % 8));
    for (PageNumber page = 2; page < pages; ++page)
        std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(page * kPageSize), kPageSize,
                    static_cast<std::uint8_t>(page));
    return image;
}

inline void makeSmallDatabase(MemoryFiles& files, PageNumber pages, std::uint32_t key = 0)
{
    Pager::create(files, kDatabase, smallImage(pages, key));
}

} // namespace jet::test
