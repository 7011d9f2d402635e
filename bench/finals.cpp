#include "bench/limits.h"
#include "bench/ratios.h"
#include "bench/workloads.h"

#include "data/convert.h"
#include "data/journal.h"
#include "journals/autofinals.h"
#include "journals/history.h"
#include "journals/lists.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

// Results may be replaced; any other message means that the benchmark does not do what it says.
class Agreeing final : public shell::Prompt
{
public:
    void critical(const QString& text) override { refuse(text); }
    void information(const QString& text) override { refuse(text); }
    void exclamation(const QString& text) override { refuse(text); }
    bool question(const QString&, shell::Answer) override { return true; }
    shell::Answer saveQuestion(const QString& text) override
    {
        refuse(text);
        return shell::Answer::Cancel;
    }

private:
    static void refuse(const QString& text) { throw std::runtime_error(text.toStdString()); }
};

// Computes and writes the results of one group in one discipline.
void writeFinals(shell::Session& session, shell::Prompt& prompt, journals::FinalsRequest request)
{
    journals::AutoFinals finals(session, prompt);
    journals::History history(session.database());
    const auto plan = finals.plan(request);
    if (!plan || plan->rows.empty())
        throw std::runtime_error("there is nothing to compute");
    std::vector<std::size_t> rows(plan->rows.size());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    finals.carryOut(*plan, rows, history);
}

} // namespace

int checkFinals(OpenJournal& journal)
{
    constexpr int kRepetitions = 9;
    journal.close();
    Agreeing prompt;
    shell::Session session;
    session.openJournal(data::Journal::openAndCheck(data::fromPath(journal.path()), false, prompt));
    journals::FinalsRequest request;
    request.group = journals::GroupId{7};
    request.discipline = journals::disciplinesOfGroup(session.database(), *request.group).at(0).key;
    request.period = journals::studyPeriod(session.settings());
    int missed = 0;
    for (const auto& [kind, name] :
         {std::pair{journals::FinalsKind::Final, "final grades of a group"},
          {journals::FinalsKind::Year, "monthly grades of a group, a year"}}) {
        request.kind = kind;
        std::vector<double> times;
        times.reserve(kRepetitions);
        for (int i = 0; i < kRepetitions; ++i)
            times.push_back(
                milliseconds(Clock::Wall, [&] { writeFinals(session, prompt, request); }));
        std::ranges::sort(times);
        missed += report(name, times[times.size() / 2], 50, "ms");
    }
    return missed;
}

} // namespace bench
