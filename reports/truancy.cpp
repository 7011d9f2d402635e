#include "reports/truancy.h"

#include "data/convert.h"
#include "jet/database.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using journals::Absence;
using journals::Period;

std::string within(const std::string& field, const Period& period)
{
    return field + " between " + data::toSql(period.from) + " and " + data::toSql(period.to);
}

// An absence of an enrolled student, with the student's own group and subgroup.
struct AbsenceRow
{
    std::int64_t student = 0;
    std::int64_t group = 0;
    std::optional<std::int64_t> subgroup; // not given: it matches no lesson
    std::int64_t discipline = 0;
    QDate date;
    Absence hours;
};

std::vector<AbsenceRow> readAbsences(jet::Database& database, const Period& period)
{
    auto rows = database.query(R"(SELECT uv, nuv, idg, idd, idgg, pos.id, pos.dat
                                  From POS, spstud
                                  Where pos.id=spstud.id and
                                  (prikazOtch="" or prikazOtch is null) and )"
                               + within("dat", period) + ";");
    std::vector<AbsenceRow> absences;
    while (rows.next()) {
        AbsenceRow row;
        row.hours = {static_cast<int>(rows.integer(0)), static_cast<int>(rows.integer(1))};
        row.group = rows.integer(2);
        row.discipline = rows.integer(3);
        if (!rows.isNull(4))
            row.subgroup = rows.integer(4);
        row.student = rows.integer(5);
        row.date = data::toDate(rows.date(6));
        absences.push_back(row);
    }
    return absences;
}

// The rows of the report, or columns: keys in the order shown.
struct Names
{
    std::vector<QString> texts;
    std::unordered_map<std::int64_t, std::size_t> positions;

    void add(std::int64_t key, const QString& text)
    {
        positions.emplace(key, texts.size());
        texts.push_back(text);
    }
    std::optional<std::size_t> position(std::int64_t key) const
    {
        const auto found = positions.find(key);
        return found == positions.end() ? std::nullopt : std::optional(found->second);
    }
};

Names readNames(jet::Database& database, const std::string& select)
{
    auto rows = database.query(select);
    Names names;
    while (rows.next())
        names.add(rows.integer(0), data::fromUtf8(rows.text(1)));
    return names;
}

Names teachers(jet::Database& database)
{
    return readNames(database, "SELECT idp, famio From spprep Order By famio;");
}

Names groups(jet::Database& database)
{
    return readNames(database, "SELECT idg, naim From spgrup Order By naim;");
}

// The dates that anybody was absent, by their day numbers.
Names dates(const std::vector<AbsenceRow>& absences)
{
    std::set<QDate> days;
    for (const AbsenceRow& row : absences)
        days.insert(row.date);
    Names names;
    for (const QDate& day : days)
        names.add(day.toJulianDay(), day.toString(u"dd.MM.yyyy"_s));
    return names;
}

// What lessons and workload are matched by: date (0 by workload), group, discipline, subgroup.
using Taught = std::tuple<qint64, std::int64_t, std::int64_t, std::int64_t>;

// The teachers of each, as often as rows name them.
using Teachers = std::map<Taught, std::vector<std::int64_t>>;

Teachers readTeachers(jet::Database& database, const Period& period, TruancyRule rule)
{
    const bool byLessons = rule == TruancyRule::Lessons;
    const std::string from =
        byLessons ? "SELECT idp, idg, idd, idgg, dat From UROKI Where " + within("dat", period)
                  : std::string("SELECT idp, idg, idd, idgg From SPNAGR");
    auto rows = database.query(from + ";");
    Teachers teachers;
    while (rows.next()) {
        if (rows.isNull(0) || rows.isNull(1) || rows.isNull(2) || rows.isNull(3))
            continue;
        const qint64 day = byLessons ? data::toDate(rows.date(4)).toJulianDay() : 0;
        auto& held = teachers[{day, rows.integer(1), rows.integer(2), rows.integer(3)}];
        const std::int64_t teacher = rows.integer(0);
        if (!byLessons || std::find(held.begin(), held.end(), teacher) == held.end())
            held.push_back(teacher);
    }
    return teachers;
}

// Equal rows count once when lessons decide.
void dropRepeats(std::vector<AbsenceRow>& absences)
{
    const auto key = [](const AbsenceRow& row) {
        return std::tuple(row.date.toJulianDay(), row.student, row.discipline, row.hours.excused,
                          row.hours.unexcused);
    };
    std::ranges::sort(absences, {}, key);
    const auto alike = [&](const AbsenceRow& left, const AbsenceRow& right) {
        return key(left) == key(right);
    };
    absences.erase(std::unique(absences.begin(), absences.end(), alike), absences.end());
}

class Filler
{
public:
    Filler(TruancyReport& report, const Names& rows, const Names& columns)
        : m_report(report)
        , m_rows(rows)
        , m_columns(columns)
    {
        report.rows = rows.texts;
        report.columns = columns.texts;
        report.cells.resize(rows.texts.size() * columns.texts.size());
    }

    void add(std::int64_t row, std::int64_t column, const Absence& hours)
    {
        const auto down = m_rows.position(row);
        const auto across = m_columns.position(column);
        if (down && across)
            m_report.cells[*down * m_report.columns.size() + *across] += hours;
    }

private:
    TruancyReport& m_report;
    const Names& m_rows;
    const Names& m_columns;
};

void fillByTeachers(jet::Database& database, TruancyReport& report,
                    std::vector<AbsenceRow> absences)
{
    const bool byDay = report.kind == TruancyKind::TeachersByDay;
    const Names rows = teachers(database);
    const Names columns = byDay ? dates(absences) : groups(database);
    Filler filler(report, rows, columns);
    const bool byLessons = report.rule == TruancyRule::Lessons;
    if (byLessons)
        dropRepeats(absences);
    const Teachers taught = readTeachers(database, report.period, report.rule);
    for (const AbsenceRow& row : absences) {
        if (!row.subgroup)
            continue;
        const qint64 day = row.date.toJulianDay();
        const auto found =
            taught.find({byLessons ? day : 0, row.group, row.discipline, *row.subgroup});
        if (found == taught.end())
            continue;
        for (const std::int64_t teacher : found->second)
            filler.add(teacher, byDay ? day : row.group, row.hours);
    }
}

void fillByGroups(jet::Database& database, TruancyReport& report,
                  const std::vector<AbsenceRow>& absences)
{
    const Names rows = groups(database);
    const Names columns = dates(absences);
    Filler filler(report, rows, columns);
    for (const AbsenceRow& row : absences)
        filler.add(row.group, row.date.toJulianDay(), row.hours);
}

} // namespace

Absence TruancyReport::rowTotal(std::size_t row) const
{
    Absence sum;
    for (std::size_t column = 0; column < columns.size(); ++column)
        sum += cell(row, column);
    return sum;
}

Absence TruancyReport::columnTotal(std::size_t column) const
{
    Absence sum;
    for (std::size_t row = 0; row < rows.size(); ++row)
        sum += cell(row, column);
    return sum;
}

Absence TruancyReport::total() const
{
    Absence sum;
    for (const Absence& cell : cells)
        sum += cell;
    return sum;
}

TruancyRule truancyRule(jet::Database& database, const Period& period)
{
    auto lessons = database.query("SELECT Count(UROKI.ID) From UROKI Where " + within("dat", period)
                                  + " and UROKI.ZP=False;");
    return lessons.next() && lessons.integer(0) > 0 ? TruancyRule::Lessons : TruancyRule::Workload;
}

TruancyReport truancyReport(jet::Database& database, TruancyKind kind, const Period& period,
                            TruancyRule rule)
{
    TruancyReport report;
    report.kind = kind;
    report.rule = rule;
    report.period = period;
    auto absences = readAbsences(database, period);
    if (kind == TruancyKind::GroupsByDay)
        fillByGroups(database, report, absences);
    else
        fillByTeachers(database, report, std::move(absences));
    return report;
}

} // namespace reports
