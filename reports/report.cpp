#include "reports/report.h"

#include "journals/lists.h"
#include "reports/truancypaper.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using journals::GroupId;
using Group = journals::ListEntry<GroupId>;

TruancyKind truancyKind(ReportKind kind)
{
    switch (kind) {
    case ReportKind::TruancyTeachers:
        return TruancyKind::TeachersByDay;
    case ReportKind::TruancyGroups:
        return TruancyKind::GroupsByDay;
    default:
        return TruancyKind::TeachersByGroup;
    }
}

papers::Document truancy(const StatementSource& source, const ReportRequest& request)
{
    const journals::Period period =
        takes(request, Input::Period)
            ? request.period
            : journals::Period{request.month.first(), request.month.last()};
    const TruancyReport report = truancyReport(source.database, truancyKind(request.kind), period,
                                               truancyRule(source.database, period));
    return truancyDocument(report, source.settings, source.wording);
}

std::vector<papers::Paper> papersOf(const StatementSource& source, const ReportRequest& request,
                                    GroupId group)
{
    switch (request.kind) {
    case ReportKind::Attendance:
        return attendanceStatement(source, request, group);
    case ReportKind::GradesMonth:
        return monthGradesStatement(source, request, group);
    case ReportKind::GradesSubject:
        return subjectStatement(source, request, group);
    case ReportKind::Card:
        return reportCards(source, request, group);
    default:
        return finalStatement(source, request, group);
    }
}

std::vector<Group> groupsOf(const StatementSource& source, const ReportRequest& request)
{
    auto groups = journals::groupList(source.database);
    if (request.group)
        std::erase_if(groups, [&](const Group& group) { return group.key != *request.group; });
    return groups;
}

// "attendance", by which the page setup is kept.
QString kindName(ReportKind kind)
{
    static const QString kNames[] = {u"attendance"_s, u"grades-month"_s, u"grades-subject"_s,
                                     u"card"_s,       u"final"_s,        u"summary"_s,
                                     u"truancy"_s,    u"truancy"_s,      u"truancy"_s};
    return kNames[static_cast<int>(kind)];
}

// "Ведомость посещаемости 21-ИС-1 2025-11": what, whose, when.
QString documentName(const StatementSource& source, const ReportRequest& request,
                     const std::vector<Group>& groups)
{
    QString name = reportTitle(request.kind).section(u" за месяц"_s, 0, 0);
    if (takes(request, Input::Group) && request.group && !groups.empty())
        name += u' ' + groups.front().name;
    if (takes(request, Input::Months) && request.months > 1)
        return name + u' ' + request.month.first().toString(u"yyyy-MM"_s) + u'_'
               + monthsOf(request).to.toString(u"yyyy-MM"_s);
    if (takes(request, Input::Month))
        return name + u' ' + request.month.first().toString(u"yyyy-MM"_s);
    const journals::Period year = journals::studyPeriod(source.settings);
    return name + u" %1-%2"_s.arg(year.from.year()).arg(year.to.year());
}

} // namespace

std::optional<papers::Document> makeReport(const StatementSource& source,
                                           const ReportRequest& request,
                                           const std::function<bool(int percent)>& progress)
{
    const auto goesOn = [&](std::size_t done, std::size_t all) {
        constexpr std::size_t kWhole = 100;
        return !progress || progress(static_cast<int>(done * kWhole / all));
    };
    if (!goesOn(0, 1))
        return std::nullopt;
    if (truancyKind(request.kind) != TruancyKind::TeachersByGroup
        || request.kind == ReportKind::TruancyBoth)
        return truancy(source, request);
    papers::Document document{kindName(request.kind), {}, {}};
    if (request.kind == ReportKind::Summary) {
        document.name = documentName(source, request, {});
        document.papers = summaryStatement(source, request, goesOn);
        return document.papers.empty() ? std::nullopt : std::optional(std::move(document));
    }
    const auto groups = groupsOf(source, request);
    document.name = documentName(source, request, groups);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!goesOn(i, groups.size()))
            return std::nullopt;
        std::ranges::move(papersOf(source, request, groups[i].key),
                          std::back_inserter(document.papers));
    }
    return document;
}

std::vector<papers::Document> onePerPerson(const papers::Document& document)
{
    const auto& all = document.papers;
    const bool ofOneGroup = std::ranges::all_of(
        all, [&](const papers::Paper& paper) { return paper.name == all.front().name; });
    std::vector<papers::Document> documents;
    std::map<QString, int> namesakes;
    for (const papers::Paper& paper : all) {
        const QString group = ofOneGroup ? QString() : u' ' + paper.name;
        QString name = document.name + group + u' ' + paper.person;
        if (const int number = ++namesakes[name.toLower()]; number > 1)
            name += u" (%1)"_s.arg(number);
        documents.push_back({document.kind, name, {paper}});
    }
    return documents;
}

QString notSavedText(ReportKind kind, bool named)
{
    const QString what = kind == ReportKind::Card ? u"Табеля"_s : u"Журнала"_s;
    return u"Печатная форма %1 выполнена, но не сохранена%2."_s.arg(what, named ? u" в файле"_s
                                                                                : QString());
}

} // namespace reports
