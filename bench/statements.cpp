#include "bench/limits.h"
#include "bench/ratios.h"
#include "bench/workloads.h"

#include "data/settingsrow.h"
#include "jet/database.h"
#include "journals/lists.h"
#include "reports/report.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

namespace {

using ::reports::ReportKind;
using ::reports::ReportRequest;
using ::reports::SubjectView;

struct Case
{
    std::string name;
    ReportKind kind;
    SubjectView view = SubjectView::Current;
};

void make(jet::Database& database, const ReportRequest& request)
{
    const auto document =
        makeReport({database, data::readSettingsRow(database), shell::Wording()}, request);
    if (!document || document->papers.empty())
        throw std::runtime_error("the statement is empty");
}

double median(std::vector<double> times)
{
    std::ranges::sort(times);
    return times[times.size() / 2];
}

double timeOf(jet::Database& database, const ReportRequest& request, int repetitions)
{
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i)
        times.push_back(milliseconds(Clock::Processor, [&] { make(database, request); }));
    return median(std::move(times));
}

} // namespace

int checkStatements(OpenJournal& journal)
{
    constexpr double kGroupLimit = 200, kAllLimit = 10'000; // ms
    const journals::GroupId group{7};
    const Case cases[] = {
        {"attendance", ReportKind::Attendance},
        {"grades of a month", ReportKind::GradesMonth},
        {"grades by subject, current", ReportKind::GradesSubject},
        {"grades by subject, periodic", ReportKind::GradesSubject, SubjectView::Periodic},
        {"grades by subject, combined", ReportKind::GradesSubject, SubjectView::Combined},
        {"cards", ReportKind::Card},
        {"final grades", ReportKind::Final},
        {"summary", ReportKind::Summary},
    };
    jet::Database& database = journal.database();
    int missed = 0;
    for (const Case& each : cases) {
        ReportRequest request;
        request.kind = each.kind;
        request.view = each.view;
        request.month = {2026, 3};
        if (takes(request, ::reports::Input::Discipline) && each.kind == ReportKind::GradesSubject)
            request.discipline = journals::disciplinesOfGroup(database, group).front().key;
        if (takes(request, ::reports::Input::Group)) {
            request.group = group;
            missed += report("statement of a group, " + each.name, timeOf(database, request, 5),
                             kGroupLimit, "ms");
            request.group.reset();
        }
        missed += report("statements of all groups, " + each.name, timeOf(database, request, 1),
                         kAllLimit, "ms");
    }
    return missed;
}

} // namespace bench
