#include "jet/storage/check/definition.h"

#include "jet/storage/definitionrules.h"
#include "jet/storage/valuecodec.h"
#include "jet/text.h"

#include <algorithm>
#include <set>

namespace jet::check {
namespace {

constexpr std::size_t kFree = 2;
constexpr std::size_t kNext = 4;
constexpr std::size_t kLength = 8;
constexpr std::size_t kPageHeader = 8;
constexpr std::size_t kVariableSlots = 0x2B;
constexpr std::uint16_t kMostTextBytes = 510;
constexpr std::uint8_t kUserTable = 0x4E;
constexpr std::uint8_t kSystemTable = 0x53;
constexpr std::uint8_t kKnownIndexFlags =
    indexflag::kUnique | indexflag::kIgnoreNulls | indexflag::kRequired | indexflag::kAlways;

bool hasSoundLength(const ColumnDefinition& column)
{
    switch (column.type()) {
    case FieldType::Text:
        return column.length > 0 && column.length <= kMostTextBytes && column.length % 2 == 0;
    case FieldType::Boolean:
    case FieldType::Binary:
    case FieldType::Memo:
    case FieldType::LongBinary:
    case FieldType::Block:
        return true;
    case FieldType::Decimal: // some variable ones say less than their values have
        return column.length == storedSize(column.type())
               || (!column.isFixed() && column.length < storedSize(column.type()));
    default: // a type that is not known has size 0
        return storedSize(column.type()) != 0 && column.length == storedSize(column.type());
    }
}

std::string fieldName(const ColumnDefinition& column)
{
    return "поле «" + column.name + "»";
}

void checkColumns(Findings& findings, const std::string& table, const Definition& definition)
{
    for (const ColumnDefinition& column : definition.columns) {
        if (!hasSoundLength(column))
            findings.harmful(table, fieldName(column) + ": недопустимый тип или длина",
                             definition.page);
        const auto maps = std::ranges::count(definition.columnMaps, column.id,
                                             [](const ColumnMaps& m) { return m.columnId; });
        if (column.isLongValue() && maps != 1)
            findings.harmful(table,
                             fieldName(column)
                                 + (maps == 0 ? ": нет карт размещения"
                                              : ": карты размещения указаны не один раз"),
                             definition.page);
    }
}

// Decoding puts the count right; programs that do not would lose the last columns of rows.
void checkSlotCount(Space& space, Findings& findings, const std::string& table,
                    const Definition& definition)
{
    const PageRef first = space.pager().read(definition.page);
    const std::uint16_t slots = get16(first.bytes(), kVariableSlots);
    if (std::ranges::any_of(definition.columns, [slots](const ColumnDefinition& column) {
            return !column.isFixed() && column.slot >= slots;
        }))
        findings.harmful(table, "занижено число полей переменной длины", definition.page);
}

void checkRealIndexes(Findings& findings, const std::string& table, const Definition& definition)
{
    const auto& logical = definition.logicalIndexes;
    for (std::size_t real = 0; real < definition.realIndexes.size(); ++real) {
        const RealIndex& index = definition.realIndexes[real];
        if ((index.flags & indexflag::kAlways) == 0 || (index.flags & ~kKnownIndexFlags) != 0)
            findings.harmful(table, "неизвестный вид индекса", definition.page);
        if (std::ranges::none_of(logical, [real](const LogicalIndex& i) { return i.real == real; }))
            findings.harmful(table, "у индекса нет имени, им никто не пользуется", definition.page);
        std::set<std::uint16_t> columns;
        for (const RealIndexColumn& column : index.columns) {
            if (!columns.insert(column.columnId).second)
                findings.harmful(table, "поле стоит в индексе дважды", definition.page);
        }
    }
    if (definition.realIndexes.size() > rules::kMaxIndexes)
        findings.harmful(table, "слишком много индексов", definition.page);
}

void checkLogicalIndexes(Findings& findings, const std::string& table, const Definition& definition)
{
    std::set<std::string> names;
    int primary = 0;
    for (const LogicalIndex& index : definition.logicalIndexes) {
        const std::string name = "индекс «" + index.name + "»";
        if (!names.insert(foldName(index.name)).second)
            findings.harmful(table, name + ": имя повторяется", definition.page);
        if (index.type > kForeignKey)
            findings.harmful(table, name + ": неизвестный вид", definition.page);
        if (index.type == kPrimaryKey && ++primary == 2)
            findings.harmful(table, "больше одного первичного ключа", definition.page);
    }
}

void checkNames(Findings& findings, const std::string& table, const Definition& definition)
{
    const auto check = [&](const std::string& name) {
        if (name.find('\0') != std::string::npos)
            findings.harmful(table, "недопустимый знак в имени поля или индекса", definition.page);
    };
    std::ranges::for_each(definition.columns, check, &ColumnDefinition::name);
    std::ranges::for_each(definition.logicalIndexes, check, &LogicalIndex::name);
}

} // namespace

void checkDefinitionPages(Space& space, Findings& findings, const std::string& table,
                          PageNumber first)
{
    const Owner owner{table, "описание таблицы «" + table + "»", "описание таблицы"};
    std::set<PageNumber> passed;
    std::size_t left = get32(space.pager().read(first).bytes(), kLength);
    for (PageNumber number = first; number != 0;) {
        if (!passed.insert(number).second)
            throw Error(Fault::Damaged, "страницы описания идут по кругу", number);
        if (left == 0)
            throw Error(Fault::Damaged, "у описания лишняя страница", number);
        const PageRef page = space.pager().read(number);
        if (page.type() != PageType::Definition || page.bytes()[1] != 1)
            throw Error(Fault::Damaged, "здесь должно быть описание таблицы", number);
        space.claim(number, owner);
        const std::size_t header = passed.size() == 1 ? 0 : kPageHeader;
        const std::size_t used = std::min(kPageSize - header, left);
        left -= used;
        const std::size_t whole = used + header + kPageHeader;
        if (get16(page.bytes(), kFree) != (whole > kPageSize ? 0 : kPageSize - whole))
            findings.harmful(table, "неверно указано свободное место страницы описания", number);
        number = get32(page.bytes(), kNext);
    }
}

void checkDefinition(Space& space, Findings& findings, const std::string& table,
                     const Definition& definition)
{
    if (definition.tableType != kUserTable && definition.tableType != kSystemTable)
        findings.harmful(table, "неизвестный вид таблицы", definition.page);
    checkNames(findings, table, definition);
    checkColumns(findings, table, definition);
    checkSlotCount(space, findings, table, definition);
    checkRealIndexes(findings, table, definition);
    checkLogicalIndexes(findings, table, definition);
}

} // namespace jet::check
