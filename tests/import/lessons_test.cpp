// Which lessons are taken, and that the journal is changed as a whole or not at all.

#include "import/importtexts.h"
#include "jet/error.h"
#include "jet/sqltext.h"
#include "shell/wording.h"
#include "tests/import/importfixture.h"
#include "tests/support/jet3file.h"

#include <algorithm>
#include <fstream>
#include <random>

using namespace Qt::StringLiterals;
using jet::test::Jet3File;

namespace {

class LessonsImport : public ImportFixture
{
protected:
    Lines lessons() { return rows("SELECT DAT, UR, IDR FROM UROKI ORDER BY ID"); }
};

// Why a file cannot be imported from, "" when it can.
std::string refusal(const QString& path, const QString& journal = {})
{
    try {
        imports::Timetable::open(path, journal);
        return {};
    } catch (const jet::Error& error) {
        return error.what();
    }
}

Jet3File::Bytes number(unsigned value)
{
    return Jet3File::number(value, 4);
}

// With the fields alone without which nothing can be imported.
Jet3File olderTimetable()
{
    const auto key = [](const char* name) { return Jet3File::Column{name, 4, 4, 3}; };
    const auto text = [](const char* name) { return Jet3File::Column{name, 10, 50, 2}; };
    const Jet3File::Column date{"DAT", 8, 8, 3};
    Jet3File file;
    file.tables = {
        {"SPOTD",
         {key("IDO"), text("SOKR"), text("NAIM")},
         {{number(1), Jet3File::text("IS"), Jet3File::text("Systems")}}},
        {"SPPREP", {key("IDP"), text("FAMIO")}, {{number(1), Jet3File::text("Belov")}}},
        {"SPTIPZ", {text("NAIM")}, {}},
        {"SPGRUP",
         {key("IDG"), key("IDO"), key("KURS"), text("NAIM")},
         {{number(1), number(1), number(2), Jet3File::text("IS-21")}}},
        {"SPPRED", {key("IDD"), text("NAIM")}, {{number(1), Jet3File::text("Physics")}}},
        {"SPNAGR",
         {key("IDN"), key("IDP"), key("IDG"), key("IDD")},
         {{number(1), number(1), number(1), number(1)}}},
        {"UROKI", {date, key("UR"), key("IDP"), key("IDG"), key("IDD"), key("IDN")}, {}},
    };
    for (const int day : {30, 45, 46}) { // 30 September, 15 and 16 October
        const double days = jet::DateTime::of(2024, 9, 1).days + day - 1;
        file.tables.back().rows.push_back(
            {Jet3File::real(days), number(2), number(1), number(1), number(1), number(1)});
    }
    return file;
}

} // namespace

TEST_F(LessonsImport, ProjectAndPeriodSelectAsTheConditionGroups)
{
    TimetableFile source;
    const auto place = source.place();
    struct Case
    {
        QDate date;
        jet::Value project;
        bool taken;
    };
    const std::vector<Case> cases = {
        {{2024, 9, 30}, 0, false}, {{2024, 10, 1}, 0, true},   {{2024, 10, 31}, 0, true},
        {{2024, 11, 1}, 0, false}, {{2024, 10, 15}, 1, false}, {{2024, 10, 15}, {}, true},
        {{2023, 1, 1}, {}, true}, // without a project the date does not count
    };
    for (std::size_t i = 0; i < cases.size(); ++i)
        source.lesson(place, cases[i].date, static_cast<int>(i) + 1, cases[i].project);
    const QString path = source.path();
    EXPECT_EQ(import(path).lessons, 4);
    const Lines once = {"01.01.2023 7 -", "01.10.2024 2 0", "15.10.2024 6 -", "31.10.2024 3 0"};
    EXPECT_EQ(lessons(), once);
    import(path);
    Lines twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(lessons(), twice) << "lessons are not looked for";
    EXPECT_EQ(rows("SELECT COUNT(*) FROM SPNAGR"), Lines{"1"});
    const auto timetable = imports::Timetable::open(path, journal.path());
    EXPECT_EQ(imports::lessonsThere(journal.database(), period,
                                    imports::chooseLessons(*timetable, period)),
              8);
}

TEST_F(LessonsImport, WhatOneLessonHasIsCarriedOver)
{
    TimetableFile source;
    const auto place = source.place();
    source.add("SPNAGR", {{"IDP", place.teacher},
                          {"IDG", place.group},
                          {"IDD", place.discipline},
                          {"IDGG", 2}}); // without dates: not imported
    for (const int workload : {1, 2})
        source.add("UROKI", {{"DAT", data::toJet(QDate(2024, 10, 2))},
                             {"UR", 5},
                             {"IDP", 1},
                             {"IDG", 1},
                             {"IDD", 1},
                             {"IDN", workload},
                             {"IDGG", 2},
                             {"IDR", 0},
                             {"ZP", true},
                             {"MORE", workload == 1},
                             {"HAND", true},
                             {"IDA", 8}});
    import(source.path());
    EXPECT_EQ(rows("SELECT IDGG, IDN, ZP, MORE, HAND, IDA FROM UROKI"),
              (Lines{"2 1 -1 -1 -1 -", "2 - -1 0 -1 -"}));
    // A lesson whose workload is in the journal already finds it there.
    journal.database().insert("SPNAGR", {{{"IDP", 1}, {"IDG", 1}, {"IDD", 1}, {"IDGG", 2}}});
    import(source.path());
    EXPECT_EQ(rows("SELECT IDN FROM UROKI"), (Lines{"1", "-", "1", "2"}));
}

TEST_F(LessonsImport, PlacesAgreeWithTheQueries)
{
    TimetableFile source;
    std::mt19937 random(7);
    const auto key = [&random](unsigned most) {
        const auto drawn = static_cast<unsigned>(random() % (most + 2)); // 0 and NULL lead nowhere
        return drawn == 0 ? jet::Value() : jet::Value(static_cast<int>(drawn) - 1);
    };
    for (const char* suffix : {"", " 2", " 3", " 4"})
        source.place(suffix);
    source.database().execute("UPDATE SPGRUP SET IDO = 9 WHERE IDG = 4");
    for (int number = 1; number <= 400; ++number)
        source.add("UROKI", {{"DAT", jet::DateTime::of(2024, 9 + static_cast<int>(random() % 3),
                                                       1 + static_cast<int>(random() % 30))},
                             {"UR", number},
                             {"IDP", key(3)},
                             {"IDG", key(4)},
                             {"IDD", key(3)},
                             {"IDN", key(3)},
                             {"IDR", key(1)}});
    const std::string begin = jet::sql::date(data::toJet(period.from));
    const std::string end = jet::sql::date(data::toJet(period.to));
    const std::string condition = "WHERE  (((UROKI.DAT)>=" + begin + ") and ((UROKI.DAT)<=" + end
                                  + ")  AND ((UROKI.IDR)=0)) OR (((UROKI.IDR) Is Null) AND "
                                    "((IsNull([UROKI].[IDR]))<>False)) ";
    const auto shown =
        rows(source.database(),
             "SELECT UROKI.UR FROM ((UROKI INNER JOIN SPPRED ON UROKI.IDD = SPPRED.IDD) "
             "LEFT JOIN SPPREP ON UROKI.IDP = SPPREP.IDP) INNER JOIN SPGRUP ON UROKI.IDG "
             "= SPGRUP.IDG "
                 + condition + "ORDER BY UROKI.UR;");
    const auto taken =
        rows(source.database(),
             "select d.UR from (SELECT * FROM UROKI " + condition
                 + ") as d , spnagr, sppred, spgrup, spprep, spotd where   spprep.idp= "
                   "uroki.idp and spgrup.idg=uroki.idg and sppred.idd=uroki.idd and "
                   "UROKI.idn=spnagr.idn and spotd.ido=spgrup.ido ORDER BY d.UR");
    const auto timetable = imports::Timetable::open(source.path(), journal.path());
    const auto choice = imports::chooseLessons(*timetable, period);
    std::vector<int> shownHere, takenHere;
    jet::DateTime last;
    for (std::size_t row = 0; row < choice.lessons.size(); ++row) {
        const auto number = choice.lessons.value(row, imports::LessonField::Number).toInteger();
        const auto date = choice.lessons.value(row, imports::LessonField::Date).toDate();
        EXPECT_LE(last.days, date.days);
        last = date;
        if (choice.places[row].isComplete())
            takenHere.push_back(static_cast<int>(number));
        if (choice.places[row].isShown())
            shownHere.push_back(static_cast<int>(number));
    }
    const auto sorted = [](std::vector<int> numbers) {
        std::ranges::sort(numbers);
        Lines texts;
        for (const int each : numbers)
            texts.push_back(std::to_string(each));
        return texts;
    };
    EXPECT_GT(taken.size(), 5U);
    EXPECT_GT(shown.size(), taken.size());
    EXPECT_EQ(sorted(shownHere), shown);
    EXPECT_EQ(sorted(takenHere), taken);
    EXPECT_EQ(choice.complete, takenHere.size());
}

TEST_F(LessonsImport, WhatIsSkippedIsSaid)
{
    TimetableFile source;
    const auto whole = source.place();
    auto place = whole;
    source.lesson(whole, {2024, 10, 2}, 1);
    place.teacher = 9;
    source.lesson(place, {2024, 10, 2}, 2);
    place = whole;
    place.workload = 0;
    source.lesson(place, {2024, 10, 2}, 3);
    source.lesson(place, {2024, 10, 2}, 4);
    source.lesson(whole, {2024, 10, 2}, 5, 7); // of a project
    source.lesson(whole, {2025, 10, 2}, 5, 7); // not in the period
    const auto timetable = imports::Timetable::open(source.path(), journal.path());
    const auto choice = imports::chooseLessons(*timetable, period);
    using shell::Institution;
    EXPECT_EQ(imports::skippedText(choice, shell::Wording()),
              u"Пропущено занятий: 3 (нет преподавателя — 1, нет нагрузки — 2). "
              "Не импортируется занятий из проектов расписания: 1."_s);
    EXPECT_EQ(imports::skippedText(choice, shell::Wording(Institution::School)),
              u"Пропущено уроков: 3 (нет учителя — 1, нет нагрузки — 2). "
              "Не импортируется уроков из проектов расписания: 1."_s);
    QStringList tables;
    for (const auto& line : imports::summary({}, shell::Wording(Institution::School)))
        tables << line.table;
    EXPECT_EQ(tables.join(u' '), u"Параллели Учителя Типы уроков Классы Предметы Нагрузка Уроки"_s);
}

TEST_F(LessonsImport, SourcesOfEveryKindAreRead)
{
    for (const bool encoded : {false, true}) {
        TimetableFile source({}, encoded);
        source.lesson(source.place(), {2024, 10, 2}, 1);
        EXPECT_EQ(import(source.path()).lessons, 1) << encoded;
    }
    const jet::test::TemporaryFolder folder;
    auto older = olderTimetable();
    const auto bytes = older.bytes();
    std::ofstream(folder / "older.mdb", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    EXPECT_EQ(import(data::fromPath(folder / "older.mdb")).lessons, 2)
        << "without projects the period alone counts";
    EXPECT_EQ(rows("SELECT DAT, UR, IDR FROM UROKI WHERE ID > 2"),
              (Lines{"15.10.2024 2 0", "16.10.2024 2 0"}));
    EXPECT_EQ(rows("SELECT IDO, KURS, NAIM FROM SPGRUP").back(), "2 2 IS-21");
}

TEST_F(LessonsImport, SourcesThatLackSomethingAreRefusedByName)
{
    for (const char* table : {"SPOTD", "SPPREP", "SPTIPZ", "SPGRUP", "SPPRED", "SPNAGR", "UROKI"})
        EXPECT_EQ(refusal(TimetableFile({table}).path()),
                  std::string("в базе данных нет таблицы ") + table);
    EXPECT_EQ(refusal(TimetableFile({"SPGRUP.KURS"}).path()),
              "в таблице SPGRUP базы данных нет поля KURS");
    EXPECT_EQ(refusal(journal.path(), journal.path()), "это файл открытого журнала");
    EXPECT_NE(refusal(journal.path() + u".none"_s), "");
}

TEST_F(LessonsImport, AFailureOrACancelLeavesTheJournalAsItWas)
{
    TimetableFile source;
    const auto place = source.place();
    for (int number = 1; number <= 600; ++number)
        source.lesson(place, {2024, 10, 2}, number);
    const auto timetable = imports::Timetable::open(source.path(), journal.path());
    const auto choice = imports::chooseLessons(*timetable, period);
    const auto before = jet::test::bytesOf(data::toPath(journal.path()));
    int calls = 0;
    EXPECT_FALSE(imports::importLessons(*timetable, period, choice, journal.database(),
                                        [&](int) { return ++calls < 2; }));
    EXPECT_EQ(rows("SELECT COUNT(*) FROM UROKI"), Lines{"0"});
    if (FailingWrites::possible()) {
        const FailingWrites full;
        EXPECT_THROW(imports::importLessons(*timetable, period, choice, journal.database()),
                     jet::Error);
    }
    journal.reopen();
    EXPECT_EQ(jet::test::bytesOf(data::toPath(journal.path())), before);
    EXPECT_TRUE(imports::importLessons(*timetable, period, choice, journal.database()));
    journal.reopen();
    EXPECT_EQ(rows("SELECT COUNT(*) FROM UROKI"), Lines{"600"});
    EXPECT_EQ(jet::test::structuralErrors(data::toPath(journal.path())).value_or(""), "");
}

TEST(ImportPeriod, AMonthIsTheMost)
{
    const struct
    {
        QDate from, to;
        QString problem;
    } cases[] = {
        {{2024, 10, 1}, {2024, 10, 31}, u""_s},
        {{2024, 10, 1}, {2024, 11, 1}, u"Период не должен быть больше 31 дня."_s},
        {{2024, 2, 29}, {2024, 2, 29}, u""_s},
        {{2024, 3, 2}, {2024, 3, 1}, u"Дата начала позже даты окончания."_s},
        {{}, {2024, 3, 1}, u"Укажите даты начала и окончания периода."_s},
    };
    for (const auto& each : cases)
        EXPECT_EQ(imports::problem({each.from, each.to}), each.problem);
    EXPECT_EQ(imports::monthOf({2024, 2, 10}), (imports::Period{{2024, 2, 1}, {2024, 2, 29}}));
}
