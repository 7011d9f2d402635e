#include "jet/error.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/valuecodec.h"
#include "tests/jet/sampletables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <tuple>

namespace jet {
namespace {

// Decodes every column of every row; gives the number of rows.
std::int64_t readAll(Table& table)
{
    const auto columns = static_cast<int>(table.definition().columns.size());
    std::int64_t rows = 0;
    for (TableScan scan = table.scan(); scan.next(); ++rows) {
        for (int column = 0; column < columns; ++column) {
            if (scan.row().value(column).isNull() != scan.row().isNull(column))
                ADD_FAILURE() << table.name() << " column " << column;
        }
    }
    return rows;
}

// file, table, rows that really are there
std::vector<std::tuple<std::string, std::string, std::int64_t>> expectedCounts()
{
    std::vector<std::tuple<std::string, std::string, std::int64_t>> counts;
    const auto path = test::sampleFile("counts.tsv");
    if (!path)
        return counts;
    std::ifstream in(*path);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string file, table, counter, rows;
        std::getline(fields, file, '\t');
        std::getline(fields, table, '\t');
        std::getline(fields, counter, '\t');
        std::getline(fields, rows, '\t');
        if (!rows.empty())
            counts.emplace_back(file, table, std::stoll(rows));
    }
    return counts;
}

TEST(SampleRows, EveryTableHasTheRowsThatAnotherReaderFinds)
{
    const auto counts = expectedCounts();
    if (counts.empty())
        GTEST_SKIP() << "no samples";
    int checked = 0;
    for (const auto& path : test::readableSamples()) {
        test::SampleFile file(path);
        for (const auto& [name, page] : file.tables()) {
            Table table = file.table(page, name);
            const std::int64_t rows = readAll(table);
            EXPECT_EQ(table.countRows(), rows);
            for (const auto& [fileName, tableName, expected] : counts) {
                if (fileName == path.filename() && tableName == name) {
                    EXPECT_EQ(rows, expected) << path << " " << name;
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(checked, 60);
}

// Calls body(table, row, column) for every value that is not NULL.
template <class Body>
void eachValue(Body body)
{
    for (const auto& path : test::readableSamples()) {
        test::SampleFile file(path);
        for (const auto& [name, page] : file.tables()) {
            Table table = file.table(page, name);
            for (TableScan scan = table.scan(); scan.next();) {
                const std::vector<ColumnDefinition>& columns = table.definition().columns;
                for (std::size_t i = 0; i < columns.size(); ++i) {
                    if (!columns[i].isBoolean() && !scan.row().isNull(static_cast<int>(i)))
                        body(table, scan.row(), static_cast<int>(i), columns[i]);
                }
            }
        }
    }
}

TEST(SampleRows, EncodeToTheBytesThatTheEngineWrote)
{
    std::map<FieldType, int> same, different;
    eachValue([&](Table& table, const RowView& row, int position, const ColumnDefinition& column) {
        // Another program, which compresses nothing, wrote the rows of one table.
        const bool foreign = table.pager().path().filename() == "test-index-codes.mdb"
                             && table.name() == "Table1" && column.name == "name";
        if (column.isLongValue() || foreign)
            return;
        const ByteView stored = row.storedItem(position);
        Bytes encoded;
        appendItem(encoded, column, row.value(position));
        ++(std::ranges::equal(stored, encoded) ? same : different)[column.type()];
    });
    if (same.empty())
        GTEST_SKIP() << "no samples";
    for (const auto& [type, count] : same)
        EXPECT_EQ(different[type], 0) << "type " << static_cast<int>(type) << ", same " << count;
}

TEST(SampleRows, LongValuesEncodeAsTheEngineWroteThem)
{
    int same = 0, different = 0, inlineDiffers = 0, inRow = 0;
    eachValue([&](Table& table, const RowView& row, int position, const ColumnDefinition& column) {
        if (!column.isLongValue())
            return;
        const ByteView item = row.storedItem(position);
        const auto header = longvalue::decodeHeader(item);
        ASSERT_TRUE(header);
        Bytes stored;
        longvalue::read(table.pager(), item, stored);
        const longvalue::Data data = longvalue::encode(column, row.value(position));
        const bool isInline = header->place == longvalue::Header::Place::Inline;
        inRow += isInline ? 1 : 0;
        inlineDiffers += isInline != data.mayBeInline ? 1 : 0;
        ++(stored == data.bytes ? same : different);
    });
    if (same == 0)
        GTEST_SKIP() << "no samples";
    EXPECT_EQ(different, 0) << same;
    EXPECT_EQ(inlineDiffers, 0) << inRow;
}

} // namespace
} // namespace jet
