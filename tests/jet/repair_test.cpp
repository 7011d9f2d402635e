#include "jet/compact.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/datapage.h"
#include "jet/storage/pager.h"
#include "jet/storage/store.h"
#include "jet/storage/usagemap.h"
#include "tests/jet/tablecontent.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace jet {
namespace {

using test::MemoryFiles;

const std::filesystem::path kOld = "folder/old.mdb";
const std::filesystem::path kNew = "folder/new.mdb";
constexpr int kRows = 400;
constexpr std::size_t kLongNote = 9000; // a chain of five pages

// One file with a table of some pages, two indexes and memos of all kinds.
class Repair : public testing::Test
{
protected:
    Repair()
    {
        const auto database = Database::create(files, kOld, {});
        database->execute("CREATE TABLE Students (ID COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, "
                          "FAM TEXT(60), NOTE MEMO)");
        database->execute("CREATE UNIQUE INDEX FAM ON Students (FAM)");
        database->execute("CREATE TABLE Other (X INTEGER)");
        database->execute("INSERT INTO Other (X) VALUES (7)");
        Transaction transaction(*database);
        for (int i = 1; i <= kRows; ++i) {
            const std::size_t note = i == 10 ? kLongNote : i % 20 == 0 ? 900 : 10;
            const std::pair<std::string, Value> row[] = {
                {"FAM", "Фамилия " + std::to_string(i)},
                {"NOTE", i % 3 == 0 ? Value() : Value(std::string(note, 'n'))}};
            database->insert("Students", row);
        }
        transaction.commit();
        definition = database->store().table("Students").definition();
        other = database->store().table("Other").definition();
        objects = database->store().table("MSysObjects").definition();
    }

    // Changes pages of the closed file.
    void damage(const std::function<void(Pager&)>& change)
    {
        const auto pager = Pager::open(files, kOld, false);
        pager->beginTransaction();
        change(*pager);
        pager->commit();
    }
    std::vector<PageNumber> pagesOf(RowPointer map)
    {
        const auto pager = Pager::open(files, kOld, true);
        PageAllocator allocator(*pager);
        return UsageMap(*pager, allocator, map).pages();
    }
    void wipe(PageNumber page)
    {
        damage([page](Pager& pager) { std::ranges::fill(pager.modify(page), std::uint8_t{0}); });
    }

    CompactReport repair()
    {
        CompactOptions options;
        options.repair = true;
        const CompactReport report = compactDatabase(files, kOld, kNew, options);
        EXPECT_EQ(test::harmfulFindings(files, kNew), "");
        return report;
    }
    std::unique_ptr<Database> repaired() { return Database::open(files, kNew, OpenMode::ReadOnly); }
    void expectStrictRefusal()
    {
        try {
            compactDatabase(files, kOld, kNew);
            ADD_FAILURE() << "compacted without a word";
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::Damaged) << error.what();
        }
        EXPECT_FALSE(files.exists(kNew));
    }

    MemoryFiles files;
    Definition definition, other, objects;
};

bool names(const CompactReport& report, const std::string& text)
{
    return std::ranges::any_of(
        report.losses, [&](const Loss& loss) { return loss.text.find(text) != std::string::npos; });
}

TEST_F(Repair, LosesTheRowsOfAWipedPageOnly)
{
    const PageNumber page = pagesOf(definition.ownedMap).at(1);
    wipe(page);
    expectStrictRefusal();
    const CompactReport report = repair();
    ASSERT_FALSE(report.losses.empty());
    EXPECT_EQ(report.losses.front().page, page);
    EXPECT_EQ(report.losses.front().table, "Students");
    const auto rows = repaired()->rowCount("Students");
    EXPECT_GT(rows, kRows / 2);
    EXPECT_LT(rows, kRows);
    EXPECT_EQ(report.rows, rows + 1);
    EXPECT_EQ(repaired()->count("SELECT * FROM Students WHERE FAM = \"Фамилия 400\""), 1);
}

TEST_F(Repair, LosesOneRowOfABrokenSlot)
{
    const PageNumber page = pagesOf(definition.ownedMap).at(0);
    damage([&](Pager& pager) {
        const ByteSpan bytes = pager.modify(page);
        const datapage::Slot slot = datapage::slot(bytes, page, 3);
        put16(bytes, slot.offset, 77); // more columns than the table ever had
    });
    expectStrictRefusal();
    const CompactReport report = repair();
    ASSERT_EQ(report.losses.size(), 1U);
    EXPECT_EQ(report.losses.front().page, page);
    EXPECT_EQ(report.losses.front().row, 3);
    EXPECT_EQ(repaired()->rowCount("Students"), kRows - 1);
}

TEST_F(Repair, CutsALongValueWhereItBreaksOff)
{
    const auto maps = definition.columnMaps.at(0);
    const auto pages = pagesOf(maps.owned);
    // Chains are written from their end; the first piece is on the last page of the five.
    PageNumber middle = 0;
    {
        const auto pager = Pager::open(files, kOld, true);
        for (const PageNumber page : pages) {
            const PageRef ref = pager->read(page);
            const datapage::Slot slot = datapage::slot(ref.bytes(), page, 0);
            if (slot.length == 4076 && get32(ref.bytes(), slot.offset) != 0)
                middle = get32(ref.bytes(), slot.offset) >> 8;
        }
    }
    ASSERT_NE(middle, 0U);
    wipe(middle);
    expectStrictRefusal();
    const CompactReport report = repair();
    EXPECT_TRUE(names(report, "поле «NOTE»: длинное значение обрезано"));
    EXPECT_EQ(repaired()->rowCount("Students"), kRows);
    const auto rows = repaired()->rows("SELECT NOTE FROM Students WHERE ID = 10");
    const std::string note = rows.at(0).at(0).toText();
    EXPECT_GT(note.size(), 1000U);
    EXPECT_LT(note.size(), kLongNote);
    EXPECT_EQ(note, std::string(note.size(), 'n'));
}

TEST_F(Repair, BuildsBrokenIndexesFromTheRows)
{
    wipe(definition.realIndexes[0].root);
    wipe(definition.realIndexes[1].root);
    expectStrictRefusal();
    EXPECT_TRUE(repair().losses.empty());
    EXPECT_EQ(repaired()->rowCount("Students"), kRows);
}

TEST_F(Repair, KeepsRowsThatAUniqueIndexForbids)
{
    const PageNumber page = pagesOf(definition.ownedMap).at(0);
    damage([&](Pager& pager) {
        const ByteSpan bytes = pager.modify(page);
        const auto offset = datapage::slot(bytes, page, 5).offset;
        put32(bytes, offset + 2, get32(bytes, datapage::slot(bytes, page, 4).offset + 2));
    });
    expectStrictRefusal();
    const CompactReport report = repair();
    EXPECT_TRUE(names(report, "индекс «PrimaryKey» больше не запрещает повторений"));
    EXPECT_EQ(repaired()->rowCount("Students"), kRows);
    const TableDef table = repaired()->tableDef("Students");
    EXPECT_FALSE(table.index("PrimaryKey")->primary);
    EXPECT_TRUE(table.index("FAM")->unique);
}

TEST_F(Repair, ListsThePagesOfALostTable)
{
    const auto pages = pagesOf(definition.ownedMap);
    damage([&](Pager& pager) { pager.modify(definition.page)[0x0C] ^= 1; });
    expectStrictRefusal();
    const CompactReport report = repair();
    EXPECT_TRUE(names(report, "записи остались на страницах " + std::to_string(pages.at(0))));
    EXPECT_FALSE(repaired()->hasTable("Students"));
    EXPECT_EQ(repaired()->count("SELECT * FROM Other WHERE X = 7"), 1);
}

TEST_F(Repair, FindsTablesThatTheCatalogueForgot)
{
    for (const PageNumber page : pagesOf(objects.ownedMap))
        wipe(page);
    expectStrictRefusal();
    const CompactReport report = repair();
    EXPECT_TRUE(names(report, "её имя потеряно"));
    const std::string name = "Восстановленная таблица " + std::to_string(definition.page);
    EXPECT_EQ(repaired()->tableNames().size(), 2U);
    EXPECT_EQ(repaired()->rowCount(name), kRows);
}

TEST_F(Repair, GetsByWithoutTheDefinitionsOfSystemTables)
{
    for (const PageNumber page : {2U, 3U, 4U, 5U})
        wipe(page);
    expectStrictRefusal();
    EXPECT_FALSE(repair().losses.empty());
    EXPECT_EQ(repaired()->rowCount("Students"), kRows);
    EXPECT_EQ(repaired()->rowCount("Other"), 1);
}

TEST_F(Repair, FindsRowsThatNoMapNames)
{
    const struct
    {
        const char* what;
        std::function<void(Pager&)> change;
    } damages[] = {
        {"map page wiped",
         [&](Pager& p) { std::ranges::fill(p.modify(definition.ownedMap.page), 0); }},
        {"map emptied",
         [&](Pager& p) {
             PageAllocator allocator(p);
             UsageMap map(p, allocator, definition.ownedMap);
             for (const PageNumber page : map.pages())
                 map.remove(page);
         }},
        {"map of free pages wiped", [](Pager& p) { std::ranges::fill(p.modify(1), 0); }},
    };
    const auto before = files.content(kOld);
    for (const auto& one : damages) {
        files.setContent(kOld, before);
        damage(one.change);
        expectStrictRefusal();
        repair();
        EXPECT_EQ(repaired()->rowCount("Students"), kRows) << one.what;
        EXPECT_EQ(repaired()->count("SELECT * FROM Students WHERE NOTE IS NOT NULL"),
                  kRows - kRows / 3)
            << one.what;
        files.remove(kNew);
    }
}

TEST_F(Repair, ReadsAFileThatWasCutShort)
{
    const auto whole = files.content(kOld);
    for (const std::size_t pages : {whole.size() / kPageSize - 3, whole.size() / kPageSize - 9}) {
        for (const std::size_t rest : {std::size_t{0}, std::size_t{100}}) {
            auto cut = whole;
            cut.resize(pages * kPageSize + rest);
            files.setContent(kOld, cut);
            expectStrictRefusal();
            EXPECT_FALSE(repair().losses.empty());
            EXPECT_GT(repaired()->rowCount("Students"), 0);
            EXPECT_EQ(repaired()->rowCount("Other"), 1);
            files.remove(kNew);
        }
    }
}

TEST_F(Repair, RefusesAFileWithoutItsFirstPage)
{
    auto bytes = files.content(kOld);
    std::fill_n(bytes.begin(), kPageSize, std::uint8_t{0});
    files.setContent(kOld, bytes);
    EXPECT_THROW(repair(), Error);
    EXPECT_FALSE(files.exists(kNew));
}

// Whatever is wrong: a sound file or a plain refusal.
TEST_F(Repair, GivesASoundFileWhateverIsDamaged)
{
    const auto sound = files.content(kOld);
    std::mt19937 random(7);
    int repairedFiles = 0;
    for (int round = 0; round < 60; ++round) {
        auto bytes = sound;
        for (int hit = 0; hit < 1 + round % 12; ++hit) {
            const std::size_t page = 1 + random() % (bytes.size() / kPageSize - 1);
            const std::size_t at = page * kPageSize + random() % (round % 2 == 0 ? 64 : kPageSize);
            const std::size_t length = std::min<std::size_t>(1 + random() % 40, bytes.size() - at);
            for (std::size_t i = 0; i < length; ++i)
                bytes[at + i] = static_cast<std::uint8_t>(random());
        }
        files.setContent(kOld, bytes);
        try {
            repair();
            ++repairedFiles;
            repaired()->rows("SELECT * FROM MSysObjects");
            files.remove(kNew);
        } catch (const Error& error) {
            ADD_FAILURE() << "round " << round << ": " << error.what();
            EXPECT_FALSE(files.exists(kNew));
        }
    }
    EXPECT_GT(repairedFiles, 55);
}

} // namespace
} // namespace jet
