// Files of Access 95/97, which are read into memory and shown as databases of the present format.

#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace jet;

namespace {

TEST(Jet3, SampleReadsLikeAnyOther)
{
    const auto sample = test::sampleFile("test-v1997.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto database = Database::open(*sample, OpenMode::Exclusive);
    EXPECT_TRUE(database->readOnly());
    EXPECT_EQ(database->tableNames(),
              (std::vector<std::string>{"Table1", "Table2", "Table3", "Table4"}));
    EXPECT_EQ(
        database->rows("SELECT * FROM Table1 WHERE D = 222"),
        (std::vector<std::vector<Value>>{{"abcdefg", "hijklmnop", 2, 222, 333333333, 444.555,
                                          DateTime::of(1974, 9, 21), Currency{35000}, true}}));
    EXPECT_EQ(database->tableDef("Table2").fields.size(), 89u);
    EXPECT_EQ(database->tableDef("Table4").fields[1].type, FieldType::Guid);
}

TEST(Jet3, ChangesAreRefusedWithTheReason)
{
    const auto sample = test::sampleFile("test-v1997.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto database = Database::open(*sample, OpenMode::Exclusive);
    try {
        database->execute("DELETE FROM Table1");
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::ReadOnly);
        EXPECT_NE(std::string(error.what()).find("Access 95/97"), std::string::npos);
    }
}

} // namespace
