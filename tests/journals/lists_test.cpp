#include "journals/lists.h"

#include "tests/journals/attendancefixture.h"

#include <array>

using namespace Qt::StringLiterals;
using namespace journals;

namespace {

class JournalLists : public AttendanceFixture
{
protected:
    QStringList disciplineNames(std::optional<int> subgroup = std::nullopt)
    {
        QStringList names;
        for (const auto& discipline : disciplineList(journal.database(), GroupId{groupKey},
                                                     subgroup, {{2022, 11, 1}, {2022, 11, 30}}))
            names << discipline.name;
        return names;
    }
};

TEST_F(JournalLists, TakeWorkloadThatOverlapsTheMonth)
{
    struct Case
    {
        const char* what;
        QDate first, last;
        bool taught;
    };
    const Case cases[] = {
        {"ends the day before", {2022, 9, 1}, {2022, 10, 31}, false},
        {"ends on the first day", {2022, 9, 1}, {2022, 11, 1}, true},
        {"covers the month", {2022, 9, 1}, {2023, 6, 30}, true},
        {"lies inside the month", {2022, 11, 10}, {2022, 11, 12}, true},
        {"is the month", {2022, 11, 1}, {2022, 11, 30}, true},
        {"begins on the last day", {2022, 11, 30}, {2023, 1, 31}, true},
        {"begins the day after", {2022, 12, 1}, {2023, 1, 31}, false},
    };
    for (const Case& row : cases) {
        journal.database().execute("DELETE * FROM SPNAGR;");
        journal.workload(groupKey, mathsKey, row.first, row.last);
        EXPECT_EQ(disciplineNames(), row.taught ? QStringList{u"Математика"_s} : QStringList())
            << row.what;
    }
}

TEST_F(JournalLists, TakeLessonsOfTheMonthWhenTheTimetableIsUsed)
{
    journal.options(true, 2);
    journal.workload(groupKey, physicsKey, {2022, 9, 1}, {2023, 6, 30});
    journal.lesson(groupKey, mathsKey, {2022, 10, 31}, 1);
    EXPECT_EQ(disciplineNames(), QStringList());
    journal.lesson(groupKey, mathsKey, {2022, 11, 1}, 1);
    journal.lesson(groupKey, mathsKey, {2022, 11, 1}, 2);
    journal.lesson(groupKey, mathsKey, {2022, 11, 30}, 1);
    journal.lesson(journal.group("другая"), physicsKey, {2022, 11, 1}, 1);
    EXPECT_EQ(disciplineNames(), QStringList{u"Математика"_s}) << "each discipline once";
}

TEST_F(JournalLists, NarrowToTheSubgroupAndCountAnEmptyOneAsNone)
{
    const QDate first(2022, 9, 1), last(2023, 6, 30);
    journal.workload(groupKey, physicsKey, first, last, 1);
    const int nobody = journal.discipline("Алгебра");
    journal.workload(groupKey, nobody, first, last);
    journal.database().execute("UPDATE SPNAGR SET IDGG = NULL WHERE IDD = " + std::to_string(nobody)
                               + ";");
    journal.workload(groupKey, mathsKey, first, last, 0);
    EXPECT_EQ(disciplineNames(), (QStringList{u"Алгебра"_s, u"Математика"_s, u"Физика"_s}));
    EXPECT_EQ(disciplineNames(0), (QStringList{u"Алгебра"_s, u"Математика"_s}));
    EXPECT_EQ(disciplineNames(1), QStringList{u"Физика"_s});
    EXPECT_EQ(disciplineNames(2), QStringList());
}

TEST_F(JournalLists, OfferEverySubgroupThatStudentsHave)
{
    const auto names = [&] {
        QStringList list;
        for (const auto& subgroup : subgroupList(journal.database(), GroupId{groupKey}))
            list << subgroup.name;
        return list;
    };
    const QStringList usual{u"Все подгруппы"_s, u"(группа полностью)"_s, u"1 п/г"_s, u"2 п/г"_s};
    EXPECT_EQ(names(), usual);
    student("Иванов", 3);
    EXPECT_EQ(names(), usual + QStringList{u"3 п/г"_s});
}

} // namespace
