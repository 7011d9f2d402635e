#include "journals/lists.h"
#include "papers/frame.h"
#include "reports/statements/subjectviews.h"
#include "reports/worded.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

bool isTaught(const StatementSource& source, journals::DisciplineId discipline,
              journals::GroupId group)
{
    return std::ranges::any_of(journals::disciplinesOfGroup(source.database, group),
                               [&](const auto& each) { return each.key == discipline; });
}

papers::Paper viewOf(const StatementSource& source, const ReportRequest& request,
                     journals::GroupId group)
{
    switch (request.view) {
    case SubjectView::Current:
        return currentView(source, request, group);
    case SubjectView::Periodic:
        return periodicView(source, request, group);
    default:
        return combinedView(source, request, group);
    }
}

} // namespace

papers::Paper subjectPaper(const StatementSource& source, const ReportRequest& request,
                           journals::GroupId group, const journals::Period& period,
                           const QString& periodText)
{
    const auto teachers = readTeachers(source.database, group, period);
    const auto found = teachers.find(request.discipline.value());
    const QString teacher = found == teachers.end() ? QString() : found->second;
    const QString post = worded(source.wording, u"Преподаватель"_s);
    const QString title = u"ВЕДОМОСТЬ УСПЕВАЕМОСТИ ПО ПРЕДМЕТУ «%1»"_s.arg(
        disciplineName(source.database, *request.discipline));
    papers::Paper paper = groupPaper(
        source, readGroup(source.database, group), title,
        teacher.isEmpty() ? periodText : post.toLower() + u' ' + teacher + u" · "_s + periodText);
    paper.signatures = {{post, teacher}};
    return paper;
}

std::vector<papers::Paper> subjectStatement(const StatementSource& source,
                                            const ReportRequest& request, journals::GroupId group)
{
    // Of all groups only those that have the subject get a paper.
    if (!request.group && takes(request, Input::Discipline)
        && !isTaught(source, request.discipline.value(), group))
        return {};
    papers::Paper paper = viewOf(source, request, group);
    addFrame(paper, source.settings);
    return {std::move(paper)};
}

} // namespace reports
