// Statements beside the grid, the truancy report and a spreadsheet program, on random data.
#include "data/settingsrow.h"
#include "journals/attendancesheetreader.h"
#include "journals/gradesheet.h"
#include "journals/lists.h"
#include "papers/workbook.h"
#include "reports/report.h"
#include "reports/truancy.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>
#include <random>

using namespace reports;
using namespace Qt::StringLiterals;
using Grade = SmallJournal::Grade;

namespace {

class StatementFiguresTest : public testing::Test
{
protected:
    StatementFiguresTest()
    {
        file.options(true, 2);
        file.studyYear({2022, 9, 1}, {2023, 6, 30});
        jet::Transaction transaction(file.database());
        for (const char* name : {"А-1", "Б-2", "В-3"})
            groups.push_back(file.group(name));
        for (const char* name : {"Алгебра", "Биология", "География"})
            disciplines.push_back(file.discipline(name));
        for (int i = 0; i < 30; ++i)
            fillStudent(groups[pick(2)], i);
        for (int i = 0; i < 40; ++i)
            file.lesson(groups[pick(2)], disciplines[pick(3)], day(), 1 + i % 6,
                        static_cast<int>(pick(3)));
        transaction.commit();
    }

    void fillStudent(int group, int number)
    {
        const int student = file.student(group, "Студент" + std::to_string(number), "И", "О",
                                         static_cast<int>(pick(3)), pick(6) == 0 ? "пр. 1" : "");
        for (int i = 0; i < 6; ++i)
            file.absence(student, disciplines[pick(3)], day(), 1, static_cast<int>(pick(3)),
                         static_cast<int>(pick(3)));
        file.absence(student, disciplines[0], first.addDays(-3), 1, 1, 1); // of October
        for (const int discipline : disciplines) {
            if (pick(5) == 0)
                continue;
            file.grade(student, discipline, first.addDays(29), mark(), Grade::Monthly);
            file.grade(student, discipline, {2023, 6, 30}, mark(), Grade::Final);
            file.grade(student, discipline, day(), mark());
        }
    }
    std::size_t pick(std::size_t count) { return random() % count; }
    QDate day() { return first.addDays(static_cast<qint64>(pick(30))); }
    // Failures are rarer, so that every standing occurs.
    int mark()
    {
        return pick(6) == 0   ? journals::kPassGrade
               : pick(8) == 0 ? 2
                              : 3 + static_cast<int>(pick(3));
    }

    papers::Document make(ReportKind kind, SubjectView view = SubjectView::Current)
    {
        ReportRequest wanted;
        wanted.kind = kind;
        wanted.view = view;
        wanted.month = {2022, 11};
        if (kind == ReportKind::GradesSubject)
            wanted.discipline = journals::DisciplineId{disciplines[0]};
        const data::SettingsRow settings = data::readSettingsRow(file.database());
        return makeReport({file.database(), settings, shell::Wording()}, wanted).value();
    }
    static int value(const papers::Cell& cell)
    {
        const auto* number = std::get_if<double>(&cell.value);
        return number ? static_cast<int>(*number) : 0;
    }

    const QDate first{2022, 11, 1};
    std::mt19937 random{7};
    SmallJournal file;
    std::vector<int> groups, disciplines;
};

const QString kOffice = u"soffice"_s; // findExecutable() knows the suffixes

// Has the office program compute all formulas anew and write each sheet as "book-SHEET.csv".
bool convert(const QString& office, const QDir& folder)
{
    const QString profile = folder.filePath(u"profile/user"_s);
    QDir().mkpath(profile);
    QFile settings(profile + u"/registrymodifications.xcu"_s);
    if (!settings.open(QIODevice::WriteOnly))
        return false;
    settings.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                   "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\">"
                   "<item oor:path=\"/org.openoffice.Office.Calc/Formula/Load\">"
                   "<prop oor:name=\"OOXMLRecalcMode\" oor:op=\"fuse\"><value>0</value></prop>"
                   "</item></oor:items>");
    settings.close();
    const QString utf8AllSheets =
        u"csv:Text - txt - csv (StarCalc):124,34,76,1,,0,false,true,false,false,false,-1"_s;
    constexpr int kPatience = 120'000; // ms
    QProcess process;
    process.start(office, {u"-env:UserInstallation=file://"_s + folder.filePath(u"profile"_s),
                           u"--headless"_s, u"--convert-to"_s, utf8AllSheets, u"--outdir"_s,
                           folder.path(), folder.filePath(u"book.xlsx"_s)});
    return process.waitForFinished(kPatience) && process.exitCode() == 0;
}

QList<QStringList> csvRows(const QString& path)
{
    QFile csv(path);
    QList<QStringList> rows;
    if (!csv.open(QIODevice::ReadOnly))
        return rows;
    for (const QString& line : QString::fromUtf8(csv.readAll()).split(u'\n'))
        rows << line.split(u'|');
    return rows;
}

// Compares the cells of the body that are computed; gives how many there were.
int compareFormulas(const papers::Paper& paper, const QList<QStringList>& sheet)
{
    int compared = 0;
    constexpr qsizetype kTop = papers::kFirstBodyRow - 1;
    for (const papers::PlacedCell& place : papers::placed(paper.body)) {
        if (place.cell->formula.isEmpty())
            continue;
        const QString found = sheet.value(kTop + place.row).value(place.column).remove(u'"');
        const QString where = u"%1, %2:%3 %4"_s.arg(paper.name)
                                  .arg(place.row)
                                  .arg(place.column)
                                  .arg(place.cell->formula);
        if (const auto* number = std::get_if<double>(&place.cell->value)) {
            EXPECT_NEAR(found.toDouble(), *number, std::pow(10, -place.cell->decimals) / 2 + 1e-9)
                << where.toStdString() << ' ' << found.toStdString();
        } else if (found != u"0") { // which the format of an empty result hides
            EXPECT_EQ(found, papers::shownText(*place.cell)) << where.toStdString();
        }
        ++compared;
    }
    return compared;
}

} // namespace

TEST_F(StatementFiguresTest, GridStatementSummaryAndTruancyAgree)
{
    const auto truancy = truancyReport(file.database(), TruancyKind::GroupsByDay,
                                       {first, first.addDays(29)}, TruancyRule::Lessons);
    const auto papersOfGroups = make(ReportKind::Attendance).papers;
    const auto summary = make(ReportKind::Summary).papers.front().body;
    ASSERT_EQ(papersOfGroups.size(), 3U);
    int missed = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        journals::AttendanceSelection selection;
        selection.group = journals::GroupId{groups[i]};
        selection.month = {2022, 11};
        const auto grid = readAttendanceSheet(file.database(), selection).monthTotal();
        const papers::Row& total = papersOfGroups[i].body[papersOfGroups[i].body.size() - 2];
        EXPECT_EQ(truancy.rowTotal(i), grid);
        constexpr std::size_t kTotal = 31, kExcused = 32, kUnexcused = 33; // behind 30 days
        EXPECT_EQ(value(total[kTotal]), grid.total());
        EXPECT_EQ(value(total[kExcused]), grid.excused);
        EXPECT_EQ(value(total[kUnexcused]), grid.unexcused);
        EXPECT_EQ(value(summary[1 + i][14]), grid.total());
        missed += grid.total();
    }
    EXPECT_EQ(value(summary.back()[12]), missed); // the label covers three columns
    EXPECT_GT(missed, 100);
    for (const papers::Row& row : summary) {
        const std::size_t at = row.size() == 20 ? 3 : 1;
        if (row.size() == 1)
            continue;
        int sum = 0;
        for (std::size_t column = at + 1; column <= at + 5; ++column)
            sum += value(row[column]);
        EXPECT_EQ(sum, value(row[at])); // every student stands in one of the five columns
    }
}

TEST_F(StatementFiguresTest, AnOfficeProgramComputesTheSameFigures)
{
    const QString office = QStandardPaths::findExecutable(kOffice);
    if (office.isEmpty())
        GTEST_SKIP() << "no office program";
    papers::Document book{u"test"_s, u"book"_s, {}};
    const auto add = [&](papers::Document made) {
        papers::Paper paper = made.papers.front();
        paper.name = u"S%1"_s.arg(book.papers.size());
        book.papers.push_back(paper);
    };
    for (const ReportKind kind : {ReportKind::Attendance, ReportKind::GradesMonth,
                                  ReportKind::Final, ReportKind::GradesSubject})
        add(make(kind));
    add(make(ReportKind::GradesSubject, SubjectView::Periodic));
    add(make(ReportKind::GradesSubject, SubjectView::Combined));
    add(make(ReportKind::Summary));
    // A result that is wrong on purpose shows whether formulas are computed at all.
    papers::Cell wrong = papers::number(5);
    wrong.formula = u"1+1"_s;
    papers::Paper probe = book.papers.front();
    probe.name = u"probe"_s;
    probe.body = {{papers::number(1), wrong}};
    book.papers.push_back(probe);

    const QTemporaryDir folder;
    papers::writeWorkbook(book, folder.filePath(u"book.xlsx"_s));
    ASSERT_TRUE(convert(office, QDir(folder.path())));
    const auto sheetOf = [&](const papers::Paper& paper) {
        return csvRows(folder.filePath(u"book-"_s + paper.name + u".csv"_s));
    };
    ASSERT_EQ(sheetOf(probe).value(papers::kFirstBodyRow - 1).value(1), u"2"_s);
    book.papers.pop_back();
    for (const papers::Paper& paper : book.papers)
        EXPECT_GT(compareFormulas(paper, sheetOf(paper)), 10);
}
