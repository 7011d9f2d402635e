#include "journals/attendancesheetreader.h"

#include "journals/absences.h"
#include "journals/attendancequeries.h"

using namespace Qt::StringLiterals;

namespace journals {
namespace {

void placeStartBalances(AttendanceSheet& sheet, const std::vector<AbsenceRow>& balances)
{
    for (const AbsenceRow& balance : balances)
        if (const auto student = sheet.studentRow(balance.student))
            sheet.students[*student].start = balance.hours;
}

// Adds each absence to its cell; one without a place is noted and left out.
void placeAbsences(AttendanceSheet& sheet, const std::vector<AbsenceRow>& absences)
{
    for (const AbsenceRow& absence : absences) {
        const auto student = sheet.studentRow(absence.student);
        const auto column =
            student ? sheet.columnOf(*student, absence.date, absence.lesson) : std::nullopt;
        if (column)
            sheet.students[*student].cells[*column] += absence.hours;
        else
            sheet.notices << u"Невозможно отобразить пропуск: "_s
                                 + absence.date.toString(u"dd.MM.yyyy"_s) + u'.';
    }
}

} // namespace

AttendanceSheet readAttendanceSheet(jet::Database& database, const AttendanceSelection& selection)
{
    AttendanceSheet sheet;
    sheet.selection = selection;
    sheet.lessonHours = lessonHours(database);
    sheet.columns = selection.mode == AttendanceMode::Days
                        ? readDayColumns(database, selection)
                        : readLessonColumns(database, selection, sheet.lessonHours);
    sheet.students = readStudents(database, selection);
    for (AttendanceStudent& student : sheet.students)
        student.cells.resize(sheet.columns.size());
    placeStartBalances(sheet, readStartBalances(database, selection));
    placeAbsences(sheet, readMonthAbsences(database, selection));
    sheet.computeTotals();
    return sheet;
}

} // namespace journals
