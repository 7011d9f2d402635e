// Columns of types and sort orders that later or other programs made: they are read, kept and
// stand in the way of nothing else.

#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/btree.h"
#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace jet;

namespace {

using Rows = std::vector<std::vector<Value>>;

// Three rows of T: A a number, U the column to be changed, both indexed; N a text.
class UnknownColumns : public testing::Test
{
protected:
    // Makes the file and puts another byte into U's entry of the table definition.
    void make(const char* type, const Value& value, std::size_t offset, std::uint8_t byte)
    {
        m_database.reset();
        m_files = std::make_unique<test::MemoryFiles>();
        PageNumber page = 0;
        std::size_t entry = 0;
        {
            auto database = Database::create(*m_files, "t.mdb", {});
            database->execute(std::string("CREATE TABLE T (A INTEGER, U ") + type
                              + ", N TEXT(20))");
            database->execute("CREATE UNIQUE INDEX PK ON T (A)");
            database->execute("CREATE INDEX IU ON T (U)");
            for (int i = 1; i <= 3; ++i) {
                const std::pair<std::string, Value> row[] = {
                    {"A", i}, {"U", i == 3 ? Value() : value}, {"N", "x"}};
                database->insert("T", row);
            }
            const Definition& definition = database->store().table("T").definition();
            page = definition.page;
            entry = 63 + 12 * definition.realIndexes.size() + 25;
        }
        auto bytes = m_files->content("t.mdb");
        bytes[page * kPageSize + entry + offset] = byte;
        m_files->setContent("t.mdb", bytes);
        reopen();
    }
    void reopen()
    {
        m_database.reset();
        m_database = Database::open(*m_files, "t.mdb", OpenMode::Exclusive);
    }
    void expectRefused(const std::string& sql)
    {
        try {
            m_database->execute(sql);
            ADD_FAILURE() << sql;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::Unsupported) << sql << ": " << error.what();
            EXPECT_NE(std::string(error.what()).find("«U»"), std::string::npos) << error.what();
        }
    }
    // Rows change around U, U itself stays; deleted rows leave the indexes too.
    void expectOtherColumnsWritable(const Value& seen)
    {
        EXPECT_EQ(m_database->rows("SELECT A, U, N FROM T ORDER BY A"),
                  (Rows{{1, seen, "x"}, {2, seen, "x"}, {3, Value(), "x"}}));
        m_database->execute("UPDATE T SET N = 'longer than it was' WHERE A < 3");
        m_database->execute("UPDATE T SET A = 20 WHERE A = 2");
        m_database->execute("INSERT INTO T (A, N) VALUES (4, 'new')");
        m_database->execute("DELETE FROM T WHERE A = 1");
        reopen();
        EXPECT_EQ(m_database->rows("SELECT A, U, N FROM T ORDER BY A"),
                  (Rows{{3, Value(), "x"}, {4, Value(), "new"}, {20, seen, "longer than it was"}}));
        Table& table = m_database->store().table("T");
        const RealIndex& index = table.definition().realIndexes[1];
        BTree tree(table.pager(), table.allocator(), table.definition().page, index.pageMap,
                   index.root);
        int entries = 0;
        for (BTree::Cursor cursor = tree.first(); cursor.valid(); cursor.next())
            entries += table.find(cursor.entry().row) ? 1 : 100;
        EXPECT_EQ(entries, 3);
    }

    std::unique_ptr<test::MemoryFiles> m_files;
    std::unique_ptr<Database> m_database;
};

TEST_F(UnknownColumns, AreReadAsBytesAndKept)
{
    constexpr std::uint8_t kCodes[] = {0x00, 0x0D, 0x11, 0x12, 0x13, 0x14, 0x2A, 0xFF};
    for (const std::uint8_t code : kCodes) {
        SCOPED_TRACE(int{code});
        make("BINARY(10)", Bytes{1, 0, 255}, 0, code);
        expectOtherColumnsWritable(Bytes{1, 0, 255});
        expectRefused("INSERT INTO T (A, U) VALUES (9, '5')");
        expectRefused("UPDATE T SET U = '5' WHERE A = 3");
        m_database->execute("UPDATE T SET U = NULL WHERE A = 20");
        EXPECT_EQ(m_database->count("SELECT * FROM T WHERE U IS NULL"), 3);
        make("CURRENCY", Currency{0x0102}, 0, code);
        expectOtherColumnsWritable(Bytes{2, 1, 0, 0, 0, 0, 0, 0});
    }
}

TEST_F(UnknownColumns, OfAnotherSortOrderTakeTextOnlyOutsideIndexes)
{
    make("TEXT(20)", "слово", 0x0B, 0x19); // Cyrillic, 0419
    expectOtherColumnsWritable("слово");
    expectRefused("INSERT INTO T (A, U) VALUES (9, 'буква')");
    m_database->execute("UPDATE T SET U = NULL WHERE A = 20");
    reopen();
    EXPECT_EQ(m_database->count("SELECT * FROM T WHERE U IS NULL"), 3);
}

} // namespace
