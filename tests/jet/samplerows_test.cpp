#include "jet/error.h"
#include "tests/jet/sampletables.h"

#include <gtest/gtest.h>

#include <fstream>
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

} // namespace
} // namespace jet
