#include "journals/autofinals.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "journals/history.h"
#include "journals/students.h"
#include "journals/worded.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <QStringList>

#include <algorithm>
#include <map>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

// Grades that stand for the same thing, so that a student has at most one: those of a month, or
// the final ones of a period.
struct Target
{
    Month month; // not chosen: final
    Period whole;
    Period counted; // its part in the period asked for
};

struct GradeMark
{
    QDate date;
    int grade = 0;
};

struct StudentGrades
{
    std::vector<GradeMark> current;
    std::vector<GradeMark> results; // of the kind asked for
};

bool isFinal(const FinalsRequest& request)
{
    return request.kind == FinalsKind::Final;
}

std::vector<Target> targetsOf(const FinalsRequest& request, const Period& period)
{
    if (isFinal(request)) // a half year may have final grades of its own
        return {{Month(), period, period}};
    std::vector<Target> targets;
    for (const Month month : monthsOf(period))
        targets.push_back({month,
                           {month.first(), month.last()},
                           {period.kept(month.first()), period.kept(month.last())}});
    return targets;
}

// The days between which the targets lie; the day after the last is included, for a date may
// carry a time of day.
Period spanOf(const std::vector<Target>& targets)
{
    return {targets.front().whole.from, targets.back().whole.to.addDays(1)};
}

std::map<StudentId, StudentGrades> readGrades(jet::Database& database, const FinalsRequest& request,
                                              const Period& days)
{
    auto rows = database.query(R"(SELECT USP.ID, USP.OC, USP.DAT, USP.it, USP.TEK
                                  FROM USP INNER JOIN SPSTUD ON USP.ID = SPSTUD.ID
                                  WHERE USP.IDD=)"
                               + sql::number(keyNumber(request.discipline.value()))
                               + " AND SPSTUD.IDG=" + sql::number(keyNumber(request.group.value()))
                               + " AND USP.DAT between " + data::toSql(days.from) + " and "
                               + data::toSql(days.to) + " ORDER BY USP.DAT;");
    std::map<StudentId, StudentGrades> grades;
    while (rows.next()) {
        const GradeMark row{data::toDate(rows.date(2)), static_cast<int>(rows.integer(1))};
        const bool final = rows.value(3).toBool(), current = rows.value(4).toBool();
        StudentGrades& student = grades[StudentId{static_cast<int>(rows.integer(0))}];
        if (current && !final && !rows.isNull(1))
            student.current.push_back(row);
        else if (!current && final == isFinal(request))
            student.results.push_back(row);
    }
    return grades;
}

PlannedGrade planned(const StudentGrades& grades, const Target& target)
{
    PlannedGrade row;
    row.month = target.month;
    row.date = target.counted.to;
    for (const GradeMark& mark : grades.current)
        if (target.counted.contains(mark.date) && mark.grade != kPassGrade) {
            row.marks.sum += mark.grade;
            ++row.marks.count;
        }
    if (row.marks.count > 0 && row.marks.sum > 0)
        row.becomes = roundedAverage(row.marks.sum, row.marks.count);
    // Without a new grade only what lies in the period asked for goes; with one, every other
    // grade of the month must go, or there would be two.
    const Period& replaced = row.becomes ? target.whole : target.counted;
    for (const GradeMark& result : grades.results)
        if (replaced.contains(result.date))
            row.now.push_back({result.date, result.grade});
    return row;
}

std::string studentAndDiscipline(const PlannedGrade& row, const FinalsRequest& request)
{
    return "usp.id=" + sql::number(keyNumber(row.student))
           + " and usp.idd=" + sql::number(keyNumber(request.discipline.value()));
}

void store(jet::Database& database, const PlannedGrade& row, const FinalsRequest& request)
{
    for (const PlannedGrade::Stored& stored : row.now)
        database.execute("delete * from usp where " + studentAndDiscipline(row, request)
                         + " and usp.it=" + (isFinal(request) ? "-1" : "0")
                         + " and usp.tek=0 and usp.dat>=" + data::toSql(stored.date)
                         + " and usp.dat<" + data::toSql(stored.date.addDays(1)) + ";");
    if (!row.becomes)
        return;
    const std::vector<std::pair<std::string, jet::Value>> values = {
        {"ID", keyNumber(row.student)}, {"IDD", keyNumber(request.discipline.value())},
        {"OC", *row.becomes},           {"DAT", data::toJet(row.date)},
        {"it", isFinal(request)},       {"TEK", false}};
    database.insert("USP", values);
}

} // namespace

QString nowText(const PlannedGrade& row)
{
    QStringList texts;
    for (const PlannedGrade::Stored& stored : row.now)
        texts << gradeText(stored.grade);
    return texts.join(u", "_s);
}

QString becomesText(const PlannedGrade& row)
{
    return row.becomes ? gradeText(*row.becomes) : QString();
}

FinalsOutcome outcomeOf(const FinalsPlan& plan, std::span<const std::size_t> rows)
{
    FinalsOutcome outcome;
    for (const std::size_t index : rows) {
        const PlannedGrade& row = plan.rows.at(index);
        int& count = !row.becomes                       ? outcome.removed
                     : row.now.empty()                  ? outcome.added
                     : nowText(row) == becomesText(row) ? outcome.kept
                                                        : outcome.replaced;
        ++count;
    }
    return outcome;
}

QString outcomeText(const FinalsOutcome& outcome)
{
    return u"новых %1, изменено %2, без изменений %3, удалено %4"_s.arg(outcome.added)
        .arg(outcome.replaced)
        .arg(outcome.kept)
        .arg(outcome.removed);
}

int roundedAverage(int sum, int count)
{
    const int whole = sum / count, twice = 2 * (sum % count);
    const bool up = twice > count || (twice == count && whole % 2 != 0);
    return up ? whole + 1 : whole;
}

AutoFinals::AutoFinals(shell::Session& session, shell::Prompt& prompt)
    : m_session(session)
    , m_prompt(prompt)
{}

Period AutoFinals::period(const FinalsRequest& request) const
{
    switch (request.kind) {
    case FinalsKind::Month:
        return request.month.valid() ? Period{request.month.first(), request.month.last()}
                                     : Period();
    case FinalsKind::Year:
        return studyPeriod(m_session.settings());
    case FinalsKind::Final:
    case FinalsKind::Period:
        break;
    }
    return request.period;
}

bool AutoFinals::complete(const FinalsRequest& request) const
{
    QString missing;
    if (!request.group)
        missing = u"Необходимо обязательно выбрать группу."_s;
    else if (!request.discipline)
        missing = u"Необходимо обязательно выбрать дисциплину."_s;
    else if (request.kind == FinalsKind::Month && !request.month.valid())
        missing = u"Необходимо обязательно выбрать месяц."_s;
    else if (!period(request).valid())
        missing = u"Дата начала периода позже даты его окончания."_s;
    if (missing.isEmpty())
        return true;
    m_prompt.exclamation(worded(m_session.wording(), missing));
    return false;
}

std::optional<FinalsPlan> AutoFinals::plan(const FinalsRequest& request) const
{
    if (!complete(request))
        return std::nullopt;
    FinalsPlan plan{request, period(request), {}};
    const auto targets = targetsOf(request, plan.period);
    auto grades = readGrades(m_session.database(), request, spanOf(targets));
    for (const Student& student : readStudents(m_session.database(), request.group.value(), {}))
        for (const Target& target : targets) {
            PlannedGrade row = planned(grades[student.id], target);
            if (!row.becomes && row.now.empty())
                continue;
            row.student = student.id;
            row.name = student.name;
            plan.rows.push_back(std::move(row));
        }
    return plan;
}

bool AutoFinals::carryOut(const FinalsPlan& plan, std::span<const std::size_t> rows,
                          History& history)
{
    const bool replaces =
        std::ranges::any_of(rows, [&](std::size_t row) { return !plan.rows.at(row).now.empty(); });
    if (replaces
        && !m_prompt.question(u"За выбранный период уже проставлены итоговые оценки. Продолжить "
                              "автоматический расчет? \"Да\" - продолжить, оценки будут заменены, "
                              "\"Нет\" - отменить."_s))
        return false;
    if (!m_session.beforeMassAction(u"автоматическим расчетом итогов"_s))
        return false;

    const Period days = spanOf(targetsOf(plan.request, plan.period));
    std::vector<RowScope> scopes;
    for (const std::size_t row : rows)
        scopes.push_back({JournalTable::Grades, plan.rows.at(row).student, plan.request.discipline,
                          days.from, days.to});
    history.record(u"автоматический расчет итогов"_s, scopes, [&] {
        for (const std::size_t row : rows)
            store(m_session.database(), plan.rows.at(row), plan.request);
    });
    return true;
}

} // namespace journals
