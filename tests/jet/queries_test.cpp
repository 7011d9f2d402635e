#include "journalconnection.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace jet::sql {

namespace {

struct Case
{
    std::string sql;
    std::string columns; // "" where the file does not say
    int line = 0;
};

std::vector<Case> readCases()
{
    std::ifstream file(std::string(JET_TEST_DATA) + "/queries.txt");
    std::vector<Case> cases;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.starts_with("=> "))
            cases.back().columns = line.substr(3);
        else if (!line.empty() && line[0] != '#')
            cases.push_back({line, "", number});
    }
    return cases;
}

std::string names(const std::vector<ResultColumn>& columns)
{
    std::string result;
    for (const ResultColumn& column : columns)
        result += (result.empty() ? "" : ", ") + column.name;
    return result;
}

TEST(Queries, AllTranslateToWhatSqliteAccepts)
{
    JournalConnection connection;
    const std::vector<Case> cases = readCases();
    ASSERT_GT(cases.size(), 200u);
    for (const Case& each : cases) {
        try {
            const Translation translation = connection.translate(each.sql);
            EXPECT_EQ(connection.prepareError(translation.sqlite), "")
                << each.line << ": " << translation.sqlite;
            if (!each.columns.empty()) {
                EXPECT_EQ(names(translation.columns), each.columns) << each.line;
            }
        } catch (const std::exception& error) {
            ADD_FAILURE() << each.line << ": " << each.sql << "\n" << error.what();
        }
    }
}

} // namespace

} // namespace jet::sql
