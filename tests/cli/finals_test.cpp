#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

namespace {

// Group 1 "ИС-21", discipline 1 "Физика", two students with marks in autumn 2024.
class FinalsCommand : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(jurnalctl({"create", file()}).status, 0);
        const char* const rows[] = {
            "UPDATE RASP SET DATN = #09/02/2024#, DATK = #06/30/2025#",
            "INSERT INTO SPGRUP (NAIM, KURS) VALUES (\"ИС-21\", 2)",
            "INSERT INTO SPPRED (NAIM) VALUES (\"Физика\")",
            "INSERT INTO SPSTUD (IDG, FAM, IM) VALUES (1, \"Юдин\", \"Ян\")",
            "INSERT INTO SPSTUD (IDG, FAM, IM) VALUES (1, \"Абаев\", \"Ян\")",
            "INSERT INTO USP (ID, IDD, OC, DAT, it, TEK) VALUES (1, 1, 5, #10/01/2024#, 0, -1)",
            "INSERT INTO USP (ID, IDD, OC, DAT, it, TEK) VALUES (1, 1, 4, #11/05/2024#, 0, -1)",
            "INSERT INTO USP (ID, IDD, OC, DAT, it, TEK) VALUES (2, 1, 1, #11/05/2024#, 0, -1)",
        };
        for (const char* sql : rows) {
            const auto result = jurnalctl({"sql", file(), sql});
            ASSERT_EQ(result.status, 0) << sql << ": " << result.err;
        }
    }

    std::string file() const { return (m_folder / "journal.mdb").string(); }
    CommandResult finals(std::vector<std::string> more) const
    {
        more.insert(more.begin(), {"finals", file(), "--group", "ИС-21", "--discipline", "Физика"});
        return jurnalctl(more);
    }
    // Student, grade, date and final flag of each result.
    std::string results() const
    {
        return jurnalctl({"sql", file(),
                          "SELECT ID, OC, DAT, it FROM USP WHERE TEK = 0 ORDER BY DAT, it",
                          "--csv"})
            .out;
    }

private:
    jet::test::TemporaryFolder m_folder;
};

} // namespace

TEST_F(FinalsCommand, WritesResultsAndReplacesThemWhenTold)
{
    const auto first = finals({"--kind", "final"});
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_NE(first.out.find("4,50"), std::string::npos) << first.out;
    EXPECT_NE(first.out.find("новых 1, изменено 0, без изменений 0, удалено 0"), std::string::npos);
    const std::string header = "ID,OC,DAT,it\r\n", final = "1,4,2025-06-30,-1\r\n";
    EXPECT_EQ(results(), header + final);

    const auto again = finals({"--kind", "final"});
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("За выбранный период уже проставлены итоговые оценки."),
              std::string::npos)
        << again.err;
    EXPECT_EQ(results(), header + final);
    ASSERT_EQ(jurnalctl({"sql", file(), "UPDATE USP SET OC = 5 WHERE TEK = -1"}).status, 0);
    EXPECT_EQ(finals({"--kind", "final", "--yes"}).status, 0);
    EXPECT_EQ(results(), header + "2,5,2025-06-30,-1\r\n1,5,2025-06-30,-1\r\n");
}

TEST_F(FinalsCommand, EachKindTakesItsDates)
{
    EXPECT_EQ(finals({"--kind", "month", "--from", "2024-11-01"}).status, 0);
    EXPECT_EQ(results(), "ID,OC,DAT,it\r\n1,4,2024-11-30,0\r\n");
    EXPECT_EQ(finals({"--kind", "year", "--yes"}).status, 0);
    EXPECT_EQ(results(), "ID,OC,DAT,it\r\n1,5,2024-10-31,0\r\n1,4,2024-11-30,0\r\n");
    EXPECT_EQ(
        finals({"--kind", "period", "--from", "2024-11-01", "--to", "2024-11-20", "--yes"}).status,
        0);
    EXPECT_EQ(results(), "ID,OC,DAT,it\r\n1,5,2024-10-31,0\r\n1,4,2024-11-20,0\r\n");

    EXPECT_EQ(finals({"--kind", "period", "--from", "2024-11-01"}).status, 2);
    EXPECT_EQ(finals({"--kind", "month"}).status, 2);
    EXPECT_EQ(finals({"--kind", "year", "--from", "2024-11-01"}).status, 2);
    EXPECT_EQ(finals({"--kind", "weekly"}).status, 2);
    EXPECT_EQ(finals({"--kind", "final", "--from", "2025-11-01"}).status, 1); // ends before it
    EXPECT_EQ(finals({"--kind", "final", "--from", "1.11.2024"}).status, 1);
}

TEST_F(FinalsCommand, TheGradesJournalShowsThem)
{
    ASSERT_EQ(jurnalctl({"sql", file(),
                         "INSERT INTO SPNAGR (IDG, IDD, IDGG, DATNN, DATKK) VALUES "
                         "(1, 1, 0, #09/02/2024#, #11/20/2024#)"})
                  .status,
              0);
    ASSERT_EQ(finals({"--kind", "year"}).status, 0);
    ASSERT_EQ(finals({"--kind", "final"}).status, 0);
    const auto grades = [this](std::vector<std::string> more) {
        more.insert(more.begin(),
                    {"grades", file(), "--group", "1", "--discipline", "1", "--mode"});
        return jurnalctl(more);
    };
    const auto current = grades({"current", "--month", "11", "--year", "2024", "--json"}).json();
    ASSERT_EQ(current["columns"].size(), 30U);
    const auto passed = current["students"][0];
    EXPECT_EQ(passed["id"], 2);
    EXPECT_EQ(passed["name"], "Абаев Ян");
    EXPECT_EQ(passed["cells"][4], "Зачет");
    EXPECT_EQ(passed["cells"][20], "X"); // no longer taught
    EXPECT_TRUE(passed["cells"][5].is_null());
    EXPECT_EQ(current["students"][1]["cells"][4], 4);

    const auto monthly = grades({"monthly", "--json"}).json();
    ASSERT_EQ(monthly["columns"].size(), 10U); // September to June
    EXPECT_EQ(monthly["columns"][1], "Октябрь 2024");
    EXPECT_EQ(monthly["students"][1]["cells"][1], 5);
    EXPECT_EQ(monthly["students"][1]["cells"][2], 4);
    EXPECT_EQ(monthly["students"][1]["final"], 4);
    EXPECT_TRUE(monthly["students"][0]["final"].is_null());
    const auto final = grades({"final", "--json"}).json();
    EXPECT_EQ(final["students"][1]["cells"], nlohmann::json::array({4}));
    EXPECT_EQ(final["students"][1]["final"], 4);

    EXPECT_NE(grades({"monthly"}).out.find("4,50"), std::string::npos); // the average
    EXPECT_EQ(grades({"current"}).status, 2);
    EXPECT_EQ(grades({"weekly"}).status, 2);
}
