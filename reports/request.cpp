#include "reports/request.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

bool takesMonth(const ReportRequest& request)
{
    switch (request.kind) {
    case ReportKind::GradesSubject:
        return request.view == SubjectView::Current;
    case ReportKind::Final:
    case ReportKind::TruancyBoth:
        return false;
    default:
        return true;
    }
}

bool isTruancy(ReportKind kind)
{
    return kind == ReportKind::TruancyTeachers || kind == ReportKind::TruancyGroups
           || kind == ReportKind::TruancyBoth;
}

// A discipline chosen for the attendance statement narrows it; by subject it is the document.
bool needsDiscipline(const ReportRequest& request)
{
    return request.kind == ReportKind::GradesSubject && request.view != SubjectView::Combined;
}

} // namespace

QString reportTitle(ReportKind kind)
{
    switch (kind) {
    case ReportKind::Attendance:
        return u"Ведомость посещаемости за месяц"_s;
    case ReportKind::GradesMonth:
        return u"Ведомость успеваемости за месяц"_s;
    case ReportKind::GradesSubject:
        return u"Ведомость успеваемости по предметам"_s;
    case ReportKind::Card:
        return u"Табель успеваемости за месяц"_s;
    case ReportKind::Final:
        return u"Итоговый отчет"_s;
    case ReportKind::Summary:
        return u"Сводный отчет"_s;
    case ReportKind::TruancyTeachers:
    case ReportKind::TruancyGroups:
    case ReportKind::TruancyBoth:
        break;
    }
    return u"Отчет по прогулам по преподавателям/группам"_s;
}

journals::Period monthsOf(const ReportRequest& request)
{
    const QDate first = request.month.first();
    return {first, first.addMonths(request.months).addDays(-1)};
}

bool takes(const ReportRequest& request, Input input)
{
    switch (input) {
    case Input::Month:
        return takesMonth(request);
    case Input::Months:
        return request.kind == ReportKind::Summary;
    case Input::Period:
        return request.kind == ReportKind::TruancyBoth;
    case Input::Group:
        return !isTruancy(request.kind) && request.kind != ReportKind::Summary;
    case Input::Discipline:
        return request.kind == ReportKind::Attendance || needsDiscipline(request);
    case Input::Student:
        return request.kind == ReportKind::Card;
    case Input::Balances:
        return request.kind == ReportKind::Attendance;
    case Input::View:
        return request.kind == ReportKind::GradesSubject;
    }
    return false;
}

std::optional<QString> requestProblem(const ReportRequest& request)
{
    if (takes(request, Input::Month) && !request.month.valid())
        return u"Выберите месяц."_s;
    if (takes(request, Input::Month) && !request.month.validYear())
        return u"Выберите год."_s;
    if (takes(request, Input::Months) && (request.months < 1 || request.months > kMostMonths))
        return u"Число месяцев должно быть от 1 до %1."_s.arg(kMostMonths);
    if (takes(request, Input::Period) && !request.period.valid())
        return u"Начало периода не должно быть позже его конца."_s;
    if (needsDiscipline(request) && !request.discipline)
        return u"Выберите предмет."_s;
    if (takes(request, Input::Student) && request.student && !request.group)
        return u"Выберите группу студента."_s;
    return std::nullopt;
}

} // namespace reports
