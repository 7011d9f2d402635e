#include "tests/journals/attendancefixture.h"

#include <map>
#include <random>
#include <set>

using namespace Qt::StringLiterals;
using namespace journals;

namespace {

class AttendanceLoad : public AttendanceFixture
{
protected:
    QStringList names()
    {
        QStringList list;
        for (const auto& row : load().students)
            list << row.name.section(u' ', 0, 0);
        return list;
    }
    // The days of the month that have an "X" in the first student's row.
    std::set<int> closedDays()
    {
        const AttendanceSheet sheet = load();
        std::set<int> days;
        for (std::size_t column = 0; column < sheet.columns.size(); ++column)
            if (sheet.cellText(0, column) == u"X")
                days.insert(sheet.columns[column].date.day());
        return days;
    }
};

TEST_F(AttendanceLoad, SaysWhatIsMissingInThisOrder)
{
    AttendanceSelection wanting; // neither month, year nor group
    struct Step
    {
        const char* error;
        std::function<void()> mend;
    };
    const Step steps[] = {
        {"Ошибка: не выбран месяц.", [&] { wanting.month.month = 13; }},
        {"Ошибка: неверный месяц.", [&] { wanting.month.month = 11; }},
        {"Ошибка: неверный год.", [&] { wanting.month.year = 2022; }},
        {"Ошибка: не выбрана группа.", [&] { wanting.group = GroupId{groupKey}; }},
    };
    for (const Step& step : steps) {
        EXPECT_FALSE(attendance.load(wanting).has_value());
        EXPECT_EQ(status.texts, QStringList{text(step.error)});
        status.texts.clear();
        step.mend();
    }
    EXPECT_TRUE(attendance.load(wanting).has_value());
    EXPECT_EQ(status.texts,
              (QStringList{u"Идет заполнение таблицы посещаемости..."_s, u"Готово."_s}));
}

TEST_F(AttendanceLoad, ShowsEnrolledStudentsByNameAndCountsOnlyThem)
{
    const int petrov = student("Петров");
    const int gone = student("Иванов", -1, "Приказ 12");
    student("Ёлкин");
    student("Абрамов");
    journal.database().execute("UPDATE SPSTUD SET prikazOtch = \"\" WHERE FAM = \"Абрамов\";");
    journal.student(journal.group("другая"), "Чужой", "", "");
    journal.absence(gone, mathsKey, day, 1, 0, 2);
    journal.absence(gone, mathsKey, {2022, 10, 3}, 1, 0, 2);
    journal.absence(petrov, mathsKey, day, 1, 0, 4);
    EXPECT_EQ(names(), (QStringList{u"Абрамов"_s, u"Ёлкин"_s, u"Петров"_s}));
    const AttendanceSheet sheet = load();
    EXPECT_EQ(sheet.students[2].name, u"Петров Иван Иванович");
    EXPECT_EQ(sheet.columnTotals[11], (Absence{0, 4})) << "not those of the expelled";
    EXPECT_EQ(sheet.startTotal(), Absence());
    EXPECT_TRUE(sheet.notices.isEmpty());
}

TEST_F(AttendanceLoad, NarrowsStudentsToANumberedSubgroupOnly)
{
    const int none = student("Без"), zero = student("Ноль", 0), first = student("Один", 1);
    for (const int who : {none, zero, first}) {
        journal.absence(who, mathsKey, day, 1, 1, 0);
        journal.absence(who, mathsKey, {2022, 10, 3}, 1, 1, 0);
    }
    const struct
    {
        std::optional<int> subgroup;
        QStringList names;
    } cases[] = {
        {std::nullopt, {u"Без"_s, u"Ноль"_s, u"Один"_s}},
        {0, {u"Без"_s, u"Ноль"_s, u"Один"_s}},
        {1, {u"Один"_s}},
        {2, {}},
    };
    for (const auto& row : cases) {
        selection.subgroup = row.subgroup;
        EXPECT_EQ(names(), row.names);
        const AttendanceSheet sheet = load();
        const int expected = static_cast<int>(row.names.size());
        EXPECT_EQ(sheet.monthTotal().total(), expected);
        EXPECT_EQ(sheet.startTotal().total(), expected);
    }
}

TEST_F(AttendanceLoad, HasAColumnForEachDayOfTheMonth)
{
    const struct
    {
        Month month;
        std::size_t days;
    } cases[] = {
        {{2022, 11}, 30}, {{2022, 12}, 31}, {{2023, 2}, 28}, {{2024, 2}, 29}, {{1900, 2}, 28}};
    for (const auto& row : cases) {
        selection.month = row.month;
        const AttendanceSheet sheet = load();
        EXPECT_EQ(sheet.columns.size(), row.days);
        EXPECT_EQ(sheet.columns.back().title, QString::number(row.days));
        EXPECT_EQ(sheet.columnTotals.size(), row.days);
    }
}

TEST_F(AttendanceLoad, ClosesDaysOutsideTheWorkload)
{
    student("Иванов");
    EXPECT_EQ(closedDays(), std::set<int>()) << "no workload bounds nothing";
    journal.workload(groupKey, mathsKey, {2022, 11, 3}, {2022, 11, 28});
    EXPECT_EQ(closedDays(), (std::set<int>{1, 2, 29, 30}));
    journal.workload(groupKey, mathsKey, {2022, 9, 1}, {2023, 6, 30});
    EXPECT_EQ(closedDays(), (std::set<int>{1, 2, 29, 30})) << "the first workload decides";
    selection.discipline = DisciplineId{physicsKey};
    EXPECT_EQ(closedDays(), std::set<int>());
    selection.discipline.reset();
    EXPECT_EQ(closedDays(), (std::set<int>{1, 2, 29, 30})) << "the first of any discipline";
}

TEST_F(AttendanceLoad, ClosesDaysWithoutALessonWhenTheTimetableIsUsed)
{
    journal.options(true, 2);
    student("Иванов");
    journal.lesson(groupKey, mathsKey, {2022, 11, 1}, 1);
    journal.lesson(groupKey, mathsKey, {2022, 11, 30}, 2);
    journal.lesson(groupKey, mathsKey, {2022, 10, 31}, 1);
    journal.lesson(groupKey, physicsKey, {2022, 11, 2}, 1);
    const auto openDays = [this] {
        std::set<int> days;
        const auto closed = closedDays();
        for (int number = 1; number <= 30; ++number)
            if (!closed.contains(number))
                days.insert(number);
        return days;
    };
    EXPECT_EQ(openDays(), (std::set<int>{1, 30}));
    selection.discipline.reset();
    EXPECT_EQ(openDays(), (std::set<int>{1, 2, 30}));
}

TEST_F(AttendanceLoad, ShowsAnAbsenceEvenOnAClosedDay)
{
    journal.options(true, 2);
    const int who = student("Иванов");
    journal.absence(who, mathsKey, day, 1, 0, 2);
    const AttendanceSheet sheet = load();
    EXPECT_EQ(sheet.cellText(0, 10), u"X");
    EXPECT_EQ(sheet.cellText(0, 11), u"2");
    EXPECT_EQ(sheet.students[0].month.total(), 2);
}

TEST_F(AttendanceLoad, CountsTheBalanceFromTheFirstOfSeptember)
{
    const int who = student("Иванов");
    const struct
    {
        const char* what;
        Month month;
        QDate date;
        bool counted;
    } cases[] = {
        {"September has none", {2022, 9}, {2022, 8, 31}, false},
        {"nor its own days", {2022, 9}, {2022, 9, 1}, false},
        {"October begins with September", {2022, 10}, {2022, 9, 1}, true},
        {"not with August", {2022, 10}, {2022, 8, 31}, false},
        {"the month itself is not before it", {2022, 11}, {2022, 11, 1}, false},
        {"the day before is", {2022, 11}, {2022, 10, 31}, true},
        {"January looks back to last September", {2023, 1}, {2022, 9, 1}, true},
        {"and no further", {2023, 1}, {2022, 8, 31}, false},
        {"August begins with last September", {2023, 8}, {2022, 9, 1}, true},
        {"and ends with July", {2023, 8}, {2023, 7, 31}, true},
        {"not with itself", {2023, 8}, {2023, 8, 1}, false},
    };
    for (const auto& row : cases) {
        journal.database().execute("DELETE * FROM POS;");
        journal.absence(who, mathsKey, row.date, 1, 1, 3);
        selection.month = row.month;
        EXPECT_EQ(load().students[0].start, row.counted ? (Absence{1, 3}) : Absence()) << row.what;
    }
}

TEST_F(AttendanceLoad, SumsTheLessonsOfADayAndNamesTheirKind)
{
    const int who = student("Иванов");
    journal.absence(who, mathsKey, {2022, 11, 1}, 1, 0, 2);
    journal.absence(who, mathsKey, {2022, 11, 1}, 2, 0, 1);
    journal.absence(who, mathsKey, {2022, 11, 2}, 1, 2, 0);
    journal.absence(who, mathsKey, {2022, 11, 3}, 1, 2, 0);
    journal.absence(who, mathsKey, {2022, 11, 3}, 3, 0, 1);
    journal.absence(who, mathsKey, {2022, 11, 4}, 1, 0, 0);
    journal.absence(who, physicsKey, {2022, 11, 4}, 1, 0, 5);
    const AttendanceSheet sheet = load();
    const struct
    {
        const char* text;
        AbsenceState state;
    } days[] = {{"3", AbsenceState::Unexcused},
                {"2", AbsenceState::Excused},
                {"3", AbsenceState::Mixed},
                {"", AbsenceState::None}};
    for (std::size_t column = 0; column < std::size(days); ++column) {
        EXPECT_EQ(sheet.cellText(0, column), text(days[column].text));
        EXPECT_EQ(sheet.state(0, column), days[column].state);
    }
    selection.discipline.reset();
    EXPECT_EQ(load().cellText(0, 3), u"5") << "all disciplines together";
}

TEST_F(AttendanceLoad, HasAColumnForEachLessonOfTheDiscipline)
{
    journal.options(true, 2);
    selection.mode = AttendanceMode::Lessons;
    const int who = student("Иванов");
    journal.lesson(groupKey, mathsKey, {2022, 11, 3}, 2);
    journal.lesson(groupKey, mathsKey, {2022, 11, 1}, 4);
    journal.lesson(groupKey, mathsKey, {2022, 11, 3}, 1);
    journal.lesson(groupKey, mathsKey, {2021, 11, 3}, 1);
    journal.lesson(groupKey, physicsKey, {2022, 11, 4}, 1);
    journal.absence(who, mathsKey, {2022, 11, 3}, 1, 0, 2);
    journal.absence(who, mathsKey, {2022, 11, 3}, 2, 1, 0);
    const AttendanceSheet sheet = load();
    QStringList titles;
    for (const auto& column : sheet.columns)
        titles << column.title;
    EXPECT_EQ(titles, (QStringList{u"01.11.2022 № 4 пары"_s, u"03.11.2022 № 1 пары"_s,
                                   u"03.11.2022 № 2 пары"_s}));
    EXPECT_EQ(sheet.cell(0, 0), Absence());
    EXPECT_EQ(sheet.cell(0, 1), (Absence{0, 2}));
    EXPECT_EQ(sheet.cell(0, 2), (Absence{1, 0}));
    journal.options(true, 1);
    EXPECT_EQ(load().columns[0].title, u"01.11.2022 № 4 часа");
}

TEST_F(AttendanceLoad, TellsLessonsOfSubgroupsAtOneTimeApart)
{
    journal.options(true, 2);
    selection.mode = AttendanceMode::Lessons;
    const int first = student("Абрамов", 1), second = student("Быков", 2), none = student("Ветров");
    journal.lesson(groupKey, mathsKey, day, 1, 2);
    journal.lesson(groupKey, mathsKey, day, 1, 1);
    for (const int who : {first, second, none})
        journal.absence(who, mathsKey, day, 1, 0, 2);
    const AttendanceSheet sheet = load();
    ASSERT_EQ(sheet.columns.size(), 2U);
    EXPECT_EQ(sheet.columns[0].title, u"12.11.2022 № 1 пары 1 п/г");
    EXPECT_EQ(sheet.columns[1].title, u"12.11.2022 № 1 пары 2 п/г");
    const int unexcused[3][2] = {{2, 0}, {0, 2}, {2, 0}};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 2; ++column)
            EXPECT_EQ(sheet.cell(row, column).unexcused, unexcused[row][column]);
    EXPECT_EQ(sheet.monthTotal().total(), 6) << "each absence counts once";
}

TEST_F(AttendanceLoad, SaysWhenAMonthHasNoLessons)
{
    journal.options(true, 2);
    selection.mode = AttendanceMode::Lessons;
    student("Иванов");
    prompt.expect(Box::Information, u"Справочник занятий не заполнен на этот месяц."_s);
    const AttendanceSheet sheet = load();
    EXPECT_TRUE(sheet.columns.empty());
    EXPECT_EQ(sheet.students.size(), 1U);
    EXPECT_EQ(status.last(), u"Готово.");
}

TEST_F(AttendanceLoad, ReportsAbsencesThatHaveNoColumn)
{
    journal.options(true, 2);
    selection.mode = AttendanceMode::Lessons;
    const int who = student("Иванов");
    journal.lesson(groupKey, mathsKey, day, 1);
    journal.absence(who, mathsKey, day, 1, 0, 2);
    journal.absence(who, mathsKey, day, 3, 0, 2);
    journal.absence(who, mathsKey, {2022, 11, 14}, 1, 0, 2);
    const AttendanceSheet sheet = load();
    EXPECT_EQ(sheet.notices, (QStringList{u"Невозможно отобразить пропуск: 12.11.2022."_s,
                                          u"Невозможно отобразить пропуск: 14.11.2022."_s}));
    EXPECT_TRUE(status.texts.contains(u"Невозможно отобразить пропуск: 14.11.2022."_s));
    EXPECT_EQ(status.last(), u"Готово.");
    EXPECT_EQ(sheet.monthTotal().total(), 2);
}

TEST_F(AttendanceLoad, ShadesSundaysAndHolidays)
{
    journal.holiday(4, 11);
    std::set<int> off;
    for (const auto& column : load().columns)
        if (column.dayOff)
            off.insert(column.date.day());
    EXPECT_EQ(off, (std::set<int>{4, 6, 13, 20, 27}));
}

TEST_F(AttendanceLoad, RefusesLessonModeWithItsReason)
{
    selection.mode = AttendanceMode::Lessons;
    prompt.expect(Box::Information,
                  u"Данная функция будет доступна, если Вы включите в параметрах программы "
                  "\"Использовать расписание занятий\"."_s);
    EXPECT_FALSE(attendance.load(selection).has_value());
    journal.options(true, 2);
    selection.discipline.reset();
    prompt.expect(Box::Information,
                  u"Вывод посещаемости по ВСЕМ дисциплинам возможен только при отображении ВСЕХ "
                  "дней месяца. При выборе любой дисциплины из списка дисциплин данный режим "
                  "станет доступен, нажатием этой кнопки Вы сможете отобразить Журнал занятий по "
                  "дисциплине."_s);
    EXPECT_FALSE(attendance.load(selection).has_value());
}

// Sums kept beside the file while random absences are entered.
TEST_F(AttendanceLoad, TotalsAgreeWithSumsMadeIndependently)
{
    std::mt19937 random(20221112);
    const auto pick = [&random](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(random);
    };
    std::vector<int> students;
    for (int i = 0; i < 6; ++i)
        students.push_back(student("Студент " + std::to_string(i)));
    std::map<int, Absence> starts, months;
    std::map<int, Absence> days;
    const QDate september(2022, 9, 1);
    jet::Transaction transaction(journal.database());
    for (int i = 0; i < 400; ++i) {
        const int who = students[static_cast<std::size_t>(pick(0, 5))];
        const QDate date = september.addDays(pick(-20, 120));
        const int discipline = pick(0, 1) == 0 ? mathsKey : physicsKey;
        const Absence hours{pick(0, 2), pick(0, 2)};
        journal.absence(who, discipline, date, pick(1, 6), hours.excused, hours.unexcused);
        if (discipline != mathsKey || date < september || date > QDate(2022, 11, 30))
            continue;
        const bool inMonth = date.month() == 11;
        (inMonth ? months : starts)[who] += hours;
        if (inMonth)
            days[date.day()] += hours;
    }
    transaction.commit();
    const AttendanceSheet sheet = load();
    for (const auto& row : sheet.students) {
        const int who = static_cast<int>(row.id);
        EXPECT_EQ(row.start, starts[who]);
        EXPECT_EQ(row.month, months[who]);
        EXPECT_EQ(row.end(), starts[who] + months[who]);
    }
    for (const auto& column : sheet.columns)
        EXPECT_EQ(sheet.columnTotals[static_cast<std::size_t>(column.date.day() - 1)],
                  days[column.date.day()]);
}

} // namespace
