#include "reports/ranking.h"
#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"

#include <nlohmann/json.hpp>

#include <map>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using Json = nlohmann::ordered_json;
using reports::RankingGrades;
using reports::RankingLevel;
using reports::RankingRow;

struct RankingOptions
{
    std::string file;
    std::string from;
    std::string to;
    RankingGrades grades = RankingGrades::Final;
    std::string speciality;
    bool json = false;
};

Json jsonItem(const RankingRow& row, std::size_t item)
{
    if (item == reports::RankingItem::Name)
        return row.name.toStdString();
    const auto& value = row.values[item];
    if (!value)
        return {};
    const auto whole = static_cast<std::int64_t>(*value);
    return static_cast<double>(whole) == *value ? Json(whole) : Json(*value);
}

void print(const RankingOptions& options, Streams streams, RankingLevel level,
           const std::vector<RankingRow>& rows)
{
    Row heads;
    for (const QString& head : reports::rankingHeads(level))
        heads.push_back(worded(head));
    if (!options.json) {
        std::vector<Row> lines;
        for (const RankingRow& row : rows) {
            Row& line = lines.emplace_back();
            for (std::size_t item = reports::RankingItem::Name; item < reports::RankingItem::Count;
                 ++item)
                line.push_back(row.text(item).toStdString());
        }
        printAligned(streams.out, heads, lines);
        return;
    }
    auto list = Json::array();
    for (const RankingRow& row : rows) {
        auto items = Json::array();
        for (std::size_t item = reports::RankingItem::Name; item < reports::RankingItem::Count;
             ++item)
            items.push_back(jsonItem(row, item));
        list.push_back(std::move(items));
    }
    printJson(streams.out, {{"columns", heads}, {"rows", list}});
}

void run(const RankingOptions& options, Streams streams)
{
    TerminalPrompt prompt(streams.err);
    const auto journal = openJournal(options.file, prompt);
    jet::Database& database = journal->database();
    const reports::RankingRequest request{dateArgument(options.from), dateArgument(options.to),
                                          options.grades};
    if (options.speciality.empty())
        print(options, streams, RankingLevel::Specialities,
              reports::Ranking(database, request).specialities());
    else
        print(options, streams, RankingLevel::Groups,
              reports::Ranking(database, request)
                  .groups(findSpeciality(database, options.speciality)));
}

} // namespace

void addRanking(CLI::App& program, Streams streams)
{
    Command<RankingOptions> command(program, "ranking",
                                    "Места специальностей или групп одной из них за период");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--from", options.from, "Начало периода, ГГГГ-ММ-ДД")->required();
    command.app
        .add_option("--to", options.to,
                    "Конец периода, ГГГГ-ММ-ДД; сам день входит в него только для итоговых оценок")
        ->required();
    const std::map<std::string, RankingGrades> grades = {{"final", RankingGrades::Final},
                                                         {"monthly", RankingGrades::Monthly}};
    command.app
        .add_option("--grades", options.grades, "final: итоговые оценки, monthly: оценки за месяц")
        ->required()
        ->transform(CLI::CheckedTransformer(grades));
    command.app.add_option("--speciality", options.speciality,
                           "Специальность, группы которой сравнить: номер или имя");
    command.app.add_flag("--json", options.json, "Вывести JSON");
    command.calls([streams](const RankingOptions& values) { run(values, streams); });
}

} // namespace cli
