#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"
#include "tests/support/workbook.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

// A small demonstration institution with a year of absences and grades.
class ReportCommand : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(jurnalctl({"demo", file(), "--scale", "small", "--seed", "7"}).status, 0);
    }
    std::string file() const { return (m_folder / "journal.mdb").string(); }
    std::string output() const { return (m_folder / "report.xlsx").string(); }
    CommandResult report(const std::string& kind, std::vector<std::string> more) const
    {
        more.insert(more.begin(), {"report", kind, file(), "-o", output()});
        return jurnalctl(more);
    }
    // The first value of the first row.
    std::string value(const std::string& sql) const
    {
        const auto rows = jurnalctl({"sql", file(), sql, "--json"}).json()["rows"];
        return rows[0][0].dump();
    }

private:
    jet::test::TemporaryFolder m_folder;
};

} // namespace

TEST_F(ReportCommand, WritesEveryKind)
{
    const std::vector<std::string> month = {"--month", "3", "--year", "2026"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.end(), month.begin(), month.end());
        return more;
    };
    const std::string student = value("SELECT Min(ID) FROM SPSTUD WHERE IDG=1");
    const std::string discipline = value("SELECT Min(IDD) FROM SPNAGR WHERE IDG=1");
    struct Case
    {
        std::string kind;
        std::vector<std::string> options;
        QString title;
    };
    const Case cases[] = {
        {"attendance", with({"--group", "1"}), u"посещаемости"_s},
        {"grades-month", with({"--group", "1"}), u"успеваемости"_s},
        {"grades-subject", with({"--group", "1", "--discipline", discipline}), u"успеваемости"_s},
        {"grades-subject",
         {"--view", "periodic", "--group", "1", "--discipline", discipline},
         u"успеваемости"_s},
        {"grades-subject", {"--view", "combined", "--group", "1"}, u"успеваемости"_s},
        {"card", with({"--group", "1", "--student", student}), u"Табель"_s},
        {"final", {"--group", "1"}, u"Итог"_s},
        {"summary", month, u"Сводн"_s},
        {"truancy-teachers", month, u"ПО ПРЕПОДАВАТЕЛЯМ"_s},
        {"truancy-groups", month, u"ПО ГРУППАМ"_s},
        {"truancy-teachers-groups",
         {"--from", "2026-03-01", "--to", "2026-03-31"},
         u"ПО ПРЕПОДАВАТЕЛЯМ/ГРУППАМ"_s},
    };
    for (const Case& each : cases) {
        const auto result = report(each.kind, each.options);
        EXPECT_EQ(result.status, 0) << each.kind << ": " << result.err;
        const auto book = Workbook::read(QString::fromStdString(output()));
        QString all;
        for (const QStringList& row : book.rows)
            all += row.join(u' ') + u'\n';
        EXPECT_TRUE(all.contains(each.title, Qt::CaseInsensitive))
            << each.kind << all.toStdString();
        std::filesystem::remove(output());
    }
}

TEST_F(ReportCommand, AddsUpWhatTheFileHolds)
{
    ASSERT_EQ(report("truancy-groups", {"--month", "3", "--year", "2026"}).status, 0);
    const auto book = Workbook::read(QString::fromStdString(output()));
    const auto sum = [&](const std::string& field) {
        return u'='
               + QString::fromStdString(value(
                   "SELECT Sum(" + field
                   + ") FROM POS, SPSTUD WHERE POS.ID=SPSTUD.ID AND"
                     " (prikazOtch=\"\" OR prikazOtch IS NULL) AND POS.DAT BETWEEN #03/01/2026# AND"
                     " #03/31/2026#"));
    };
    QStringList total;
    for (const QStringList& row : book.rows)
        if (!row.isEmpty() && row.first() == u"ИТОГО"_s)
            total = row;
    ASSERT_GT(total.size(), 2);
    EXPECT_EQ(total.sliced(total.size() - 2), (QStringList{sum("uv"), sum("nuv")}));
}

TEST_F(ReportCommand, WritesACardForEachStudent)
{
    const auto result =
        report("card", {"--group", "1", "--month", "3", "--year", "2026", "--each"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::string students = value("SELECT Count(ID) FROM SPSTUD WHERE IDG=1 AND"
                                       " (prikazOtch=\"\" OR prikazOtch IS NULL)");
    const std::filesystem::directory_iterator files(output());
    EXPECT_EQ(std::to_string(std::distance(begin(files), end(files))), students);
}

TEST_F(ReportCommand, RefusesWhatMakesNoSense)
{
    const std::vector<std::string> month = {"--month", "3", "--year", "2026"};
    EXPECT_EQ(report("weekly", month).status, 2);
    EXPECT_EQ(report("summary", {"--month", "3"}).status, 2);
    EXPECT_EQ(report("summary", {"--month", "13", "--year", "2026"}).status, 2);
    EXPECT_EQ(report("truancy-teachers-groups", {"--from", "2026-03-01"}).status, 2);
    EXPECT_EQ(jurnalctl({"report", "final", file()}).status, 2);
    const auto extra = report("summary", {"--month", "3", "--year", "2026", "--group", "1"});
    EXPECT_EQ(extra.status, 2);
    EXPECT_NE(extra.err.find("--group"), std::string::npos) << extra.err;
    EXPECT_EQ(report("final", {"--each"}).status, 2);
    EXPECT_EQ(report("final", {"--group", "нет такой"}).status, 1);
    EXPECT_EQ(report("grades-subject", month).status, 1); // no discipline
    EXPECT_EQ(
        report("truancy-teachers-groups", {"--from", "2026-03-31", "--to", "2026-03-01"}).status,
        1);
    EXPECT_FALSE(std::filesystem::exists(output()));
    ASSERT_EQ(report("summary", month).status, 0);
    const auto again = report("summary", month);
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("report.xlsx"), std::string::npos) << again.err;
}
