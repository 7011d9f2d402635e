#include "jet/storage/check/table.h"

#include "jet/storage/check/definition.h"
#include "jet/storage/check/index.h"
#include "jet/storage/definitionrules.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace jet::check {
namespace {

// Files of Access have wrong counters, and nothing depends on them.
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
    const std::size_t count = std::min(definition.realIndexes.size(), rules::kMaxIndexes);
    for (std::size_t real = 0; real < count; ++real)
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
    ++findings.totals().tables;
    findings.totals().rows += rows.count();
}

} // namespace

std::optional<Definition> checkTable(Space& space, Findings& findings, const std::string& table,
                                     PageNumber definitionPage, const Rows::Visitor& visit)
{
    std::optional<Definition> definition;
    if (!findings.attempt(
            table, [&] { definition = readDefinition(space.pager(), definitionPage); },
            definitionPage))
        return std::nullopt;
    findings.attempt(table, [&] { checkDefinitionPages(space, findings, table, definitionPage); });
    checkDefinition(space, findings, table, *definition);
    findings.attempt(table, [&] { checkContent(space, findings, table, *definition, visit); });
    return definition;
}

} // namespace jet::check
