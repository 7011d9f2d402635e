#include "cli/command.h"
#include "cli/output.h"
#include "data/convert.h"
#include "jet/database.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

struct SchemaOptions
{
    std::string file;
    std::string table;
    bool json = false;
};

std::string typeName(const jet::Field& field)
{
    using jet::FieldType;
    if ((field.attributes & jet::attribute::kAutoIncrement) != 0)
        return "COUNTER";
    switch (field.type) {
    case FieldType::Boolean:
        return "Boolean";
    case FieldType::Byte:
        return "Byte";
    case FieldType::Integer:
        return "Integer";
    case FieldType::Long:
        return "Long";
    case FieldType::Currency:
        return "Currency";
    case FieldType::Single:
        return "Single";
    case FieldType::Double:
        return "Double";
    case FieldType::Date:
        return "Date/Time";
    case FieldType::Binary:
        return "Binary";
    case FieldType::Text:
        return "Text";
    case FieldType::LongBinary:
        return "Long Binary";
    case FieldType::Memo:
        return "Memo";
    case FieldType::Guid:
        return "GUID";
    case FieldType::Block:
        return "Block";
    case FieldType::Decimal:
        return "Decimal";
    }
    return std::to_string(static_cast<int>(field.type));
}

Json toJson(const jet::TableDef& table)
{
    auto fields = Json::array();
    for (const jet::Field& field : table.fields)
        fields.push_back({{"name", field.name},
                          {"type", static_cast<int>(field.type)},
                          {"size", field.size},
                          {"attributes", field.attributes}});
    auto indexes = Json::array();
    for (const jet::Index& index : table.indexes)
        indexes.push_back({{"name", index.name},
                           {"fields", index.fieldList()},
                           {"primary", index.primary},
                           {"unique", index.unique}});
    return {{"name", table.name}, {"fields", fields}, {"indexes", indexes}};
}

void printText(std::ostream& out, const jet::TableDef& table)
{
    out << table.name << '\n';
    std::vector<Row> fields;
    for (const jet::Field& field : table.fields)
        fields.push_back({"  " + field.name, typeName(field), std::to_string(field.size),
                          std::to_string(field.attributes)});
    printAligned(out, {"  Поле", "Тип", "Размер", "Атрибуты"}, fields);
    for (const jet::Index& index : table.indexes)
        out << "  Индекс " << index.name << ": " << index.fieldList()
            << (index.primary ? ", ключ" : "") << (index.unique ? ", без повторов" : "") << '\n';
    out << '\n';
}

void run(const SchemaOptions& options, Streams streams)
{
    const auto path = data::toPath(data::fromUtf8(options.file));
    const auto database = jet::Database::open(path, jet::OpenMode::ReadOnly);
    const auto names =
        options.table.empty() ? database->tableNames() : std::vector<std::string>{options.table};
    auto document = Json::array();
    for (const std::string& name : names) {
        const jet::TableDef table = database->tableDef(name);
        if (options.json)
            document.push_back(toJson(table));
        else
            printText(streams.out, table);
    }
    if (options.json)
        printJson(streams.out, document);
}

} // namespace

void addSchema(CLI::App& program, Streams streams)
{
    Command<SchemaOptions> command(program, "schema", "Поля и индексы таблиц");
    command.app.add_option("FILE", command.options->file, "Любой файл .mdb")->required();
    command.app.add_option("TABLE", command.options->table, "Только эта таблица");
    command.app.add_flag("--json", command.options->json, "Вывести JSON");
    command.calls([streams](const SchemaOptions& options) { run(options, streams); });
}

} // namespace cli
