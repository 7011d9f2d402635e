#include "journals/periodabsence.h"

#include "journals/absences.h"
#include "journals/history.h"
#include "journals/students.h"
#include "shell/statusline.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

using LessonTime = std::pair<qint64, int>; // day, number

std::string studentDays(StudentId student, QDate from, QDate to)
{
    return "ID=" + sql::number(keyNumber(student)) + " AND DAT >= " + data::toSql(from)
           + " AND DAT <= " + data::toSql(to);
}

std::set<LessonTime> recordedTimes(jet::Database& database, StudentId student, QDate from, QDate to)
{
    auto rows =
        database.query("SELECT DAT, UR From POS WHERE " + studentDays(student, from, to) + ";");
    std::set<LessonTime> times;
    while (rows.next())
        times.emplace(data::toDate(rows.date(0)).toJulianDay(), static_cast<int>(rows.integer(1)));
    return times;
}

// All students of the group with the full name, the student himself first: an absence for a
// period goes by the name.
std::vector<StudentId> ofThatName(jet::Database& database, const StudentHead& student)
{
    auto rows = database.query(R"(SELECT ID From SPSTUD
                                  WHERE Trim(FAM & " " & IM & " " & OTCH) = )"
                               + sql::text(data::toUtf8(student.name)) + " AND IDG="
                               + sql::number(keyNumber(student.group)) + " ORDER BY ID;");
    std::vector<StudentId> students{student.id};
    while (rows.next())
        if (const StudentId id{static_cast<int>(rows.integer(0))}; id != student.id)
            students.push_back(id);
    return students;
}

} // namespace

QStringList PeriodConflict::texts() const
{
    QStringList texts;
    for (const GroupLesson& lesson : lessons)
        texts << u"Выберите подгруппу для %1 занятия %2 (%3 п/г)"_s.arg(
            QString::number(lesson.number), lesson.disciplineName,
            QString::number(lesson.subgroup));
    return texts;
}

QString PeriodOutcome::text() const
{
    QString text = u"Записано пропусков: "_s + QString::number(written) + u'.';
    if (students > 1)
        text += u" Студентов: "_s + QString::number(students) + u'.';
    if (replaced > 0)
        text += u" Заменено прежних: "_s + QString::number(replaced) + u'.';
    return text;
}

PeriodAbsence::PeriodAbsence(jet::Database& database, PeriodRequest request)
    : m_database(database)
    , m_request(std::move(request))
{
    if (!m_request.from.isValid() || !m_request.to.isValid() || m_request.from > m_request.to)
        return;
    std::map<GroupId, std::vector<GroupLesson>> known;
    std::set<StudentId> taken;
    for (const StudentId asked : m_request.students) {
        const auto head = readStudentHead(m_database, asked);
        if (!head)
            continue;
        const auto [lessons, isNew] = known.try_emplace(head->group);
        if (isNew)
            lessons->second =
                readGroupLessons(m_database, head->group, m_request.from, m_request.to);
        for (const StudentId id : ofThatName(m_database, *head))
            if (auto student = readStudentHead(m_database, id); student && taken.insert(id).second)
                plan(std::move(*student), lessons->second);
    }
    for (const StudentId asked : m_request.students)
        taken.erase(asked);
    for (const Plan& plan : m_plans)
        if (taken.contains(plan.student.id))
            m_namesakes << plan.student.name;
    m_namesakes.removeDuplicates();
}

void PeriodAbsence::plan(StudentHead student, const std::vector<GroupLesson>& lessons)
{
    Plan plan{std::move(student), {}, {}};
    for (auto first = lessons.begin(); first != lessons.end();) {
        const auto next = std::find_if(first, lessons.end(), [&](const GroupLesson& lesson) {
            return lesson.date != first->date || lesson.number != first->number;
        });
        if (std::distance(first, next) == 1)
            plan.lessons.push_back(*first);
        else
            plan.open.emplace_back(first, next);
        first = next;
    }
    m_plans.push_back(std::move(plan));
}

QString PeriodAbsence::namesakesQuestion() const
{
    return m_namesakes.isEmpty() ? QString()
                                 : u"Полные тезки в группе: "_s + m_namesakes.join(u", "_s)
                                       + u". Пропуски будут записаны каждому из них. Продолжить?"_s;
}

QString PeriodAbsence::problem() const
{
    if (m_request.students.empty())
        return u"Не отмечен ни один студент."_s;
    if (!m_request.from.isValid() || !m_request.to.isValid())
        return u"Укажите даты начала и окончания."_s;
    if (m_request.from > m_request.to)
        return u"Дата начала позже даты окончания. Пропуски не записаны."_s;
    const bool none = std::ranges::all_of(
        m_plans, [](const Plan& plan) { return plan.lessons.empty() && plan.open.empty(); });
    return none ? u"За этот период занятий нет. Пропуски не записаны."_s : QString();
}

const PeriodAbsence::Plan* PeriodAbsence::nextOpen() const
{
    const auto found =
        std::ranges::find_if(m_plans, [](const Plan& plan) { return !plan.open.empty(); });
    return found == m_plans.end() ? nullptr : &*found;
}

PeriodAbsence::Plan* PeriodAbsence::nextOpen()
{
    return const_cast<Plan*>(std::as_const(*this).nextOpen());
}

std::optional<PeriodConflict> PeriodAbsence::conflict() const
{
    const Plan* plan = nextOpen();
    if (!plan)
        return std::nullopt;
    PeriodConflict conflict{plan->student, plan->open.front()};
    const auto own =
        std::ranges::find(conflict.lessons, plan->student.subgroup, &GroupLesson::subgroup);
    if (own != conflict.lessons.end())
        conflict.preset = static_cast<std::size_t>(own - conflict.lessons.begin());
    return conflict;
}

int PeriodAbsence::conflictsLeft() const
{
    std::size_t left = 0;
    for (const Plan& plan : m_plans)
        left += plan.open.size();
    return static_cast<int>(left);
}

void PeriodAbsence::choose(std::size_t lesson, bool forLater)
{
    Plan& plan = *nextOpen();
    const GroupLesson chosen = plan.open.front().at(lesson);
    plan.open.pop_front();
    plan.lessons.push_back(chosen);
    if (!forLater)
        return;
    std::erase_if(plan.open, [&](const std::vector<GroupLesson>& lessons) {
        const auto same = std::ranges::find_if(lessons, [&](const GroupLesson& other) {
            return other.discipline == chosen.discipline && other.subgroup == chosen.subgroup;
        });
        if (same == lessons.end())
            return false;
        plan.lessons.push_back(*same);
        return true;
    });
}

QString PeriodAbsence::stepName() const
{
    const QString who = m_plans.size() == 1 ? withInitials(m_plans.front().student.name)
                                            : u"студентов: "_s + QString::number(m_plans.size());
    return u"пропуск на период, %1, %2–%3"_s.arg(who, m_request.from.toString(u"dd.MM"_s),
                                                 m_request.to.toString(u"dd.MM"_s));
}

PeriodOutcome PeriodAbsence::write(History& history, shell::StatusLine& status) const
{
    PeriodOutcome outcome;
    if (!problem().isEmpty())
        return outcome;
    std::vector<RowScope> scopes;
    for (const Plan& plan : m_plans)
        scopes.push_back(
            {JournalTable::Absences, plan.student.id, std::nullopt, m_request.from, m_request.to});
    history.record(stepName(), scopes, [&] {
        int number = 0;
        for (const Plan& plan : m_plans) {
            status.show(u"Запись пропусков: %1 (%2 из %3)..."_s.arg(
                withInitials(plan.student.name), QString::number(++number),
                QString::number(m_plans.size())));
            writePlan(plan, outcome);
        }
    });
    status.show(outcome.text());
    return outcome;
}

void PeriodAbsence::writePlan(const Plan& plan, PeriodOutcome& outcome) const
{
    const StudentId student = plan.student.id;
    const auto recorded = recordedTimes(m_database, student, m_request.from, m_request.to);
    const int hours = lessonHours(m_database);
    const bool excused = m_request.reason == AbsenceKind::Excused;
    const std::string columns[] = {"ID", "dat", "ur", "idd", "iddg", "uv", "nuv"};
    for (const GroupLesson& lesson : plan.lessons) {
        if (!recorded.contains({lesson.date.toJulianDay(), lesson.number}))
            continue;
        m_database.execute("DELETE * From POS WHERE ID=" + sql::number(keyNumber(student))
                           + " AND DAT=" + data::toSql(lesson.date)
                           + " AND UR=" + sql::number(lesson.number) + ";");
        ++outcome.replaced;
    }
    jet::Appender absences(m_database, "POS", columns);
    for (const GroupLesson& lesson : plan.lessons) {
        const jet::Value row[] = {static_cast<int>(keyNumber(student)),
                                  data::toJet(lesson.date),
                                  lesson.number,
                                  static_cast<int>(keyNumber(lesson.discipline)),
                                  lesson.subgroup,
                                  excused ? hours : 0,
                                  excused ? 0 : hours};
        absences.append(row);
        ++outcome.written;
    }
    outcome.students += plan.lessons.empty() ? 0 : 1;
}

} // namespace journals
