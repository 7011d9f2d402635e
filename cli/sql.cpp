#include "cli/command.h"
#include "cli/output.h"
#include "data/convert.h"
#include "jet/database.h"
#include "jet/text.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace cli {

namespace {

struct SqlOptions
{
    std::string file;
    std::string sql;
    bool json = false;
    bool csv = false;
};

bool isQuery(std::string_view sql)
{
    const std::size_t start = std::min(sql.find_first_not_of(" \t\r\n("), sql.size());
    return jet::sameName(sql.substr(start, 6), "select");
}

void printCsv(jet::Recordset& records, const Row& header, std::ostream& out)
{
    CsvWriter csv(out);
    for (const std::string& title : header)
        csv.add(title);
    csv.endLine();
    while (records.next()) {
        for (int i = 0; i < static_cast<int>(header.size()); ++i)
            csv.add(records.value(i));
        csv.endLine();
    }
}

void printRows(jet::Recordset& records, const SqlOptions& options, std::ostream& out)
{
    Row header;
    for (const auto& column : records.columns())
        header.push_back(column.name);
    if (options.csv)
        return printCsv(records, header, out);
    auto document = nlohmann::ordered_json::array();
    std::vector<Row> rows;
    while (records.next()) {
        auto values = nlohmann::ordered_json::array();
        Row cells;
        for (int i = 0; i < static_cast<int>(header.size()); ++i)
            if (options.json)
                values.push_back(jsonValue(records.value(i)));
            else
                cells.push_back(plainText(records.value(i)));
        if (options.json)
            document.push_back(std::move(values));
        else
            rows.push_back(std::move(cells));
    }
    if (options.json)
        printJson(out, {{"columns", header}, {"rows", document}});
    else
        printAligned(out, header, rows);
}

void run(const SqlOptions& options, Streams streams)
{
    const bool reads = isQuery(options.sql);
    const auto path = data::toPath(data::fromUtf8(options.file));
    const auto database =
        jet::Database::open(path, reads ? jet::OpenMode::ReadOnly : jet::OpenMode::Exclusive);
    if (!reads) {
        streams.out << database->execute(options.sql) << '\n';
        return;
    }
    auto records = database->query(options.sql);
    printRows(records, options, streams.out);
}

} // namespace

void addSql(CLI::App& program, Streams streams)
{
    Command<SqlOptions> command(program, "sql", "Выполнить одну инструкцию Jet SQL");
    command.app.add_option("FILE", command.options->file, "Любой файл .mdb")->required();
    command.app.add_option("SQL", command.options->sql, "Текст инструкции")->required();
    auto* json = command.app.add_flag("--json", command.options->json, "Вывести JSON");
    command.app.add_flag("--csv", command.options->csv, "Вывести CSV")->excludes(json);
    command.calls([streams](const SqlOptions& options) { run(options, streams); });
}

} // namespace cli
