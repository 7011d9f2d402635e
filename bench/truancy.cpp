#include "bench/truancy.h"

#include "bench/peer.h"
#include "bench/workloads.h"

#include "jet/database.h"

#include <functional>
#include <string>

namespace bench {

namespace {

constexpr int kCells = 30;
constexpr int kRepetitions = 3;
constexpr int kGroup = 7;

// How a date stands in a query.
struct Dialect
{
    std::string day, first, last;
};

const Dialect kJet = {"#03/10/2026#", "#03/01/2026#", "#03/31/2026#"};
const Dialect kNative = {"46091", "46082", "46112"};

const std::string kEnrolled = "(prikazOtch='' OR prikazOtch IS NULL)";
const std::string kAbsences =
    "SELECT uv, nuv, IDG, IDD, IDGG, POS.ID, POS.DAT FROM POS, SPSTUD WHERE POS.ID=SPSTUD.ID AND "
    + kEnrolled;

std::string byLessons(const Dialect& date, int teacher)
{
    return "SELECT Sum(uv) AS suv, Sum(nuv) AS snuv FROM (SELECT DISTINCT uv, nuv, d.IDG, d.IDD,"
           " d.IDGG, d.ID, d.DAT FROM ("
           + kAbsences + " AND POS.DAT=" + date.day
           + ") AS d LEFT JOIN UROKI ON UROKI.IDG=d.IDG AND d.IDD=UROKI.IDD WHERE"
             " d.IDGG=UROKI.IDGG AND UROKI.DAT="
           + date.day + " AND IDP=" + std::to_string(teacher) + ") AS c;";
}

std::string byWorkload(const Dialect& date, int teacher)
{
    return "SELECT Sum(uv) AS suv, Sum(nuv) AS snuv FROM (" + kAbsences + " AND POS.DAT=" + date.day
           + ") AS d, SPNAGR WHERE d.IDD=SPNAGR.IDD AND d.IDG=SPNAGR.IDG AND d.IDGG=SPNAGR.IDGG"
             " AND IDP="
           + std::to_string(teacher) + ";";
}

std::string byGroup(const Dialect& date, int group)
{
    return "SELECT Sum(POS.uv) AS suv, Sum(POS.nuv) AS snuv FROM POS, SPSTUD WHERE SPSTUD.ID=POS.ID"
           " AND "
           + kEnrolled + " AND SPSTUD.IDG=" + std::to_string(group) + " AND POS.DAT=" + date.day
           + ";";
}

std::string ofGroupInPeriod(const Dialect& date)
{
    return kAbsences + " AND SPSTUD.IDG=" + std::to_string(kGroup) + " AND POS.DAT BETWEEN "
           + date.first + " AND " + date.last;
}

std::string byLessonsInPeriod(const Dialect& date, int teacher)
{
    return "SELECT Sum(uv) AS suv, Sum(nuv) AS snuv FROM (SELECT DISTINCT uv, nuv, d.IDG, d.IDD,"
           " d.IDGG, d.ID, d.DAT FROM ("
           + ofGroupInPeriod(date)
           + ") AS d LEFT JOIN UROKI ON UROKI.IDG=d.IDG AND d.IDD=UROKI.IDD WHERE"
             " d.IDGG=UROKI.IDGG AND UROKI.DAT=d.DAT AND UROKI.DAT BETWEEN "
           + date.first + " AND " + date.last + " AND IDP=" + std::to_string(teacher) + ") AS c;";
}

std::string byWorkloadInPeriod(const Dialect& date, int teacher)
{
    return "SELECT Sum(uv) AS suv, Sum(nuv) AS snuv FROM (" + ofGroupInPeriod(date)
           + ") AS d, SPNAGR WHERE d.IDD=SPNAGR.IDD AND d.IDGG=SPNAGR.IDGG AND d.IDG=SPNAGR.IDG"
             " AND IDP="
           + std::to_string(teacher) + ";";
}

using Query = std::function<std::string(const Dialect&, int)>;

Comparison cells(Bench& bench, const std::string& name, const Query& query)
{
    return {"truancy cells, " + name,
            "native SQLite, indexed",
            3.0,
            [&bench, query] {
                for (int i = 1; i <= kCells; ++i)
                    readAll(bench.journal.database(), query(kJet, i));
            },
            [&bench, query] {
                for (int i = 1; i <= kCells; ++i)
                    bench.peer.query(query(kNative, i));
            },
            Clock::Processor,
            kRepetitions};
}

} // namespace

std::vector<Comparison> truancy(Bench& bench)
{
    return {cells(bench, "teachers by lessons", byLessons),
            cells(bench, "teachers by workload", byWorkload), cells(bench, "groups", byGroup),
            cells(bench, "period by lessons", byLessonsInPeriod),
            cells(bench, "period by workload", byWorkloadInPeriod)};
}

} // namespace bench
