#include "data/structure.h"

#include "data/convert.h"
#include "data/ddl.h"
#include "data/schema.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace data::structure {

namespace {

QString missingTable(std::string_view table)
{
    return u"Обнаружены ошибки в структуре файла базы данных! Отсутствует таблица: "_s
           + fromUtf8(table) + u". Продолжение работы с этим файлом невозможно."_s;
}

QString missingField(const FieldName& name)
{
    return u"Обнаружены ошибки в структуре файла базы данных! В таблице: "_s + fromUtf8(name.table)
           + u" отсутствует поле: "_s + fromUtf8(name.field)
           + u". Продолжение работы с этим файлом невозможно."_s;
}

// `what` with its verb form differs by what is compared.
QString mismatch(const QString& what, std::string_view part, std::string_view table,
                 const QString& verb)
{
    return what + u' ' + fromUtf8(part) + u" таблицы "_s + fromUtf8(table) + u' ' + verb
           + u" формату. Продолжение работы невозможно."_s;
}

std::optional<QString> fieldProblem(const jet::TableDef& table, std::string_view tableName,
                                    const FieldDefinition& expected)
{
    const FieldName name{tableName, expected.name};
    const jet::Field* field = table.field(expected.name);
    if (!field) {
        if (isAdded(name))
            return {};
        return missingField(name);
    }
    if (field->type != expected.type)
        return mismatch(u"Тип данных поля"_s, name.field, name.table, u"не соответствует"_s);
    if (field->size != expected.size && !isResized(name))
        return mismatch(u"Размер поля"_s, name.field, name.table, u"не соответствует"_s);
    if (field->attributes != expected.attributes)
        return mismatch(u"Параметры поля"_s, name.field, name.table, u"не соответствуют"_s);
    return {};
}

std::optional<QString> indexProblem(const jet::TableDef& table, std::string_view tableName,
                                    const IndexDefinition& expected)
{
    const jet::Index* index = table.index(expected.name);
    if (index && jet::sameName(index->fieldList(), expected.fields))
        return {};
    return mismatch(u"Параметры индекса"_s, expected.name, tableName, u"не соответствуют"_s);
}

void addFirstUsers(jet::Database& database)
{
    for (const UserRow& user : firstUsers()) {
        const std::pair<std::string, jet::Value> values[] = {
            {"NAIM", toUtf8(user.name)}, {"ROLE", user.role}, {"PSSW", ""}};
        database.insert("USERS", values);
    }
}

} // namespace

void createMissingTables(jet::Database& database)
{
    for (const TableDefinition& table : verifiedTables()) {
        if (database.hasTable(table.name))
            continue;
        try {
            ddl::create(database, table);
        } catch (const jet::Error& error) {
            if (error.fault() != jet::Fault::Exists)
                throw;
            continue;
        }
        if (table.name == "USERS")
            addFirstUsers(database);
    }
}

std::optional<QString> problem(const jet::Database& database)
{
    for (const TableDefinition& expected : verifiedTables())
        if (!database.hasTable(expected.name))
            return missingTable(expected.name);
    for (const TableDefinition& expected : verifiedTables()) {
        const jet::TableDef table = database.tableDef(expected.name);
        for (const FieldDefinition& field : expected.fields)
            if (auto found = fieldProblem(table, expected.name, field))
                return found;
    }
    for (const TableDefinition& expected : verifiedTables()) {
        const jet::TableDef table = database.tableDef(expected.name);
        for (const IndexDefinition& index : expected.indexes)
            if (auto found = indexProblem(table, expected.name, index))
                return found;
    }
    return {};
}

} // namespace data::structure
