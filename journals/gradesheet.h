#pragma once

#include "journals/keys.h"
#include "journals/month.h"
#include "journals/studyperiod.h"

#include <QDate>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace journals {

// What the grid shows; the number is that of the setting "rejim".
enum class GradeMode { Current = 0, Monthly = 1, Final = 2 };

enum class GradeKind {
    Current, // of a lesson
    Monthly, // of a month, and found by it
    Final,   // of a study year, and found by it
};

// Grades are numbers as the file keeps them: marks from 2 to 5, and these two.
inline constexpr int kPassGrade = 1;
// A pass where the word is wider than the column.
inline constexpr QStringView kPassSign = u"з";
inline constexpr int kNoGrade = -1; // never stored

// "5", "Зачет", "" without a grade.
QString gradeText(int grade);
// As it is read out: "оценка 5", "зачет", "нет оценки".
QString spokenGrade(int grade);

// A subgroup that is not given means all of them, as 0 does for the students.
struct GradeSelection
{
    std::optional<GroupId> group;
    std::optional<int> subgroup;
    bool allDisciplines = false; // a column for each, to look at
    std::optional<DisciplineId> discipline;
    Month month;
    Period year; // the study year
    GradeMode mode = GradeMode::Current;

    std::optional<int> studentSubgroup() const;
    // Whether the month is what the columns come from, or the study year.
    bool byMonth() const { return mode == GradeMode::Current || (allDisciplines && monthly()); }
    bool monthly() const { return mode == GradeMode::Monthly; }
    // The days that the columns come from.
    Period span() const { return byMonth() ? Period{month.first(), month.last()} : year; }
    friend bool operator==(const GradeSelection&, const GradeSelection&) = default;
};

struct GradeColumn
{
    GradeKind kind = GradeKind::Current;
    DisciplineId discipline{};
    Period span;         // the days by which a grade is found: one day, a month, the study year
    QDate date;          // that a new grade is stored with
    QString title;       // "12", "Ноябрь 2022", "Итог", or the discipline's name
    bool inForce = true; // false: the discipline has no lesson that day
    bool dayOff = false; // Sunday or holiday
};

struct GradeCell
{
    int grade = kNoGrade;  // as shown
    int stored = kNoGrade; // as in the file

    bool unsaved() const { return grade != stored; }
};

struct GradeStudent
{
    StudentId id{};
    QString name;
    std::vector<GradeCell> cells; // one for each column
};

// Marks of 2 to 5, added up; anything else, such as passes, is left out.
struct MarkSum
{
    int sum = 0;
    int count = 0;

    void add(int grade);
    // The average in hundredths, halves rounded up; nothing without marks.
    std::optional<int> hundredths() const;
    // The average with two decimals, halves rounded up, as "4,67"; "" without marks.
    QString text() const;
};

struct GradePlace
{
    int student = 0;
    int column = 0;
};

// One group's grades: a row per student, a column per day, month, study year or discipline.
struct GradeSheet
{
    GradeSelection selection;
    std::vector<GradeColumn> columns;
    std::vector<GradeStudent> students;
    QDate finalsDate; // of the latest final grades in the discipline; invalid without any

    bool holds(GradePlace place) const;
    // Requires holds().
    const GradeCell& cell(GradePlace place) const;
    GradeCell& cell(GradePlace place);
    // Whether a grade can stand there: the discipline is taught or one stands there already.
    bool open(GradePlace place) const;
    // "X" where no grade can stand.
    QString cellText(GradePlace place) const;
    int unsavedCells() const;

    // Whether a student's grades have an average of their own: not where there is but one.
    bool hasAverages() const;
    // Of what leads to the final grade, which itself is left out.
    MarkSum average(const GradeStudent& student) const;
    MarkSum columnAverage(std::size_t column) const;

    // "Итоговые оценки выставлены(30.06.2023)"; "" without final grades.
    QString finalsText() const;
};

} // namespace journals
