#include "jet/error.h"
#include "jet/storage/datapage.h"
#include "tests/jet/sampletables.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

// Bytes of the pages that make up a table are damaged in turn: all where headers and
// trailers lie, every seventh in between. Whatever it was: reading and changing rows must
// end, with a result or an Error.

namespace jet {
namespace {

struct Sample
{
    const char* file;
    const char* table;
    std::vector<int> flips; // values a byte is xor'ed with
};

void readEverything(Table& table)
{
    const auto columns = static_cast<int>(table.definition().columns.size());
    for (TableScan rows = table.scan(); rows.next();) {
        for (int column = 0; column < columns; ++column) {
            // One damaged row must not hide behind another's Error.
            try {
                rows.row().value(column);
            } catch (const Error&) {
            }
        }
    }
}

void changeEverything(Table& table)
{
    std::vector<std::vector<Value>> copies;
    std::vector<RowPointer> pointers;
    for (TableScan rows = table.scan(); rows.next() && pointers.size() < 3;) {
        pointers.push_back(rows.row().pointer());
        std::vector<Value> values;
        for (std::size_t i = 0; i < table.definition().columns.size(); ++i)
            values.push_back(rows.row().value(static_cast<int>(i)));
        copies.push_back(std::move(values));
    }
    for (std::size_t i = 0; i < pointers.size(); ++i) {
        for (Value& value : copies[i]) {
            if (value.as<std::string>())
                value = value.toText() + "x";
        }
        table.update(pointers[i], copies[i]);
        table.erase(pointers[i]);
        table.insert(copies[i]);
    }
}

void lookUp(Table& table)
{
    const std::vector<ColumnDefinition>& columns = table.definition().columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i].isLongValue())
            table.lookup(static_cast<int>(i), 1);
    }
}

// Pages of the table: its definition, its maps, and up to two each of rows and long values.
std::set<PageNumber> pagesOf(test::SampleFile& file, Table& table)
{
    const Definition& d = table.definition();
    std::set<PageNumber> pages = {d.page, d.ownedMap.page};
    const auto addSome = [&](RowPointer map) {
        auto members = UsageMap(*file.pager, file.allocator, map).pages();
        members.resize(std::min<std::size_t>(members.size(), 2));
        pages.insert(members.begin(), members.end());
    };
    addSome(d.ownedMap);
    for (const ColumnMaps& maps : d.columnMaps)
        addSome(maps.owned);
    return pages;
}

void attempt(const std::function<void()>& body, int& refused)
{
    try {
        body();
    } catch (const Error&) {
        ++refused;
    }
}

bool isDamaged(PageNumber page, std::size_t at)
{
    return at < 128 || at >= kPageSize - 64 || (at + page) % 7 == 0;
}

// Gives how many attempts ended with an Error.
int damagePage(test::SampleFile& file, Table& table, PageNumber page, const std::vector<int>& flips)
{
    Pager& pager = *file.pager;
    int refused = 0;
    for (std::size_t at = 0; at < kPageSize; ++at) {
        for (const int flip : flips) {
            if (!isDamaged(page, at))
                continue;
            pager.markStatement();
            std::uint8_t& byte = pager.modify(page)[at];
            byte = static_cast<std::uint8_t>(byte ^ flip);
            attempt([&] { table.reload(); }, refused);
            attempt([&] { readEverything(table); }, refused);
            attempt([&] { changeEverything(table); }, refused);
            attempt([&] { lookUp(table); }, refused);
            pager.rollbackStatement();
        }
    }
    return refused;
}

TEST(Damage, NoFlippedByteBreaksTheReader)
{
    const Sample samples[] = {
        {"overflow-test-v2000.mdb", "Table1", {0x01, 0x80}},
        {"test2-v2003.mdb", "MSP_PROJECTS", {0x41}}, // definition of two pages, all long values
        {"test-index-properties-v2000.mdb", "TableUnique1_temp", {0xFF}},
    };
    for (const Sample& sample : samples) {
        SCOPED_TRACE(sample.file);
        const auto path = test::sampleFile(sample.file);
        if (!path)
            GTEST_SKIP() << "no samples";
        const test::TemporaryFolder folder;
        test::SampleFile file(test::copyOf(*path, folder), false);
        file.pager->beginTransaction();
        for (const auto& [name, page] : file.tables()) {
            if (name != sample.table)
                continue;
            Table table = file.table(page, name);
            int refused = 0;
            for (const PageNumber damaged : pagesOf(file, table))
                refused += damagePage(file, table, damaged, sample.flips);
            EXPECT_GT(refused, 100);
        }
        file.pager->rollback();
    }
}

} // namespace
} // namespace jet
