#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A journal and a timetable with one lesson that can be imported and one that cannot.
class ImportLessons : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const std::string& path : {file(), source()})
            ASSERT_EQ(jurnalctl({"create", path}).status, 0);
        for (const char* row :
             {"INSERT INTO SPOTD (SOKR, NAIM) VALUES (\"ИС\", \"Системы\")",
              "INSERT INTO SPPREP (FAMIO) VALUES (\"Белов А.А.\")",
              "INSERT INTO SPGRUP (IDO, KURS, NAIM) VALUES (1, 2, \"ИС-21\")",
              "INSERT INTO SPPRED (NAIM) VALUES (\"Физика\")",
              "INSERT INTO SPNAGR (IDP, IDG, IDD, DATNN, DATKK, IDNN) VALUES (1, 1, 1, "
              "#09/01/2024#, #12/31/2024#, 1)",
              "INSERT INTO UROKI (DAT, UR, IDP, IDG, IDD, IDN, IDR) VALUES (#11/06/2024#, 2, 1, 1, "
              "1, 1, 0)",
              "INSERT INTO UROKI (DAT, UR, IDP, IDG, IDD, IDN, IDR) VALUES (#11/07/2024#, 3, 9, 1, "
              "1, 1, 0)"})
            ASSERT_EQ(jurnalctl({"sql", source(), row}).status, 0) << row;
    }
    std::string file() const { return (m_folder / "journal.mdb").string(); }
    std::string source() const { return (m_folder / "timetable.mdb").string(); }
    CommandResult call(std::vector<std::string> more = {}) const
    {
        std::vector<std::string> all = {"import-lessons", file(), source()};
        all.insert(all.end(), more.begin(), more.end());
        return jurnalctl(all);
    }
    std::string lessons() const
    {
        return jurnalctl({"sql", file(), "SELECT UR, IDN FROM UROKI", "--json"})
            .json()["rows"]
            .dump();
    }

private:
    jet::test::TemporaryFolder m_folder;
};

const std::vector<std::string> kNovember = {"--from", "2024-11-01", "--to", "2024-11-30"};

} // namespace

TEST_F(ImportLessons, LessonsAreAddedAgainEachTimeAndTold)
{
    auto dry = kNovember;
    dry.insert(dry.end(), {"--dry-run", "--json"});
    EXPECT_EQ(call(dry).json()["lessons"], 1);
    EXPECT_EQ(lessons(), "[]") << "only counted";
    const auto first = call(kNovember);
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.out.find("Импорт успешно завершен. Импортировано: 1 занятий.\n"), 0U);
    EXPECT_EQ(first.err, "Пропущено занятий: 1 (нет преподавателя — 1).\n");
    auto again = kNovember;
    again.push_back("--json");
    const auto second = call(again);
    EXPECT_EQ(second.json()["skipped"], 1);
    EXPECT_EQ(second.json()["tables"][1].dump(),
              R"({"added":0,"name":"Преподаватели","unchanged":1,"updated":0})");
    EXPECT_EQ(second.err.find("В журнале за эти дни уже были занятия: 1.\n"), 0U);
    EXPECT_EQ(lessons(), "[[2,1],[2,1]]");
    EXPECT_EQ(jet::test::structuralErrors(file()).value_or(""), "");
    const auto csv = jet::test::mdbtools("mdb-export", {"-H", file(), "UROKI"});
    if (csv) {
        EXPECT_NE(csv->find("2,\"11/06/24 00:00:00\",2,1,1,"), std::string::npos) << *csv;
    }
}

TEST_F(ImportLessons, WhatCannotBeImportedIsRefusedInOneLine)
{
    EXPECT_EQ(call({"--from", "2024-11-01", "--to", "2024-12-02"}).err,
              "Период не должен быть больше 31 дня.\n");
    EXPECT_EQ(call({"--from", "2024-11-01"}).status, 2);
    EXPECT_EQ(jurnalctl({"sql", source(), "DROP TABLE SPTIPZ"}).status, 0);
    const auto refused = call(kNovember);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "в базе данных нет таблицы SPTIPZ\n");
    EXPECT_EQ(lessons(), "[]");
}
