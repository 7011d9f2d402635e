#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A student without a subgroup and one of subgroup 2; on two days lesson 1 for all and lesson 2
// for each subgroup. Lessons of two hours.
class AbsenceCommands : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(jurnalctl({"create", file()}).status, 0);
        std::vector<std::string> rows = {
            "UPDATE RASP SET MNJ = 2",
            "INSERT INTO SPGRUP (NAIM) VALUES (\"ИС-21\")",
            "INSERT INTO SPPRED (NAIM) VALUES (\"Физика\")",
            "INSERT INTO SPSTUD (IDG, FAM, IM) VALUES (1, \"Абаев\", \"Ян\")",
            "INSERT INTO SPSTUD (IDG, IDGG, FAM) VALUES (1, 2, \"Юдин\")",
        };
        for (const char* day : {"#11/06/2024#", "#11/07/2024#"})
            for (const char* lesson : {"1, 0", "2, 1", "2, 2"})
                rows.push_back(std::string("INSERT INTO UROKI (IDG, IDD, DAT, UR, IDGG) VALUES "
                                           "(1, 1, ")
                               + day + ", " + lesson + ")");
        for (const std::string& row : rows)
            ASSERT_EQ(sql(row).status, 0) << row;
    }
    std::string file() const { return (m_folder / "journal.mdb").string(); }
    CommandResult sql(const std::string& text) const { return jurnalctl({"sql", file(), text}); }
    CommandResult call(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin() + 1, file());
        return jurnalctl(arguments);
    }
    // "student day lesson subgroup uv nuv" a line.
    std::string absences() const
    {
        const auto rows = jurnalctl({"sql", file(),
                                     "SELECT ID, day(dat), UR, IDDG, uv, nuv FROM POS ORDER BY ID,"
                                     " dat, UR",
                                     "--json"})
                              .json()["rows"];
        std::string text;
        for (const auto& row : rows) {
            for (const auto& value : row)
                text += (value.is_null() ? "-" : value.dump()) + ' ';
            text += '\n';
        }
        return text;
    }

private:
    jet::test::TemporaryFolder m_folder;
};

} // namespace

TEST_F(AbsenceCommands, APeriodIsWrittenForSeveralStudents)
{
    const std::vector<std::string> period = {"absence-period", "--from",     "2024-11-06",
                                             "--to",           "2024-11-06", "--student"};
    const auto with = [&](std::vector<std::string> more) {
        std::vector<std::string> all = period;
        all.insert(all.end(), more.begin(), more.end());
        return call(all);
    };
    const auto refused = with({"1", "2"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("--subgroup"), std::string::npos) << refused.err;
    EXPECT_EQ(absences(), "") << "one conflict and nothing is written";
    EXPECT_EQ(with({"2"}).out, "Записано пропусков: 2.\n") << "his own subgroup";
    EXPECT_EQ(with({"1", "2", "--subgroup", "1", "--reason", "excused"}).out,
              "Записано пропусков: 4. Студентов: 2. Заменено прежних: 2.\n");
    EXPECT_EQ(absences(), "1 6 1 0 2 0 \n1 6 2 1 2 0 \n2 6 1 0 2 0 \n2 6 2 1 2 0 \n");
    EXPECT_EQ(with({"1", "--reason", "нет"}).status, 2);
    EXPECT_EQ(with({"9"}).status, 1);
    EXPECT_EQ(
        call({"absence-period", "--student", "1", "--from", "2024-11-07", "--to", "2024-11-06"})
            .err,
        "Дата начала позже даты окончания. Пропуски не записаны.\n");
}

TEST_F(AbsenceCommands, NamesakesAreAbsentOnlyWhenTold)
{
    ASSERT_EQ(sql("INSERT INTO SPSTUD (IDG, IDGG, FAM) VALUES (1, 2, \"Юдин\")").status, 0);
    std::vector<std::string> period = {"absence-period", "--from",    "2024-11-06", "--to",
                                       "2024-11-06",     "--student", "2"};
    const auto refused = call(period);
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("Полные тезки в группе: Юдин."), std::string::npos) << refused.err;
    EXPECT_EQ(absences(), "");
    period.emplace_back("--yes");
    EXPECT_EQ(call(period).out, "Записано пропусков: 4. Студентов: 2.\n");
}

TEST_F(AbsenceCommands, ADayIsReplacedAndNothingIsLostUnasked)
{
    const std::vector<std::string> day = {"absence-day", "--student", "2", "--date", "2024-11-07"};
    const auto with = [&](std::vector<std::string> more) {
        std::vector<std::string> all = day;
        all.insert(all.end(), more.begin(), more.end());
        return call(all);
    };
    EXPECT_EQ(with({"--lesson", "3"}).status, 1);
    EXPECT_EQ(with({}).status, 0);
    EXPECT_EQ(absences(), "2 7 1 0 0 2 \n2 7 2 2 0 2 \n");
    EXPECT_NE(with({"--lesson", "2", "--hours", "1", "--reason", "excused"}).out.find("ИТОГО:"),
              std::string::npos);
    EXPECT_EQ(absences(), "2 7 1 0 0 2 \n2 7 2 2 1 0 \n");
    ASSERT_EQ(sql("INSERT INTO POS (ID, IDD, DAT, UR, uv, nuv) VALUES (2, 1, #11/07/2024#, 8, 0, "
                  "2)")
                  .status,
              0);
    const auto refused = with({"--hours", "0"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("№ 8 Физика"), std::string::npos) << refused.err;
    EXPECT_EQ(with({"--hours", "0", "--yes"}).status, 0);
    EXPECT_EQ(absences(), "");
    EXPECT_EQ(with({"--hours", "256"}).status, 2);
}

TEST_F(AbsenceCommands, OutsideReadersSeeWhatWasWritten)
{
    ASSERT_EQ(
        call({"absence-period", "--student", "2", "--from", "2024-11-06", "--to", "2024-11-07"})
            .status,
        0);
    const auto csv = jet::test::mdbtools("mdb-export", {"-H", file(), "POS"});
    if (!csv)
        GTEST_SKIP() << "mdbtools is not installed";
    for (const char* line :
         {"2,0,2,\"11/06/24 00:00:00\",1,1,0", "2,0,2,\"11/06/24 00:00:00\",2,1,2",
          "2,0,2,\"11/07/24 00:00:00\",1,1,0", "2,0,2,\"11/07/24 00:00:00\",2,1,2"})
        EXPECT_NE(csv->find(line), std::string::npos) << line << " in\n" << *csv;
    EXPECT_EQ(jet::test::structuralErrors(file()).value_or(""), "");
}
