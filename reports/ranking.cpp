#include "reports/ranking.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/error.h"
#include "reports/statements/grouprows.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using Counts = std::array<int, 6>; // grades by value; 0 and 1 stay unused

// What the file holds of one enrolled student in the period.
struct StudentFigures
{
    std::int64_t group = 0;
    Counts grades{};
    std::int64_t excused = 0, unexcused = 0;
};

struct Group
{
    QString name;
    std::int64_t speciality = 0;
    int lessons = 0;
};

// Everything that the ranking is computed from; each table is read once.
struct AllFigures
{
    std::vector<RankingRow> specialities; // names only
    std::unordered_map<std::int64_t, StudentFigures> students;
    std::vector<std::int64_t> groupOrder;
    std::unordered_map<std::int64_t, Group> groups;
    int hoursPerLesson = 1;
};

// The end day counts for final grades only.
std::string period(const RankingRequest& request, bool withEnd = false)
{
    return "dat >= " + data::toSql(request.begin) + " and dat " + (withEnd ? "<= " : "< ")
           + data::toSql(request.end);
}

void readGroups(jet::Database& database, AllFigures& figures)
{
    auto rows = database.query("SELECT SPGRUP.IDG, SPGRUP.IDO, SPGRUP.NAIM From SPGRUP "
                               "Order By SPGRUP.NAIM;");
    while (rows.next()) {
        figures.groupOrder.push_back(rows.integer(0));
        figures.groups[rows.integer(0)] = {data::fromUtf8(rows.text(2)), rows.integer(1), 0};
    }
}

void readStudents(jet::Database& database, AllFigures& figures)
{
    auto rows = database.query(R"(SELECT SPSTUD.ID, SPSTUD.IDG From SPSTUD
                                  Where (prikazOtch="" or prikazOtch is null);)");
    while (rows.next())
        figures.students[rows.integer(0)].group = rows.integer(1);
}

void readGrades(jet::Database& database, const RankingRequest& request, AllFigures& figures)
{
    const bool isFinal = request.grades == RankingGrades::Final;
    auto rows =
        database.query("SELECT USP.ID, USP.OC, Count(USP.ID) From USP Where tek=0 and it="
                       + std::string(isFinal ? "True" : "0") + " and " + period(request, isFinal)
                       + " and OC between 2 and 5 Group By USP.ID, USP.OC;");
    while (rows.next())
        if (const auto student = figures.students.find(rows.integer(0));
            student != figures.students.end())
            student->second.grades[static_cast<std::size_t>(rows.integer(1))] +=
                static_cast<int>(rows.integer(2));
}

void readAbsences(jet::Database& database, const RankingRequest& request, AllFigures& figures)
{
    auto rows = database.query("SELECT POS.ID, Sum(POS.uv), Sum(POS.nuv) From POS Where "
                               + period(request) + " Group By POS.ID;");
    while (rows.next())
        if (const auto student = figures.students.find(rows.integer(0));
            student != figures.students.end()) {
            student->second.excused += rows.integer(1);
            student->second.unexcused += rows.integer(2);
        }
}

void readLessons(jet::Database& database, const RankingRequest& request, AllFigures& figures)
{
    for (const auto& [key, lessons] : countLessons(database, period(request)))
        if (const auto group = figures.groups.find(key); group != figures.groups.end())
            group->second.lessons += lessons;
}

// What is added up for one row.
struct Sums
{
    int students = 0, good = 0, failing = 0, lessons = 0;
    Counts grades{};
    std::int64_t excused = 0, unexcused = 0;

    void add(const StudentFigures& student)
    {
        ++students;
        // Neither a 2 nor a 3, or no grade at all.
        student.grades[2] == 0 && student.grades[3] == 0 ? ++good : ++failing;
        for (std::size_t grade = 0; grade < grades.size(); ++grade)
            grades[grade] += student.grades[grade];
        excused += student.excused;
        unexcused += student.unexcused;
    }
};

double percent(double part, double whole)
{
    constexpr double kTenths = 1000; // of the whole
    return std::nearbyint(part / whole * kTenths) / 10;
}

void setGrades(RankingRow& row, const Sums& sums)
{
    const int all = sums.grades[5] + sums.grades[4] + sums.grades[3] + sums.grades[2];
    row.values[RankingItem::Grades] = all;
    row.values[RankingItem::Fives] = sums.grades[5];
    row.values[RankingItem::Fours] = sums.grades[4];
    row.values[RankingItem::Threes] = sums.grades[3];
    row.values[RankingItem::Twos] = sums.grades[2];
    if (all > 0)
        row.values[RankingItem::HighShare] = percent(sums.grades[5] + sums.grades[4], all);
    row.values[RankingItem::GoodStudents] = sums.good;
    row.values[RankingItem::Failing] = sums.failing;
    const bool anybody = sums.students > 0;
    row.values[RankingItem::Quality] = anybody ? percent(sums.good, sums.students) : 0;
    row.values[RankingItem::PassRate] =
        anybody ? percent(sums.students - sums.failing, sums.students) : 0;
}

void setAttendance(RankingRow& row, const Sums& sums, int hoursPerLesson)
{
    const double hours = static_cast<double>(sums.lessons) * hoursPerLesson;
    const double personHours = hours * sums.students;
    const auto missed = static_cast<double>(sums.excused + sums.unexcused);
    const auto unexcused = static_cast<double>(sums.unexcused);
    row.values[RankingItem::Hours] = hours;
    row.values[RankingItem::PersonHours] = personHours;
    row.values[RankingItem::Missed] = missed;
    row.values[RankingItem::MissedExcused] = static_cast<double>(sums.excused);
    row.values[RankingItem::MissedUnexcused] = unexcused;
    if (personHours > 0) {
        row.values[RankingItem::Attendance] = percent(personHours - missed, personHours);
        row.values[RankingItem::AttendanceForgiving] =
            percent(personHours - unexcused, personHours);
    }
}

void setValues(RankingRow& row, const Sums& sums, int hoursPerLesson)
{
    setGrades(row, sums);
    setAttendance(row, sums, hoursPerLesson);
}

std::vector<RankingRow> readSpecialities(jet::Database& database)
{
    auto found = database.query("SELECT SPOTD.IDO, SPOTD.Naim, SPOTD.KOD FROM SPOTD;");
    std::vector<RankingRow> rows;
    while (found.next()) {
        RankingRow row;
        row.key = found.integer(0);
        row.name = data::fromUtf8(found.text(1));
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace

struct Ranking::Figures : AllFigures
{};

Ranking::Ranking(jet::Database& database, const RankingRequest& request)
{
    auto figures = std::make_unique<Figures>();
    figures->specialities = readSpecialities(database);
    readGroups(database, *figures);
    readStudents(database, *figures);
    readGrades(database, request, *figures);
    readAbsences(database, request, *figures);
    readLessons(database, request, *figures);
    figures->hoursPerLesson = std::max(1, data::readSettingsRow(database).hoursPerLesson);
    m_figures = std::move(figures);
}

Ranking::~Ranking() = default;

std::vector<RankingRow> Ranking::specialities() const
{
    std::vector<RankingRow> rows = m_figures->specialities;
    if (rows.size() > kMostSpecialities)
        throw jet::Error(jet::Fault::Limit, "специальностей больше 50, человеко-часы посчитать "
                                            "нельзя: индекс вне границ массива");
    std::unordered_map<std::int64_t, Sums> sums;
    std::unordered_map<std::int64_t, int> groups;
    for (const auto& [key, group] : m_figures->groups) {
        ++groups[group.speciality];
        sums[group.speciality].lessons += group.lessons;
    }
    for (const auto& [id, student] : m_figures->students)
        if (const auto group = m_figures->groups.find(student.group);
            group != m_figures->groups.end())
            sums[group->second.speciality].add(student);
    for (RankingRow& row : rows) {
        row.values[RankingItem::Size] = groups[row.key];
        setValues(row, sums[row.key], m_figures->hoursPerLesson);
    }
    setPlaces(rows);
    return rows;
}

std::vector<RankingRow> Ranking::groups(std::int64_t speciality) const
{
    std::unordered_map<std::int64_t, Sums> sums;
    for (const auto& [id, student] : m_figures->students)
        sums[student.group].add(student);
    std::vector<RankingRow> rows;
    for (const std::int64_t key : m_figures->groupOrder) {
        const Group& group = m_figures->groups.at(key);
        if (group.speciality != speciality)
            continue;
        RankingRow row;
        row.key = key;
        row.name = group.name;
        Sums& own = sums[key];
        own.lessons = group.lessons;
        row.values[RankingItem::Size] = own.students;
        setValues(row, own, m_figures->hoursPerLesson);
        rows.push_back(std::move(row));
    }
    setPlaces(rows);
    return rows;
}

} // namespace reports
