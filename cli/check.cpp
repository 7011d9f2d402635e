#include "cli/command.h"
#include "cli/journalfile.h"
#include "jet/storage/checker.h"

#include <algorithm>
#include <ostream>

namespace cli {

namespace {

struct Options
{
    std::string file;
    bool deep = false;
};

void print(std::ostream& out, const jet::Finding& finding)
{
    if (!finding.table.empty())
        out << finding.table << ": ";
    if (finding.page != 0)
        out << "страница " << finding.page << ": ";
    if (finding.row >= 0)
        out << "строка " << finding.row << ": ";
    out << finding.text << '\n';
}

// Throws Failure when something harmful was found.
void checkDeep(jet::Database& database, std::ostream& out)
{
    const auto findings = jet::checkDatabase(database.store());
    for (const jet::Finding& finding : findings)
        print(out, finding);
    const auto harmful =
        std::ranges::count(findings, jet::Severity::Harmful, &jet::Finding::severity);
    if (harmful > 0)
        throw Failure("Файл поврежден, найдено ошибок: " + std::to_string(harmful));
}

void run(const Options& options, Streams streams)
{
    {
        TerminalPrompt prompt(streams.out);
        const auto journal = openJournal(options.file, prompt);
        if (options.deep)
            checkDeep(journal->database(), streams.out);
    } // the notices come before the verdict
    streams.out << "Файл в порядке.\n";
}

} // namespace

void addCheck(CLI::App& program, Streams streams)
{
    Command<Options> command(program, "check", "Открыть, проверить и обновить файл журнала");
    command.app.add_option("FILE", command.options->file, "Файл журнала")->required();
    command.app.add_flag("--deep", command.options->deep,
                         "Затем проверить каждую страницу, строку и каждый индекс");
    command.calls([streams](const Options& options) { run(options, streams); });
}

} // namespace cli
