#include "journals/attendancesheetreader.h"
#include "papers/frame.h"
#include "reports/statements.h"
#include "reports/statements/gradetable.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

std::vector<papers::Paper> monthGradesStatement(const StatementSource& source,
                                                const ReportRequest& request,
                                                journals::GroupId group)
{
    GradeTable table = readGradeTable(source, monthGrades(source, request.month, group));
    journals::AttendanceSelection absences;
    absences.group = group;
    absences.month = request.month;
    std::map<journals::StudentId, journals::Absence> hours;
    for (const auto& student : readAttendanceSheet(source.database, absences).students)
        hours.emplace(student.id, student.month);
    table.missed = missedByStudent(table.sheet, hours);

    papers::Paper paper = groupPaper(source, table.group, u"ВЕДОМОСТЬ УСПЕВАЕМОСТИ ЗА МЕСЯЦ"_s,
                                     journals::monthText(request.month));
    layOut(table, paper);
    paper.notes = performanceLines(source, table.performance());
    paper.notes << performanceFormulas(source) << gradeFormulasLine();
    paper.signatures = {curatorSignature(source, table.group)};
    addFrame(paper, source.settings);
    return {std::move(paper)};
}

} // namespace reports
