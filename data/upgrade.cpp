#include "data/upgrade.h"

#include "data/convert.h"
#include "data/ddl.h"
#include "data/schema.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "jet/text.h"

#include <algorithm>

namespace data::upgrade {

namespace {

const TableDefinition& verified(std::string_view name)
{
    return *std::ranges::find(verifiedTables(), name, &TableDefinition::name);
}

std::string literal(const jet::Value& value)
{
    if (const auto* date = value.as<jet::DateTime>())
        return jet::sql::date(*date);
    return jet::sql::text(value.toText());
}

void dropIndexesOn(jet::Database& database, std::string_view table, std::string_view field)
{
    for (const jet::Index& index : database.tableDef(table).indexes) {
        const bool uses = std::ranges::any_of(index.fields, [&](const jet::IndexField& part) {
            return jet::sameName(part.name, field);
        });
        if (uses)
            database.execute(ddl::dropIndex(table, index.name));
    }
}

void resize(jet::Database& database, const FieldName& name, const FieldDefinition& definition)
{
    const std::string table(name.table);
    const std::string field(name.field);
    const std::string spare = field + '2';

    // A resize that was interrupted in an older program leaves its spare column behind.
    if (database.tableDef(table).field(spare))
        database.execute(ddl::dropColumn(table, spare));
    dropIndexesOn(database, table, field);
    database.appendField(table, ddl::field(definition, spare));
    database.execute("UPDATE " + table + " SET  " + field + "2 = Trim([" + table + "]![" + field
                     + "]);");
    database.execute(ddl::dropColumn(table, field));
    database.appendField(table, ddl::field(definition));
    database.execute("UPDATE " + table + " SET  " + field + " = Trim([" + table + "]![" + field
                     + "2]);");
    database.execute(ddl::dropColumn(table, spare));
}

void addStudyForms(jet::Database& database)
{
    for (const QString& form : studyForms()) {
        const std::pair<std::string, jet::Value> values[] = {{"NAIM", toUtf8(form)}};
        database.insert("SPVID", values);
    }
}

void addGradeScale(jet::Database& database)
{
    for (const GradeName& grade : gradeNames()) {
        const std::pair<std::string, jet::Value> values[] = {{"OCEN", grade.grade},
                                                             {"NAIMOC", toUtf8(grade.name)}};
        database.insert("SPBALL", values);
    }
}

void appendMissingFields(jet::Database& database, const TableDefinition& expected)
{
    const jet::TableDef table = database.tableDef(expected.name);
    for (const FieldDefinition& field : expected.fields)
        if (!table.field(field.name))
            database.appendField(expected.name, ddl::field(field));
}

// The study year that a date lies in or, in the summer holidays, the one to come.
QDate studyYearBegin(QDate date)
{
    return {date.month() >= 7 ? date.year() : date.year() - 1, 9, 1};
}

} // namespace

void addFields(jet::Database& database)
{
    for (const AddedField& added : addedFields()) {
        const auto& [table, field] = added.name;
        if (database.tableDef(table).field(field))
            continue;
        database.appendField(table, ddl::field(verified(table).field(field)));
        if (!added.preset.isNull())
            database.execute("UPDATE " + std::string(table) + " SET " + std::string(field) + " = "
                             + literal(added.preset) + ';');
    }
}

void resizeFields(jet::Database& database)
{
    for (const FieldName& name : resizedFields()) {
        const FieldDefinition& definition = verified(name.table).field(name.field);
        const jet::TableDef table = database.tableDef(name.table);
        if (table.field(name.field)->size != definition.size)
            resize(database, name, definition);
    }
}

void refillMonths(jet::Database& database)
{
    for (int month = 1; month <= 12; ++month) {
        const std::string number = jet::sql::number(month);
        if (database.count("SELECT * FROM MONTH WHERE ((MONTH.MN)=" + number + ")") > 0)
            continue;
        const QString& name = monthNames().at(static_cast<std::size_t>(month - 1));
        const std::pair<std::string, jet::Value> values[] = {{"MN", month}, {"NAIM", toUtf8(name)}};
        database.insert("MONTH", values);
    }
}

void appendSupplement(jet::Database& database)
{
    for (const TableDefinition& table : supplementaryTables()) {
        if (database.hasTable(table.name)) {
            appendMissingFields(database, table);
            continue;
        }
        ddl::create(database, table);
        if (table.name == "SPVID")
            addStudyForms(database);
        if (table.name == "SPBALL")
            addGradeScale(database);
    }
    for (const SupplementaryField& wanted : supplementaryFields())
        if (!database.tableDef(wanted.table).field(wanted.field.name))
            database.appendField(wanted.table, ddl::field(wanted.field));
}

void addSettingsRow(jet::Database& database)
{
    const std::pair<std::string, jet::Value> values[] = {{"IDR", 1}};
    database.insert("RASP", values);
    SettingsRow row;
    row.yearBegin = studyYearBegin(QDate::currentDate());
    row.yearEnd = {row.yearBegin.year() + 1, 6, 30};
    row.hoursPerLesson = 2;
    writeSettingsRow(database, row);
}

} // namespace data::upgrade
