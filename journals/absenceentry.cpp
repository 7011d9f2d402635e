#include "journals/absenceentry.h"

#include "journals/absences.h"
#include "journals/history.h"
#include "journals/hours.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "journals/lists.h"

#include <QStringList>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

struct RecordedRow
{
    int lesson = 0;
    DisciplineId discipline{};
    int subgroup = 0;
    Absence hours;
};

std::string dayCondition(StudentId student, QDate date)
{
    return "(((POS.ID)=" + sql::number(keyNumber(student)) + ") AND ((POS.DAT)=" + data::toSql(date)
           + "))";
}

std::vector<RecordedRow> readRows(jet::Database& database, StudentId student, QDate date,
                                  std::optional<DisciplineId> discipline = std::nullopt)
{
    std::string condition = dayCondition(student, date);
    if (discipline)
        condition += " and ((POS.idd)=" + sql::number(keyNumber(*discipline)) + ")";
    auto rows = database.query(R"(SELECT POS.ur, POS.IDD, POS.IDDG, POS.uv, POS.nuv
                                  FROM POS INNER JOIN SPSTUD ON POS.ID = SPSTUD.ID
                                  WHERE )"
                               + condition + " ORDER BY POS.ur;");
    std::vector<RecordedRow> found;
    while (rows.next())
        found.push_back({static_cast<int>(rows.integer(0)),
                         DisciplineId{static_cast<int>(rows.integer(1))},
                         static_cast<int>(rows.integer(2)),
                         {static_cast<int>(rows.integer(3)), static_cast<int>(rows.integer(4))}});
    return found;
}

// The lesson that a recorded absence belongs to. Quick marking records no subgroup: such a row
// is the lesson's whose only one of the discipline the student has at that time.
LessonAbsence* lessonOf(const RecordedRow& row, std::vector<LessonAbsence>& lessons,
                        int studentSubgroup)
{
    std::vector<LessonAbsence*> attended;
    for (LessonAbsence& each : lessons) {
        const GroupLesson& lesson = each.lesson;
        if (lesson.number != row.lesson || lesson.discipline != row.discipline)
            continue;
        if (lesson.subgroup == row.subgroup)
            return &each;
        if (lesson.isFor(studentSubgroup))
            attended.push_back(&each);
    }
    return row.subgroup == 0 && attended.size() == 1 ? attended.front() : nullptr;
}

int limited(int hours)
{
    return std::clamp(hours, 0, kMostAbsenceHours);
}

} // namespace

QString digitsOnlyText()
{
    return u"Введите целое положительное число. Можно вводить только цифры. Пробел, запятая, "
           "точка и другие знаки и буквы недопустимы."_s;
}

std::optional<int> typedHours(QStringView text)
{
    constexpr qsizetype kMostDigits = 3;
    const bool digits =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    if (!digits || text.size() > kMostDigits)
        return std::nullopt;
    const int hours = text.toInt(); // "" gives 0
    return hours <= kMostAbsenceHours ? std::optional(hours) : std::nullopt;
}

Absence DayAbsences::total() const
{
    Absence sum;
    for (const LessonAbsence& each : lessons)
        sum += each.hours;
    return sum;
}

QStringList DayAbsences::unplacedTexts() const
{
    QStringList texts;
    for (const UnplacedAbsence& each : unplaced)
        texts << u"№ "_s + QString::number(each.lesson) + u' ' + each.disciplineName + u", "_s
                     + spokenAbsence(each.hours, each.hours.state());
    return texts;
}

std::vector<std::size_t> DayAbsences::attended(int studentSubgroup) const
{
    std::vector<std::size_t> positions;
    for (std::size_t i = 0; i < lessons.size(); ++i)
        if (lessons[i].lesson.isFor(studentSubgroup)
            && (positions.empty()
                || lessons[positions.back()].lesson.number != lessons[i].lesson.number))
            positions.push_back(i);
    return positions;
}

void DayAbsences::toggle(std::size_t lesson, AbsenceKind kind, int lessonHours)
{
    Absence& hours = lessons[lesson].hours;
    const int present = kind == AbsenceKind::Unexcused ? hours.unexcused : hours.excused;
    hours = {};
    if (present > 0)
        return;
    (kind == AbsenceKind::Unexcused ? hours.unexcused : hours.excused) = lessonHours;
}

AbsenceEntry::AbsenceEntry(jet::Database& database, StudentHead student, QDate date)
    : m_database(database)
    , m_student(std::move(student))
    , m_date(date)
    , m_lessonHours(journals::lessonHours(database))
{}

DisciplineAbsences AbsenceEntry::readDiscipline(DisciplineId discipline,
                                                std::optional<int> lesson) const
{
    DisciplineAbsences absences;
    absences.discipline = discipline;
    absences.disciplineName = disciplineName(m_database, discipline);
    const auto rows = readRows(m_database, m_student.id, m_date, discipline);
    for (const RecordedRow& row : rows) {
        absences.hours += row.hours;
        const bool known =
            !absences.lessonsHeld.empty() && absences.lessonsHeld.back() == row.lesson;
        if (row.hours.total() > 0 && !known)
            absences.lessonsHeld.push_back(row.lesson);
    }
    const AbsencePlace place{m_student.id, discipline, m_date, std::nullopt};
    absences.lesson = rows.empty() && lesson
                          ? *lesson
                          : lessonToMark(m_database, place, m_student.group, m_student.subgroup);
    const auto recorded = std::ranges::find_if(rows, [&](const RecordedRow& row) {
        return row.lesson == absences.lesson && row.subgroup != 0;
    });
    if (recorded != rows.end())
        absences.subgroup = recorded->subgroup;
    else
        for (const GroupLesson& held :
             readGroupLessons(m_database, m_student.group, m_date, m_date))
            if (held.number == absences.lesson && held.discipline == discipline
                && held.isFor(m_student.subgroup)) {
                absences.subgroup = held.subgroup;
                break;
            }
    return absences;
}

void AbsenceEntry::saveDiscipline(History& history, const DisciplineAbsences& absences) const
{
    const RowScope scope{JournalTable::Absences, m_student.id, absences.discipline, m_date, m_date};
    history.record(stepText(u"пропуск"_s, m_student.name, m_date), {&scope, 1}, [&] {
        m_database.execute("delete * from POS WHERE (" + dayCondition(m_student.id, m_date)
                           + " AND ((POS.IDD)=" + sql::number(keyNumber(absences.discipline))
                           + "));");
        insert({m_date, absences.lesson, absences.discipline, absences.subgroup, {}},
               absences.hours);
    });
}

DayAbsences AbsenceEntry::readDay() const
{
    DayAbsences day;
    for (GroupLesson& lesson : readGroupLessons(m_database, m_student.group, m_date, m_date))
        day.lessons.push_back({std::move(lesson), {}});
    for (const RecordedRow& row : readRows(m_database, m_student.id, m_date)) {
        if (LessonAbsence* lesson = lessonOf(row, day.lessons, m_student.subgroup))
            lesson->hours += row.hours;
        else if (row.hours.total() > 0)
            day.unplaced.push_back(
                {row.lesson, disciplineName(m_database, row.discipline), row.hours});
    }
    return day;
}

void AbsenceEntry::saveDay(History& history, const DayAbsences& day) const
{
    const RowScope scope{JournalTable::Absences, m_student.id, std::nullopt, m_date, m_date};
    history.record(stepText(u"пропуски за день"_s, m_student.name, m_date), {&scope, 1}, [&] {
        m_database.execute("delete * from POS WHERE " + dayCondition(m_student.id, m_date) + ";");
        for (const LessonAbsence& each : day.lessons)
            insert(each.lesson, each.hours);
    });
}

int AbsenceEntry::markAllLessons() const
{
    const DayAbsences day = readDay();
    std::set<int> taken;
    for (const UnplacedAbsence& each : day.unplaced)
        taken.insert(each.lesson);
    for (const LessonAbsence& each : day.lessons)
        if (each.hours.total() > 0)
            taken.insert(each.lesson.number);
    int marked = 0;
    for (const std::size_t position : day.attended(m_student.subgroup)) {
        const GroupLesson& lesson = day.lessons[position].lesson;
        if (taken.contains(lesson.number))
            continue;
        m_database.execute("delete * from POS WHERE (" + dayCondition(m_student.id, m_date)
                           + " AND ((POS.ur)=" + sql::number(lesson.number) + "));");
        insert(lesson, {0, m_lessonHours});
        ++marked;
    }
    return marked;
}

// Writes nothing for a lesson that was not missed.
void AbsenceEntry::insert(const GroupLesson& lesson, const Absence& hours) const
{
    if (hours.unexcused < 1 && hours.excused < 1)
        return;
    m_database.insert("POS", {{{"ID", static_cast<int>(keyNumber(m_student.id))},
                               {"dat", data::toJet(m_date)},
                               {"ur", lesson.number},
                               {"idd", static_cast<int>(keyNumber(lesson.discipline))},
                               {"nuv", limited(hours.unexcused)},
                               {"uv", limited(hours.excused)},
                               {"iddg", lesson.subgroup}}});
}

} // namespace journals
