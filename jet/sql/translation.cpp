#include "jet/sql/translation.h"

#include "jet/sql/translator.h"

#include "jet/error.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace jet::sql {

namespace {

// SQLite's parser keeps at most 100 symbols open; a bracket or a CASE takes up to five.
constexpr int kMaxOpen = 18;

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Brackets and CASE that stand open at once in a SQLite text of ours.
int nesting(std::string_view sql)
{
    int open = 0, deepest = 0;
    for (std::size_t i = 0; i < sql.size(); ++i) {
        const char c = sql[i];
        if (c == '\'' || c == '"') {
            i = std::min(sql.find(c, i + 1), sql.size());
        } else if (isLetter(c)) {
            const std::size_t begin = i;
            while (i + 1 < sql.size() && isLetter(sql[i + 1]))
                ++i;
            const std::string_view word = sql.substr(begin, i + 1 - begin);
            open += word == "CASE" ? 1 : word == "END" ? -1 : 0;
        } else {
            open += c == '(' ? 1 : c == ')' ? -1 : 0;
        }
        deepest = std::max(deepest, open);
    }
    return deepest;
}

template <class... Cases>
struct Overloaded : Cases...
{
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

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
    Translation result = std::visit(
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
    if (nesting(result.sqlite) > kMaxOpen)
        throw Error(Fault::Limit, "слишком много вложенных скобок в запросе");
    return result;
}

} // namespace jet::sql
