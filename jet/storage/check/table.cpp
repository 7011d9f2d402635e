#include "jet/storage/check/table.h"

#include "jet/storage/check/index.h"
#include "jet/storage/valuecodec.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace jet::check {
namespace {

constexpr std::size_t kDefinitionFree = 2;
constexpr std::size_t kDefinitionNext = 4;
constexpr std::size_t kDefinitionLength = 8;
constexpr std::size_t kPageHeader = 8;
constexpr std::uint16_t kMostTextBytes = 510;
constexpr std::uint8_t kPrimaryKey = 1;
constexpr std::uint8_t kUserTable = 0x4E;
constexpr std::uint8_t kSystemTable = 0x53;
constexpr std::uint8_t kKnownIndexFlags =
    indexflag::kUnique | indexflag::kIgnoreNulls | indexflag::kRequired | indexflag::kAlways;

// Claims the pages of a definition and checks their headers.
void checkDefinitionPages(Space& space, Findings& findings, const std::string& table,
                          PageNumber first)
{
    const Owner owner{table, "описание таблицы «" + table + "»", "описание таблицы"};
    std::set<PageNumber> passed;
    std::size_t left = get32(space.pager().read(first).bytes(), kDefinitionLength);
    for (PageNumber number = first; number != 0;) {
        if (!passed.insert(number).second)
            throw Error(Fault::Damaged, "страницы описания идут по кругу", number);
        const PageRef page = space.pager().read(number);
        if (page.type() != PageType::Definition || page.bytes()[1] != 1)
            throw Error(Fault::Damaged, "описание продолжается не на своей странице", number);
        space.claim(number, owner);
        if (left == 0)
            findings.harmful(table, "у описания лишняя страница", number);
        const std::size_t header = passed.size() == 1 ? 0 : kPageHeader;
        const std::size_t used = std::min(kPageSize - header, left);
        left -= used;
        const std::size_t whole = used + header + kPageHeader;
        if (get16(page.bytes(), kDefinitionFree) != (whole > kPageSize ? 0 : kPageSize - whole))
            findings.harmful(table, "неверно указано свободное место страницы описания", number);
        number = get32(page.bytes(), kDefinitionNext);
    }
}

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
    case FieldType::Decimal: // some variable ones say less than their values have
        return true;
    default: // a type that is not known has size 0
        return storedSize(column.type()) != 0 && column.length == storedSize(column.type());
    }
}

void checkColumnDefinitions(Findings& findings, const std::string& table,
                            const Definition& definition)
{
    for (const ColumnDefinition& column : definition.columns) {
        if (!hasSoundLength(column))
            findings.harmful(table, "поле «" + column.name + "»: недопустимый тип или длина",
                             definition.page);
    }
}

void checkIndexDefinitions(Findings& findings, const std::string& table,
                           const Definition& definition)
{
    for (std::size_t real = 0; real < definition.realIndexes.size(); ++real) {
        const std::uint8_t flags = definition.realIndexes[real].flags;
        if ((flags & indexflag::kAlways) == 0 || (flags & ~kKnownIndexFlags) != 0)
            findings.harmful(table, "неизвестный вид индекса", definition.page);
        if (std::none_of(definition.logicalIndexes.begin(), definition.logicalIndexes.end(),
                         [&](const LogicalIndex& index) { return index.real == real; }))
            findings.harmful(table, "индексом никто не пользуется", definition.page);
    }
    if (std::count_if(definition.logicalIndexes.begin(), definition.logicalIndexes.end(),
                      [](const LogicalIndex& index) { return index.type == kPrimaryKey; })
        > 1)
        findings.harmful(table, "больше одного первичного ключа", definition.page);
}

// Engine files have wrong counters, and nothing depends on them.
void checkCounters(Findings& findings, const std::string& table, const Definition& definition,
                   const Rows& rows)
{
    if (rows.count() != definition.rowCount) {
        findings.harmless(table,
                          "счётчик строк показывает " + std::to_string(definition.rowCount)
                              + ", строк " + std::to_string(rows.count()),
                          definition.page);
    }
    const auto last = static_cast<std::int32_t>(definition.lastAutoNumber);
    if (rows.highestCounter() && *rows.highestCounter() > last) {
        findings.harmless(table,
                          "в таблице есть номер " + std::to_string(*rows.highestCounter())
                              + ", последний выданный " + std::to_string(last),
                          definition.page);
    }
}

void checkContent(Space& space, Findings& findings, const std::string& table,
                  const Definition& definition, const Rows::Visitor& visit)
{
    Rows rows(space, findings, table, definition,
              space.ownedPages(definition.ownedMap, definition.freeSpaceMap,
                               {table, "таблица «" + table + "»", "страницы данных"}));
    std::vector<Index> indexes;
    for (std::size_t real = 0; real < definition.realIndexes.size(); ++real)
        indexes.emplace_back(space, findings, table, definition, real);
    rows.run([&](const CheckedRow& row) {
        for (Index& index : indexes)
            index.expect(row);
        if (visit)
            visit(row);
    });
    for (Index& index : indexes)
        findings.attempt(table, [&] { index.run(); });
    checkCounters(findings, table, definition, rows);
}

} // namespace

std::optional<Definition> checkTable(Space& space, Findings& findings, const std::string& table,
                                     PageNumber definitionPage, const Rows::Visitor& visit)
{
    std::optional<Definition> definition;
    findings.attempt(
        table,
        [&] {
            Definition read = readDefinition(space.pager(), definitionPage);
            checkDefinitionPages(space, findings, table, definitionPage);
            definition = std::move(read);
        },
        definitionPage);
    if (!definition)
        return std::nullopt;
    if (definition->tableType != kUserTable && definition->tableType != kSystemTable)
        findings.harmful(table, "неизвестный вид таблицы", definitionPage);
    checkColumnDefinitions(findings, table, *definition);
    checkIndexDefinitions(findings, table, *definition);
    findings.attempt(table, [&] { checkContent(space, findings, table, *definition, visit); });
    return definition;
}

} // namespace jet::check
