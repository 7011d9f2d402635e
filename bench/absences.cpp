#include "bench/limits.h"
#include "bench/ratios.h"
#include "bench/workloads.h"

#include "jet/database.h"
#include "journals/history.h"
#include "journals/periodabsence.h"
#include "shell/statusline.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

class Nothing final : public shell::StatusLine
{
public:
    void show(const QString&) override {}
};

// Three months of one student, from the lessons read to the rows on disk.
void recordPeriod(jet::Database& database, journals::AbsenceKind reason)
{
    journals::PeriodAbsence period(
        database, {{journals::StudentId{150}}, {2026, 1, 12}, {2026, 4, 12}, reason});
    while (const auto conflict = period.conflict())
        period.choose(conflict->preset, true);
    journals::History history(database);
    Nothing status;
    if (period.write(history, status).written == 0)
        throw std::runtime_error("no lesson was found");
}

} // namespace

int checkPeriod(OpenJournal& journal)
{
    constexpr int kRepetitions = 7;
    std::vector<double> times;
    for (int i = 0; i < kRepetitions; ++i) {
        const auto reason =
            i % 2 == 0 ? journals::AbsenceKind::Excused : journals::AbsenceKind::Unexcused;
        times.push_back(
            milliseconds(Clock::Wall, [&] { recordPeriod(journal.database(), reason); }));
    }
    std::ranges::sort(times);
    return report("absence of a student over three months", times[times.size() / 2], 300, "ms");
}

} // namespace bench
