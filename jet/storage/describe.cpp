#include "jet/storage/describe.h"

#include <algorithm>

namespace jet {

namespace {

int attributesOf(const ColumnDefinition& column)
{
    const auto has = [&column](std::uint8_t flag) { return (column.flags1 & flag) != 0; };
    int attributes = column.isFixed() ? attribute::kFixed : attribute::kVariable;
    if (has(columnflag::kAutoNumber) || has(columnflag::kAutoGuid))
        attributes |= attribute::kAutoIncrement;
    if (has(columnflag::kSystem))
        attributes |= attribute::kSystem;
    if (has(columnflag::kHyperlink))
        attributes |= attribute::kHyperlink;
    return attributes;
}

Field describeField(const ColumnDefinition& column, const Properties& properties)
{
    Field field;
    field.name = column.name;
    field.type = column.type();
    field.size =
        fieldSize(field.type, field.type == FieldType::Text ? column.length / 2 : column.length);
    field.attributes = attributesOf(column);
    field.ordinal = column.ordinal;
    field.required = properties.columnFlag(column.name, "Required");
    field.allowZeroLength = properties.columnFlag(column.name, "AllowZeroLength");
    field.defaultValue = properties.columnText(column.name, "DefaultValue");
    if (field.type == FieldType::Decimal) {
        field.precision = static_cast<std::uint8_t>(column.collation);
        field.scale = static_cast<std::uint8_t>(column.collation >> 8);
    }
    return field;
}

std::string nameOfColumn(const Definition& definition, std::uint16_t id)
{
    const int position = definition.columnPositionById(id);
    return position < 0 ? std::string()
                        : definition.columns[static_cast<std::size_t>(position)].name;
}

Index describeIndex(const Definition& definition, const LogicalIndex& logical)
{
    const RealIndex& real = definition.realIndexes.at(logical.real);
    Index index;
    index.name = logical.name;
    for (const RealIndexColumn& column : real.columns)
        index.fields.push_back({nameOfColumn(definition, column.columnId), column.descending});
    index.primary = logical.type == kPrimaryKey;
    index.foreign = logical.type == kForeignKey;
    index.unique = index.primary || (real.flags & indexflag::kUnique) != 0;
    index.required = index.primary || (real.flags & indexflag::kRequired) != 0;
    index.ignoreNulls = (real.flags & indexflag::kIgnoreNulls) != 0;
    return index;
}

// The referenced side of a relationship has an index of its own kind on an existing tree.
bool isHiddenPartner(const LogicalIndex& index)
{
    return index.name.starts_with(".r");
}

} // namespace

TableDef describeTable(const CatalogueObject& object, const Definition& definition,
                       const Properties& properties)
{
    TableDef table;
    table.name = object.name;
    table.system = object.isSystem();
    table.hidden = (object.flags & objectflag::kHidden) != 0;
    table.created = object.created;
    table.updated = object.updated;
    std::vector<const ColumnDefinition*> columns;
    for (const ColumnDefinition& column : definition.columns)
        columns.push_back(&column);
    std::sort(columns.begin(), columns.end(),
              [](const ColumnDefinition* a, const ColumnDefinition* b) {
                  return a->ordinal != b->ordinal ? a->ordinal < b->ordinal : a->id < b->id;
              });
    for (const ColumnDefinition* column : columns)
        table.fields.push_back(describeField(*column, properties));
    for (const LogicalIndex& logical : definition.logicalIndexes) {
        if (!isHiddenPartner(logical))
            table.indexes.push_back(describeIndex(definition, logical));
    }
    return table;
}

} // namespace jet
