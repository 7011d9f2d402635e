#include "journals/gradesheet.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

constexpr int kLeastMark = 2, kBestMark = 5;

std::size_t position(int number)
{
    return static_cast<std::size_t>(number);
}

} // namespace

QString gradeText(int grade)
{
    if (grade == kNoGrade)
        return {};
    return grade == kPassGrade ? u"Зачет"_s : QString::number(grade);
}

QString spokenGrade(int grade)
{
    if (grade == kNoGrade)
        return u"нет оценки"_s;
    return grade == kPassGrade ? u"зачет"_s : u"оценка "_s + QString::number(grade);
}

std::optional<int> GradeSelection::studentSubgroup() const
{
    return subgroup.value_or(0) == 0 ? std::nullopt : subgroup;
}

void MarkSum::add(int grade)
{
    if (grade < kLeastMark || grade > kBestMark)
        return;
    sum += grade;
    ++count;
}

std::optional<int> MarkSum::hundredths() const
{
    return count == 0 ? std::nullopt : std::optional((200 * sum + count) / (2 * count));
}

QString MarkSum::text() const
{
    const auto average = hundredths();
    return average ? u"%1,%2"_s.arg(*average / 100).arg(*average % 100, 2, 10, QChar(u'0'))
                   : QString();
}

bool GradeSheet::holds(GradePlace place) const
{
    return place.student >= 0 && std::cmp_less(place.student, students.size()) && place.column >= 0
           && std::cmp_less(place.column, columns.size());
}

const GradeCell& GradeSheet::cell(GradePlace place) const
{
    return students[position(place.student)].cells[position(place.column)];
}

GradeCell& GradeSheet::cell(GradePlace place)
{
    return students[position(place.student)].cells[position(place.column)];
}

bool GradeSheet::open(GradePlace place) const
{
    return columns[position(place.column)].inForce || cell(place).grade != kNoGrade
           || cell(place).stored != kNoGrade;
}

QString GradeSheet::cellText(GradePlace place) const
{
    return open(place) ? gradeText(cell(place).grade) : u"X"_s;
}

int GradeSheet::unsavedCells() const
{
    std::ptrdiff_t count = 0;
    for (const GradeStudent& student : students)
        count += std::count_if(student.cells.begin(), student.cells.end(),
                               [](const GradeCell& cell) { return cell.unsaved(); });
    return static_cast<int>(count);
}

bool GradeSheet::hasAverages() const
{
    return selection.allDisciplines || selection.mode != GradeMode::Final;
}

MarkSum GradeSheet::average(const GradeStudent& student) const
{
    MarkSum marks;
    for (std::size_t column = 0; column < columns.size(); ++column)
        if (selection.allDisciplines || columns[column].kind != GradeKind::Final)
            marks.add(student.cells[column].grade);
    return marks;
}

MarkSum GradeSheet::columnAverage(std::size_t column) const
{
    MarkSum marks;
    for (const GradeStudent& student : students)
        marks.add(student.cells[column].grade);
    return marks;
}

QString GradeSheet::finalsText() const
{
    return finalsDate.isValid()
               ? u"Итоговые оценки выставлены("_s + finalsDate.toString(u"dd.MM.yyyy"_s) + u')'
               : QString();
}

} // namespace journals
