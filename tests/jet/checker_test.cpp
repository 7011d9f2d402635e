#include "jet/storage/checker.h"

#include "jet/error.h"
#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace jet::test {
namespace {

std::vector<Finding> findingsIn(const std::filesystem::path& path)
{
    return checkDatabase(*Pager::open(FileSystem::system(), path, true));
}

bool has(const std::vector<Finding>& findings, const std::string& table, const char* text)
{
    return std::ranges::any_of(findings, [&](const Finding& f) {
        return f.table == table && f.text.find(text) != std::string::npos;
    });
}

std::size_t countHarmful(const std::vector<Finding>& findings)
{
    return static_cast<std::size_t>(
        std::ranges::count(findings, Severity::Harmful, &Finding::severity));
}

TEST(Checker, CountsWhatItLookedAt)
{
    CheckedFile file(false);
    CheckTotals totals;
    EXPECT_EQ(describe(file.check(&totals)), "");
    EXPECT_EQ(totals.tables, 7U); // the four of the engine among them
    // 500 students less 17 deleted, 3 groups, 1 wide row; the catalogue's have indexes.
    const std::size_t students = file.rows("SPSTUD").size() + file.movedRows().size();
    EXPECT_EQ(students, 483U);
    const std::size_t objects = file.rows("MSysObjects").size();
    const std::size_t permissions = file.rows("MSysACEs").size();
    EXPECT_EQ(totals.rows, students + 4 + objects + permissions + 1);
    EXPECT_EQ(totals.indexEntries, 3 * students + 3 + 2 * objects + permissions + 3);
    EXPECT_EQ(totals.harmful + totals.harmless, 0U);
}

TEST(Checker, CountsFindingsThatItDoesNotList)
{
    CheckedFile file(false);
    file.damage([&](Pager& p) {
        p.modify(file.students().page)[columnEntryAt(file.students(), "CODE") + 0x17] = 2;
    });
    CheckTotals totals;
    const auto findings = file.check(&totals);
    EXPECT_EQ(totals.harmful, 483U);
    EXPECT_EQ(countHarmful(findings), 20U) << describe(findings);
    EXPECT_NE(describe(findings).find("(всего таких мест: 483)"), std::string::npos);
}

TEST(Checker, ChecksOtherTablesWhenPartOfTheCatalogueIsLost)
{
    CheckedFile file(false);
    file.damage([&](Pager& p) {
        const RowPointer row = file.object("WIDE");
        p.modify(row.page)[spanOf(p.read(row.page).bytes(), row).begin] = 200;
        p.modify(file.rows("SPGRUP")[0].page)[2] ^= 1;
    });
    const auto findings = file.check();
    EXPECT_TRUE(has(findings, "MSysObjects", "противоречит описанию")) << describe(findings);
    EXPECT_TRUE(has(findings, "SPGRUP", "свободное место")) << describe(findings);
}

TEST(Checker, RefusesAFileCutShort)
{
    CheckedFile file(false);
    auto bytes = file.sound();
    bytes.resize(bytes.size() - 100);
    file.setContent(bytes);
    EXPECT_THROW(file.check(), Error);
    bytes.resize(bytes.size() / 4096 / 2 * 4096); // whole pages
    file.setContent(bytes);
    EXPECT_GT(countHarmful(file.check()), 0U);
}

// What the independent checker calls errors of a sample; wrong row counters of user tables
// are among them, which do no harm.
TEST(CheckerSamples, AgreesWithTheIndependentCheckerAboutFilesOfAccess)
{
    const auto samples = readableSamples();
    if (samples.empty())
        GTEST_SKIP() << "no sample files";
    for (const auto& sample : samples) {
        SCOPED_TRACE(sample.filename());
        const std::vector<Finding> findings = findingsIn(sample);
        EXPECT_EQ(countHarmful(findings), 0U) << describe(findings);
        // All keys are compared but those of texts in unknown scripts and of another order.
        const bool hasUnknownKeys =
            sample.stem() == "test-unicode-comp-v2003" || sample.stem() == "system-1251";
        EXPECT_EQ(describe(findings).find("ключи не сравнить") != std::string::npos,
                  hasUnknownKeys);
        std::istringstream errors(structuralErrors(sample).value_or(""));
        for (std::string line; std::getline(errors, line);) {
            if (!line.starts_with("error: "))
                continue;
            EXPECT_NE(line.find("row count is"), std::string::npos) << line;
            const std::string table = line.substr(7, line.find(',') - 7);
            EXPECT_TRUE(has(findings, table, "счётчик строк")) << line;
        }
    }
}

// The harmless findings of some samples, as the independent checker warns of them.
TEST(CheckerSamples, WarnsOfWhatDoesNoHarm)
{
    struct Warning
    {
        const char* sample;
        const char* table;
        const char* text;
    };
    const Warning warnings[] = {
        {"autozap.mdb", "Personal", "лишние пометки"},
        {"autozap.mdb", "MSysObjects", "счётчик строк показывает 40, строк 42"},
        {"borey.mdb", "", "никому не принадлежат: 3"},
        {"comp-index-test-v2003.mdb", "Table1", "не такие, как"},
        {"test-index-codes.mdb", "", "никому не принадлежат: 768"},
        {"system-1251.mdw", "", "заранее заняты страницы: 19"},
    };
    for (const Warning& warning : warnings) {
        const auto sample = sampleFile(warning.sample);
        if (!sample)
            GTEST_SKIP() << "no sample files";
        const auto findings = findingsIn(*sample);
        EXPECT_TRUE(has(findings, warning.table, warning.text)) << warning.sample << "\n"
                                                                << describe(findings);
    }
}

} // namespace
} // namespace jet::test
