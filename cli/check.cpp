#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "data/convert.h"
#include "jet/error.h"
#include "jet/storage/checker.h"
#include "jet/storage/file.h"
#include "jet/storage/pager.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <utility>

namespace cli {

namespace {

struct CheckOptions
{
    std::string file;
    bool deep = false;
    bool json = false;
};

struct DeepCheck
{
    std::vector<jet::Finding> findings;
    jet::CheckTotals totals;
};

bool isHarmful(const jet::Finding& finding)
{
    return finding.severity == jet::Severity::Harmful;
}

// Reads only, so that a damaged file stays as it is. Nothing when the file cannot be opened
// even for that; opening the journal then tells why.
std::optional<DeepCheck> checkDeep(const std::string& file)
{
    std::unique_ptr<jet::Pager> pager;
    try {
        pager =
            jet::Pager::open(jet::FileSystem::system(), data::toPath(data::fromUtf8(file)), true);
    } catch (const jet::Error&) {
        return std::nullopt;
    }
    DeepCheck check;
    check.findings = jet::checkDatabase(*pager, &check.totals);
    return check;
}

void print(std::ostream& out, const jet::Finding& finding)
{
    out << (isHarmful(finding) ? "Ошибка: " : "Замечание: ");
    if (!finding.table.empty())
        out << "таблица " << finding.table << ": ";
    if (finding.page != 0)
        out << "страница " << finding.page << ": ";
    if (finding.row >= 0)
        out << "строка " << finding.row << ": ";
    out << finding.text << '\n';
}

void print(std::ostream& out, const DeepCheck& check)
{
    for (const jet::Finding& finding : check.findings)
        print(out, finding);
    const jet::CheckTotals& totals = check.totals;
    out << "Проверено: таблиц " << totals.tables << ", строк " << totals.rows
        << ", записей индексов " << totals.indexEntries << ". Ошибок: " << totals.harmful
        << ", замечаний: " << totals.harmless << ".\n";
}

nlohmann::ordered_json jsonOf(const DeepCheck& check)
{
    nlohmann::ordered_json findings = nlohmann::ordered_json::array();
    for (const jet::Finding& finding : check.findings) {
        nlohmann::ordered_json one;
        one["severity"] = isHarmful(finding) ? "harmful" : "harmless";
        one["table"] = finding.table;
        one["page"] = finding.page;
        one["row"] = finding.row;
        one["text"] = finding.text;
        findings.push_back(std::move(one));
    }
    nlohmann::ordered_json document;
    document["tables"] = check.totals.tables;
    document["rows"] = check.totals.rows;
    document["indexEntries"] = check.totals.indexEntries;
    document["harmful"] = check.totals.harmful;
    document["harmless"] = check.totals.harmless;
    document["findings"] = std::move(findings);
    return document;
}

void run(const CheckOptions& options, Streams streams)
{
    std::optional<DeepCheck> check;
    if (options.deep)
        check = checkDeep(options.file);
    if (check && options.json)
        printJson(streams.out, jsonOf(*check));
    else if (check)
        print(streams.out, *check);
    if (check && check->totals.harmful > 0)
        throw Failure("Файл поврежден, найдено ошибок: " + std::to_string(check->totals.harmful));
    std::ostringstream unprinted; // one document is all that a script gets
    {
        TerminalPrompt prompt(options.json ? unprinted : streams.out);
        openJournal(options.file, prompt);
    } // the notices come before the verdict
    if (!options.json)
        streams.out << "Файл в порядке.\n";
}

} // namespace

void addCheck(CLI::App& program, Streams streams)
{
    Command<CheckOptions> command(program, "check", "Открыть, проверить и обновить файл журнала");
    command.app.add_option("FILE", command.options->file, "Файл журнала")->required();
    auto* deep = command.app.add_flag("--deep", command.options->deep,
                                      "Сначала проверить каждую страницу, строку и каждый индекс");
    command.app
        .add_flag("--json", command.options->json, "Итог полной проверки одним документом JSON")
        ->needs(deep);
    command.calls([streams](const CheckOptions& options) { run(options, streams); });
}

} // namespace cli
