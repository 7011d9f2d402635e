#include "jet/storage/schemaeditor.h"

#include "jet/error.h"
#include "jet/storage/definitionrules.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::uint8_t kStoredDecimal = 0x10;
constexpr std::uint16_t kDecimalLength = 17;
constexpr int kDefaultTextSize = 255;
constexpr int kDefaultBinarySize = 510;

// Text and bytes lie in the variable area and numbers in the fixed one, unless asked
// otherwise; long values never are fixed, Booleans always.
bool isStoredFixed(const Field& field)
{
    switch (field.type) {
    case FieldType::Memo:
    case FieldType::LongBinary:
        return false;
    case FieldType::Boolean:
        return true;
    case FieldType::Text:
    case FieldType::Binary:
        return (field.attributes & attribute::kFixed) != 0;
    default:
        return (field.attributes & attribute::kVariable) == 0;
    }
}

std::uint8_t flagsOf(const Field& field)
{
    unsigned flags = columnflag::kUpdatable;
    if (isStoredFixed(field))
        flags |= columnflag::kFixed;
    if (field.attributes & attribute::kAutoIncrement)
        flags |= field.type == FieldType::Guid ? columnflag::kAutoGuid : columnflag::kAutoNumber;
    if (field.type == FieldType::Memo && (field.attributes & attribute::kHyperlink))
        flags |= columnflag::kHyperlink;
    return static_cast<std::uint8_t>(flags);
}

std::uint16_t lengthOf(const Field& field)
{
    if (field.type == FieldType::Decimal)
        return kDecimalLength;
    if (field.type == FieldType::Text)
        return static_cast<std::uint16_t>(2 * (field.size == 0 ? kDefaultTextSize : field.size));
    if (field.type == FieldType::Binary)
        return static_cast<std::uint16_t>(field.size == 0 ? kDefaultBinarySize : field.size);
    return static_cast<std::uint16_t>(fieldSize(field.type));
}

std::uint16_t endOfFixedArea(const Definition& definition)
{
    std::size_t end = 0;
    for (const ColumnDefinition& column : definition.columns) {
        if (column.isFixed() && !column.isBoolean())
            end = std::max<std::size_t>(end, std::size_t{column.fixedOffset} + column.length);
    }
    return static_cast<std::uint16_t>(end);
}

bool isCounter(const ColumnDefinition& column)
{
    return (column.flags1 & columnflag::kAutoNumber) != 0;
}

void checkNewColumn(const Definition& definition, const Field& field)
{
    rules::checkField(field);
    if (definition.columnPosition(field.name) >= 0)
        throw Error(Fault::Exists, "поле «" + field.name + "» уже есть");
    if (definition.nextColumnId >= rules::kMaxColumns)
        throw Error(Fault::Limit, "в таблице не может быть больше 255 полей, считая удалённые "
                                  "до сжатия файла");
    const bool counter =
        field.type == FieldType::Long && (field.attributes & attribute::kAutoIncrement) != 0;
    if (counter && std::any_of(definition.columns.begin(), definition.columns.end(), isCounter))
        throw Error(Fault::Exists, "в таблице уже есть счётчик");
}

} // namespace

void SchemaEditor::addColumn(Definition& definition, const Field& field)
{
    checkNewColumn(definition, field);
    ColumnDefinition column;
    column.name = field.name;
    column.storedType =
        field.type == FieldType::Decimal ? kStoredDecimal : static_cast<std::uint8_t>(field.type);
    column.id = definition.nextColumnId++;
    for (const ColumnDefinition& other : definition.columns)
        column.ordinal =
            std::max<std::uint16_t>(column.ordinal, static_cast<std::uint16_t>(other.ordinal + 1));
    column.collation = m_pager.header().collation;
    if (field.type == FieldType::Decimal)
        column.collation = static_cast<std::uint16_t>(field.precision | field.scale << 8);
    column.flags1 = flagsOf(field);
    column.length = lengthOf(field);
    column.slot = definition.variableSlots; // of a fixed column: for information only
    if (!column.isFixed())
        ++definition.variableSlots;
    else if (!column.isBoolean())
        column.fixedOffset = endOfFixedArea(definition);
    definition.columns.push_back(column);
    rules::checkRowSize(definition);
    if (column.isLongValue()) {
        const RowPointer owned = m_allocator.createMap(definition.ownedMap.page);
        const RowPointer free = m_allocator.createMap(owned.page);
        definition.columnMaps.push_back({column.id, owned, free});
    }
}

void SchemaEditor::appendField(Table& table, const Field& field)
{
    Definition definition = table.definition();
    addColumn(definition, field);
    write(table, definition);
    if (isCounter(definition.columns.back()))
        numberRows(table, static_cast<int>(definition.columns.size()) - 1);
    Properties own;
    own.addField(field);
    if (own.encode().empty()) {
        m_catalogue.touch(definition.page);
        return;
    }
    Properties properties = m_catalogue.properties(definition.page);
    properties.addField(field);
    m_catalogue.touch(definition.page, properties);
}

// A new counter gives numbers to the rows that are there, as the engine of Access does.
void SchemaEditor::numberRows(Table& table, int counter)
{
    std::vector<RowPointer> rows;
    for (TableScan scan = table.scan(); scan.next();)
        rows.push_back(scan.row().pointer());
    std::int64_t number = 0;
    for (const RowPointer pointer : rows) {
        const std::optional<RowView> row = table.find(pointer);
        std::vector<Value> values;
        for (int column = 0; row && column < counter; ++column)
            values.push_back(row->value(column));
        values.emplace_back(++number);
        table.update(pointer, values);
    }
    put32(m_pager.modify(table.definition().page), kDefinitionLastAutoNumber,
          static_cast<std::uint32_t>(number));
    table.reload();
}

void SchemaEditor::dropField(Table& table, std::string_view name)
{
    Definition definition = table.definition();
    const int position = definition.columnPosition(name);
    if (position < 0)
        throw Error(Fault::UnknownName, "нет поля «" + std::string(name) + "»", table.name());
    if (definition.columns.size() == 1)
        throw Error(Fault::Unsupported, "единственное поле таблицы удалить нельзя", table.name());
    const auto column = definition.columns.begin() + position;
    for (const RealIndex& index : definition.realIndexes) {
        for (const RealIndexColumn& used : index.columns) {
            if (used.columnId == column->id)
                throw Error(Fault::Unsupported,
                            "поле «" + column->name + "» входит в индекс, сначала удалите индекс",
                            table.name());
        }
    }
    if (const ColumnMaps* maps = definition.mapsOf(column->id)) {
        releaseColumnPages(*maps);
        std::erase_if(definition.columnMaps,
                      [column](const ColumnMaps& m) { return m.columnId == column->id; });
    }
    Properties properties = m_catalogue.properties(definition.page);
    properties.removeColumn(column->name);
    definition.columns.erase(column);
    write(table, definition);
    m_catalogue.touch(definition.page, properties);
}

// Long values of a dropped column are gone at once, though rows still point to them.
void SchemaEditor::releaseColumnPages(const ColumnMaps& maps)
{
    for (const RowPointer pointer : {maps.freeSpace, maps.owned}) {
        if (pointer.isNull())
            continue;
        UsageMap map(m_pager, m_allocator, pointer);
        if (pointer == maps.owned) {
            for (const PageNumber page : map.pages())
                m_allocator.release(page, PageType::FreedData);
        }
        map.releaseBitmaps();
        m_allocator.deleteMap(pointer);
    }
}

} // namespace jet
