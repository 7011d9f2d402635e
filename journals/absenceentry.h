#pragma once

#include "journals/attendancesheet.h"
#include "journals/grouplessons.h"
#include "journals/studenthead.h"

#include <QDate>
#include <QString>
#include <QStringView>

#include <optional>
#include <span>
#include <vector>

namespace jet {
class Database;
}

namespace journals {

class History;

enum class AbsenceKind { Unexcused, Excused };

// Why a typed count is refused.
QString digitsOnlyText();
// The hours typed: digits up to kMostAbsenceHours, an empty text is 0. Nothing for any other.
std::optional<int> typedHours(QStringView text);

struct LessonAbsence
{
    GroupLesson lesson;
    Absence hours;
};

// An absence of the day that belongs to no lesson of it: saving the day removes it.
struct UnplacedAbsence
{
    int lesson = 0;
    QString disciplineName;
    Absence hours;
};

struct DayAbsences
{
    std::vector<LessonAbsence> lessons; // in order of number
    std::vector<UnplacedAbsence> unplaced;

    Absence total() const;
    // "№ 3 Физика, 2 часа" for each absence that saving would remove.
    QStringList unplacedTexts() const;
    // The positions of the lessons that a student of the subgroup attends: one at each time,
    // that of his own subgroup or else the first.
    std::vector<std::size_t> attended(int studentSubgroup) const;
    // A lesson missed or, when that very count stands already, not missed after all: one of the
    // counts gets the hours of a lesson, the other is cleared.
    void toggle(std::size_t lesson, AbsenceKind kind, int lessonHours);
};

struct DisciplineAbsences
{
    DisciplineId discipline{};
    QString disciplineName;
    Absence hours;
    int lesson = 1;               // that saving records the hours for
    int subgroup = 0;             // of that lesson
    std::vector<int> lessonsHeld; // the lessons that the hours are recorded for now, ascending
};

// What one student missed on one date. Saving replaces all that was recorded before, as one
// durable step that can be taken back. All throw jet::Error and then change nothing.
class AbsenceEntry
{
public:
    AbsenceEntry(jet::Database& database, StudentHead student, QDate date);

    const StudentHead& student() const { return m_student; }
    QDate date() const { return m_date; }
    int lessonHours() const { return m_lessonHours; } // that a missed lesson counts

    // `lesson` is where a first absence goes; not given, to the first lesson of the day.
    DisciplineAbsences readDiscipline(DisciplineId discipline,
                                      std::optional<int> lesson = std::nullopt) const;
    void saveDiscipline(History& history, const DisciplineAbsences& absences) const;

    DayAbsences readDay() const;
    void saveDay(History& history, const DayAbsences& day) const;

    // Records all lessons that the student attends that day as missed without excuse, except
    // those recorded already. To be called within a step. Gives the number of lessons recorded.
    int markAllLessons() const;

private:
    void insert(const GroupLesson& lesson, const Absence& hours) const;

    jet::Database& m_database;
    StudentHead m_student;
    QDate m_date;
    int m_lessonHours;
};

} // namespace journals
