#include "jet/sql/translation.h"

#include "jet/sql/translator.h"

#include "jet/error.h"

#include <utility>

namespace jet::sql {

namespace {

template <class... Cases>
struct Overloaded : Cases...
{
    using Cases::operator()...;
};

Translation definition(StatementKind kind, std::string table)
{
    Translation result;
    result.kind = kind;
    result.table = std::move(table);
    return result;
}

Translation createTable(const CreateTable& statement)
{
    Translation result = definition(StatementKind::CreateTable, statement.definition.name);
    result.definition = statement.definition;
    return result;
}

// The rest changes a table that must be there.
std::string existing(const std::string& table, SchemaLookup& schema)
{
    if (!schema.columns(table))
        throw Error(Fault::UnknownName, "нет таблицы «" + table + "»");
    return schema.canonicalName(table);
}

Translation addColumn(const AddColumn& statement, SchemaLookup& schema)
{
    Translation result = definition(StatementKind::AddColumn, existing(statement.table, schema));
    result.field = statement.field;
    result.hasIndex = statement.index.has_value();
    if (statement.index)
        result.index = *statement.index;
    return result;
}

Translation createIndex(const CreateIndex& statement, SchemaLookup& schema)
{
    Translation result = definition(StatementKind::CreateIndex, existing(statement.table, schema));
    result.index = statement.index;
    return result;
}

Translation dropped(StatementKind kind, const std::string& table, const std::string& name,
                    SchemaLookup& schema)
{
    Translation result = definition(kind, existing(table, schema));
    result.name = name;
    return result;
}

} // namespace

Translation translate(const Statement& statement, SchemaLookup& schema)
{
    return std::visit(
        Overloaded{
            [&](const Query& each) { return Translator(schema).query(each); },
            [&](const Insert& each) { return Translator(schema).insert(each); },
            [&](const Update& each) { return Translator(schema).update(each); },
            [&](const Delete& each) { return Translator(schema).deletion(each); },
            [&](const CreateTable& each) { return createTable(each); },
            [&](const DropTable& each) {
                return dropped(StatementKind::DropTable, each.table, "", schema);
            },
            [&](const AddColumn& each) { return addColumn(each, schema); },
            [&](const DropColumn& each) {
                return dropped(StatementKind::DropColumn, each.table, each.column, schema);
            },
            [&](const CreateIndex& each) { return createIndex(each, schema); },
            [&](const DropIndex& each) {
                return dropped(StatementKind::DropIndex, each.table, each.index, schema);
            },
        },
        statement);
}

} // namespace jet::sql
