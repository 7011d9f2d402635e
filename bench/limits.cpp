#include "bench/limits.h"

#include "bench/ratios.h"
#include "bench/workloads.h"

#include "jet/database.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

// In MiB. Linux counts in KiB.
double peakMemory(const std::vector<std::string>& command)
{
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        std::vector<char*> arguments;
        for (const std::string& word : command)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        if (std::freopen("/dev/null", "w", stdout))
            ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error(command.front() + " failed");
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

} // namespace

int report(const std::string& name, double measured, double limit, const char* unit)
{
    const bool met = measured <= limit;
    std::printf("%-46s %10.2f %10.2f %s%s\n", name.c_str(), measured, limit, unit,
                met ? "" : "   MISSED");
    return met ? 0 : 1;
}

int checkMemory(const std::filesystem::path& jurnalctl, const std::filesystem::path& journal)
{
    struct Case
    {
        const char* name;
        const char* sql;
        double limit;
    };
    // The page cache takes 64 MiB, a hash index up to 18 bytes a row.
    const Case cases[] = {
        {"memory, opened", "SELECT Count(*) FROM MONTH;", 60},
        {"memory, one table scanned", "SELECT Sum(uv) FROM POS;", 90},
        {"memory, one table exported", "SELECT * FROM USP;", 90},
        {"memory, looked up by student in two tables",
         "SELECT Count(*) FROM (SELECT ID FROM POS WHERE ID=7 UNION ALL SELECT ID FROM USP WHERE"
         " ID=7) AS t;",
         120},
    };
    std::printf("%-46s %10s %10s\n", "what", "measured", "limit");
    int missed = 0;
    for (const Case& each : cases)
        missed += report(
            each.name, peakMemory({jurnalctl.string(), "sql", journal.string(), each.sql, "--csv"}),
            each.limit, "MiB");
    return missed;
}

int checkFirstFill(OpenJournal& journal)
{
    constexpr int kRepetitions = 5;
    std::vector<double> times;
    for (int i = 0; i < kRepetitions; ++i) {
        journal.close();
        jet::Database& database = journal.database();
        times.push_back(milliseconds(Clock::Processor, [&] { fillMonth(database); }));
    }
    std::ranges::sort(times);
    return report("first month filled after opening", times[times.size() / 2], 100, "ms");
}

int checkGradeFills(OpenJournal& journal)
{
    using journals::GradeMode;
    struct Case
    {
        const char* name;
        GradeMode mode;
        bool all;
    };
    const Case cases[] = {{"current grades of a month filled", GradeMode::Current, false},
                          {"monthly grades filled", GradeMode::Monthly, false},
                          {"final grades filled", GradeMode::Final, false},
                          {"monthly grades of all disciplines filled", GradeMode::Monthly, true},
                          {"final grades of all disciplines filled", GradeMode::Final, true}};
    constexpr int kRepetitions = 9;
    jet::Database& database = journal.database();
    int missed = 0;
    for (const Case& each : cases) {
        fillGrades(database, each.mode, each.all);
        std::vector<double> times;
        for (int i = 0; i < kRepetitions; ++i)
            times.push_back(
                milliseconds(Clock::Processor, [&] { fillGrades(database, each.mode, each.all); }));
        std::ranges::sort(times);
        missed += report(each.name, times[times.size() / 2], 100, "ms");
    }
    return missed;
}

} // namespace bench
