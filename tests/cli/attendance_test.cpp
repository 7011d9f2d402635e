#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// Group 1 "ИС-21" with two students, and two groups of one name; discipline 1 "Физика" is
// taught to the first from 5 to 20 November 2024.
class AttendanceCommand : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(jurnalctl({"create", file()}).status, 0);
        const char* const rows[] = {
            "INSERT INTO SPGRUP (NAIM, KURS) VALUES (\"ИС-21\", 2)",
            "INSERT INTO SPGRUP (NAIM, KURS) VALUES (\"11\", 1)",
            "INSERT INTO SPGRUP (NAIM, KURS) VALUES (\"11\", 2)",
            "INSERT INTO SPGRUP (NAIM, KURS) VALUES (\"1\", 1)",
            "INSERT INTO SPPRED (NAIM) VALUES (\"Физика\")",
            "INSERT INTO SPSTUD (IDG, FAM, IM, OTCH) VALUES (1, \"Юдин\", \"Ян\", \"Ильич\")",
            "INSERT INTO SPSTUD (IDG, FAM, IM) VALUES (1, \"Абаев\", \"Ян\")",
            "INSERT INTO SPSTUD (IDG, FAM, prikazOtch) VALUES (1, \"Выбывший\", \"№ 5\")",
            "INSERT INTO SPNAGR (IDG, IDD, IDGG, DATNN, DATKK) VALUES "
            "(1, 1, 0, #11/05/2024#, #11/20/2024#)",
            "INSERT INTO POS (ID, IDD, DAT, UR, uv, nuv) VALUES (1, 1, #10/01/2024#, 1, 2, 0)",
            "INSERT INTO POS (ID, IDD, DAT, UR, uv, nuv) VALUES (1, 1, #08/31/2024#, 1, 2, 0)",
        };
        for (const char* sql : rows) {
            const auto result = jurnalctl({"sql", file(), sql});
            ASSERT_EQ(result.status, 0) << sql << ": " << result.err;
        }
    }

    std::string file() const { return (m_folder / "journal.mdb").string(); }
    CommandResult show(std::vector<std::string> more) const
    {
        more.insert(more.begin(), {"attendance", file(), "--month", "11", "--year", "2024"});
        return jurnalctl(more);
    }
    CommandResult mark(const std::string& date) const
    {
        return jurnalctl({"mark", file(), "--student", "1", "--discipline", "Физика", "--date",
                          date, "--lesson", "2"});
    }

private:
    jet::test::TemporaryFolder m_folder;
};

} // namespace

TEST_F(AttendanceCommand, ShowsTheGridWithItsTotals)
{
    ASSERT_EQ(mark("2024-11-06").status, 0);
    const auto result = show({"--group", "ИС-21", "--discipline", "1", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto grid = result.json();
    ASSERT_EQ(grid["columns"].size(), 30U);
    ASSERT_EQ(grid["students"].size(), 2U);
    EXPECT_EQ(grid["students"][0]["name"], "Абаев Ян");
    const auto student = grid["students"][1];
    EXPECT_EQ(student["id"], 1);
    EXPECT_EQ(student["name"], "Юдин Ян Ильич");
    EXPECT_EQ(student["start"], 2);
    EXPECT_EQ(student["month"], 2);
    EXPECT_EQ(student["end"], 4);
    EXPECT_EQ(student["endUnexcused"], 2);
    EXPECT_EQ(student["cells"][3], "X"); // the 4th: before the workload begins
    EXPECT_EQ(student["cells"][4], 0);
    EXPECT_EQ(student["cells"][5], 2);
    EXPECT_EQ(student["cells"][20], "X");
    EXPECT_EQ(grid["totals"]["all"][5], 2);
    EXPECT_EQ(grid["totals"]["unexcused"][5], 2);
    EXPECT_EQ(grid["totals"]["all"][6], 0);
    EXPECT_NE(show({"--group", "1"}).out.find("Юдин Ян Ильич"), std::string::npos);
}

TEST_F(AttendanceCommand, MarkingCountsDownAndSaysSo)
{
    EXPECT_EQ(mark("2024-11-06").status, 0);
    EXPECT_EQ(mark("2024-11-06").out, "Количество неуважительных пропусков: 1\n");
    mark("2024-11-06");
    const auto grid = show({"--group", "1", "--discipline", "1", "--json"}).json();
    EXPECT_EQ(grid["students"][1]["month"], 0);
}

TEST_F(AttendanceCommand, NamesAndKeysAreLookedUp)
{
    EXPECT_EQ(show({"--group", "2"}).status, 0);
    // "1" is a key and another group's name: the key counts.
    const auto grid = show({"--group", "1", "--json"}).json();
    EXPECT_EQ(grid["students"].size(), 2U);
    const struct
    {
        std::vector<std::string> arguments;
        const char* message;
    } refused[] = {
        {{"--group", "11"}, "11"},
        {{"--group", "ис-21"}, "ис-21"},
        {{"--group", "99"}, "99"},
        {{"--group", "1", "--discipline", "Химия"}, "Химия"},
        {{"--group", "1", "--discipline", "1", "--mode", "lesson"}, "расписание занятий"},
        {{"--group", "x\" OR \"\"=\""}, "x\" OR"},
    };
    for (const auto& one : refused) {
        const auto result = show(one.arguments);
        EXPECT_EQ(result.status, 1) << one.message;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_NE(result.err.find(one.message), std::string::npos) << result.err;
    }
}

TEST_F(AttendanceCommand, MarkRefusesWhatDoesNotExist)
{
    const std::vector<std::vector<std::string>> wrong = {
        {"--student", "77", "--discipline", "1", "--date", "2024-11-06", "--lesson", "1"},
        {"--student", "1", "--discipline", "7", "--date", "2024-11-06", "--lesson", "1"},
        {"--student", "1", "--discipline", "1", "--date", "2024-02-30", "--lesson", "1"},
        {"--student", "1", "--discipline", "1", "--date", "06.11.2024", "--lesson", "1"},
    };
    const auto before = jet::test::bytesOf(file());
    for (auto arguments : wrong) {
        arguments.insert(arguments.begin(), {"mark", file()});
        EXPECT_EQ(jurnalctl(arguments).status, 1) << arguments.at(3);
    }
    EXPECT_TRUE(jet::test::bytesOf(file()) == before);
}
