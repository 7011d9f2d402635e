#include "cli/command.h"
#include "cli/output.h"
#include "data/convert.h"
#include "jet/database.h"

#include <nlohmann/json.hpp>

namespace cli {

void addTables(CLI::App& program, Streams streams)
{
    struct Options
    {
        std::string file;
        bool json = false;
    };
    Command<Options> command(program, "tables", "Таблицы файла с числом строк");
    command.app.add_option("FILE", command.options->file, "Любой файл .mdb")->required();
    command.app.add_flag("--json", command.options->json, "Вывести JSON");
    command.calls([streams](const Options& options) {
        const auto path = data::toPath(data::fromUtf8(options.file));
        const auto database = jet::Database::open(path, jet::OpenMode::ReadOnly);
        auto document = nlohmann::ordered_json::array();
        std::vector<Row> rows;
        for (const std::string& name : database->tableNames()) {
            const std::int64_t count = database->rowCount(name);
            document.push_back({{"name", name}, {"rows", count}});
            rows.push_back({name, std::to_string(count)});
        }
        if (options.json)
            printJson(streams.out, document);
        else
            printAligned(streams.out, {"Таблица", "Строк"}, rows);
    });
}

} // namespace cli
