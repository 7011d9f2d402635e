#pragma once

#include "jet/storage/pager.h"
#include "jet/storage/table.h"
#include "jet/storage/usagemap.h"
#include "tests/support/outsidecheckers.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace jet::test {

inline constexpr PageNumber kCataloguePage = 2; // definition of MSysObjects
inline constexpr int kTableObject = 1;

// A file opened below the catalogue: its tables by the rows of MSysObjects.
struct SampleFile
{
    explicit SampleFile(const std::filesystem::path& path, bool readOnly = true)
        : pager(Pager::open(FileSystem::system(), path, readOnly))
        , allocator(*pager)
    {}

    Table table(PageNumber page, const std::string& name)
    {
        return Table(*pager, allocator, page, name);
    }

    std::vector<std::pair<std::string, PageNumber>> tables()
    {
        Table catalogue = table(kCataloguePage, "MSysObjects");
        const Definition& d = catalogue.definition();
        const int id = d.columnPosition("Id");
        const int name = d.columnPosition("Name");
        const int type = d.columnPosition("Type");
        std::vector<std::pair<std::string, PageNumber>> found;
        for (TableScan rows = catalogue.scan(); rows.next();) {
            if (rows.row().integer(type) != kTableObject)
                continue;
            std::string text;
            rows.row().text(name, text);
            found.emplace_back(text, static_cast<PageNumber>(rows.row().integer(id)));
        }
        return found;
    }

    std::unique_ptr<Pager> pager;
    PageAllocator allocator;
};

} // namespace jet::test
