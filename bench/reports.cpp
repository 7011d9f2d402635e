#include "bench/reports.h"

#include "bench/limits.h"
#include "bench/peer.h"
#include "bench/workloads.h"

#include "jet/database.h"
#include "reports/ranking.h"
#include "reports/truancy.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>

namespace bench {

namespace {

using ::reports::TruancyKind;
using ::reports::TruancyRule;

const journals::Period kMonth{{2026, 3, 1}, {2026, 3, 31}};
const ::reports::RankingRequest kYear{{2025, 9, 1}, {2026, 6, 30}};

const std::string kEnrolled = "(prikazOtch='' OR prikazOtch IS NULL)";
const std::string kInMonth = "BETWEEN 46082 AND 46112";
const std::string kInYear = "BETWEEN 45901 AND 46203";

// Each absence of the month with each teacher who held a lesson of it that day. The month's
// lessons stand apart, so that SQLite looks absences up in them by all they have in common.
std::string missedLessons(const std::string& columns)
{
    return "WITH l AS MATERIALIZED (SELECT DISTINCT IDP, IDG, IDD, IDGG, DAT FROM UROKI WHERE DAT "
           + kInMonth + ") SELECT " + columns
           + ", Sum(uv), Sum(nuv) FROM (SELECT DISTINCT l.IDP, s.IDG, p.DAT, p.ID, p.IDD, p.uv,"
             " p.nuv FROM POS p CROSS JOIN SPSTUD s ON s.ID=p.ID CROSS JOIN l ON l.DAT=p.DAT AND"
             " l.IDG=s.IDG AND l.IDD=p.IDD AND l.IDGG=s.IDGG WHERE p.DAT "
           + kInMonth + " AND " + kEnrolled + ") GROUP BY " + columns;
}

struct Case
{
    std::string name;
    std::function<void(jet::Database& database)> ours;
    std::vector<std::string> peers;
};

void makeTruancy(jet::Database& database, TruancyKind kind)
{
    if (truancyReport(database, kind, kMonth, TruancyRule::Lessons).cells.empty())
        throw std::runtime_error("the report is empty");
}

std::vector<Case> cases()
{
    const auto truancyOf = [](TruancyKind kind) {
        return [kind](jet::Database& database) { makeTruancy(database, kind); };
    };
    const std::string marks =
        "SELECT s.IDG, u.ID, u.OC, Count(*) FROM USP u JOIN SPSTUD s ON s.ID=u.ID WHERE u.TEK=0"
        " AND u.it<>0 AND u.DAT "
        + kInYear + " AND u.OC BETWEEN 2 AND 5 AND " + kEnrolled + " GROUP BY u.ID, u.OC";
    const std::string missed = "SELECT s.IDG, Sum(p.uv), Sum(p.nuv) FROM POS p JOIN SPSTUD s ON"
                               " s.ID=p.ID WHERE p.DAT "
                               + kInYear + " AND " + kEnrolled + " GROUP BY s.IDG";
    const std::string held = "SELECT IDG, Count(*) FROM UROKI WHERE DAT " + kInYear
                             + " AND coalesce(IDGG, 0) IN (0, 1) GROUP BY IDG";
    return {
        {"truancy by teachers, a month",
         truancyOf(TruancyKind::TeachersByDay),
         {missedLessons("IDP, DAT")}},
        {"truancy by groups, a month",
         truancyOf(TruancyKind::GroupsByDay),
         {"SELECT s.IDG, p.DAT, Sum(p.uv), Sum(p.nuv) FROM POS p JOIN SPSTUD s ON s.ID=p.ID WHERE"
          " p.DAT "
          + kInMonth + " AND " + kEnrolled + " GROUP BY s.IDG, p.DAT"}},
        {"truancy by teachers and groups, a month",
         truancyOf(TruancyKind::TeachersByGroup),
         {missedLessons("IDP, IDG")}},
        {"ranking of all specialities, a year",
         [](jet::Database& database) {
             if (::reports::Ranking(database, kYear).specialities().empty())
                 throw std::runtime_error("the ranking is empty");
         },
         {marks, missed, held}},
    };
}

} // namespace

std::vector<Comparison> reports(Bench& bench)
{
    std::vector<Comparison> comparisons;
    for (const Case& each : cases())
        comparisons.push_back({each.name, "native SQLite, one pass", 3.0,
                               [&bench, each] { each.ours(bench.journal.database()); },
                               [&bench, each] {
                                   for (const std::string& sql : each.peers)
                                       bench.peer.query(sql);
                               }});
    return comparisons;
}

int checkReports(OpenJournal& journal)
{
    constexpr int kRepetitions = 7;
    constexpr double kLimit = 2000; // aimed at: 500
    int missed = 0;
    for (const Case& each : cases()) {
        std::vector<double> times;
        for (int i = 0; i < kRepetitions; ++i)
            times.push_back(milliseconds(Clock::Processor, [&] { each.ours(journal.database()); }));
        std::ranges::sort(times);
        missed += report(each.name, times[times.size() / 2], kLimit, "ms");
    }
    return missed;
}

} // namespace bench
