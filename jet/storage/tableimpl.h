#pragma once

#include "jet/storage/datapage.h"
#include "jet/storage/equalityindex.h"
#include "jet/storage/indexkeeper.h"
#include "jet/storage/rowcodec.h"
#include "jet/storage/rowspace.h"
#include "jet/storage/table.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

// What a Table keeps beside its pages. Only the sources of Table include this.

namespace jet {

// Everything below is derived from pages. It is dropped when the pager has rolled something
// back since, and kept in step by insert(), update() and erase() otherwise.
struct Table::Impl
{
    // What follows from the definition.
    struct Parts
    {
        Parts(Pager& pager, PageAllocator& allocator, const Definition& definition,
              const std::string& table);

        RowSpace rows;
        std::map<std::size_t, RowSpace> longValues; // by column position
        IndexKeeper indexes;
        int counter = -1; // position of the counter column
    };

    PageNumber page = 0;
    std::vector<std::uint16_t> requiredColumns; // ids
    std::vector<std::uint16_t> filledColumns;   // ids, take no empty text
    std::uint64_t rollbacks = 0;                // of the pager when the rest was read
    std::unique_ptr<Definition> definition;
    RowShape shape;
    std::unique_ptr<Parts> parts;
    std::shared_ptr<const std::vector<PageNumber>> pages; // of the owned map; null: not read
    std::map<std::vector<int>, EqualityIndex> lookups;    // by column positions
    std::vector<RowPointer> verified;                     // the last lookup's result
    std::int64_t lastCounter = 0;
    // Highest counter value found in the rows, once looked for. It only guards against a
    // counter in the definition that lags behind.
    std::optional<std::int64_t> highestCounter;
};

} // namespace jet
