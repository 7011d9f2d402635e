#pragma once

#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/memoryfiles.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace jet::test {

// A small college in a file in memory: two groups, five students, some absences.
class QueryTest : public testing::Test
{
protected:
    QueryTest();

    // Rows of a SELECT as "a|b; c|d", NULL as "-".
    std::string rows(std::string_view sql);
    std::int64_t execute(std::string_view sql) { return db->execute(sql); }
    // Closes and opens the file again.
    void reopen(OpenMode mode = OpenMode::Exclusive);
    // The fault of a statement, with its text in `message`; a test failure when it is run.
    Fault faultOf(std::string_view sql, std::string* message = nullptr);

    static constexpr const char* kPath = "college.mdb";
    MemoryFiles files;
    std::unique_ptr<Database> db;
};

// "SPSTUD" with a counter key and a unique number, "SPGRUP" with a key, "POS" with neither.
void makeCollegeTables(Database& database);

} // namespace jet::test
