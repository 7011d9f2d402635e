#include "tests/jet/tablecontent.h"

#include "jet/storage/checker.h"
#include "jet/storage/store.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace jet::test {

namespace {

using Names = std::map<std::uint32_t, std::string>;

bool holdsObjects(const std::string& table, const std::string& column)
{
    const std::string place = table + "." + column;
    for (const char* const known :
         {"MSysObjects.Id", "MSysObjects.ParentId", "MSysACEs.ObjectId", "MSysQueries.ObjectId",
          "MSysNavPaneObjectIDs.Id", "MSysNavPaneGroupToObjects.ObjectID",
          "MSysNavPaneGroups.ObjectID"}) {
        if (place == known)
            return true;
    }
    return false;
}

std::string textOf(const Value& value, const Names* names)
{
    if (value.isNull())
        return "NULL";
    if (names) {
        const auto found = names->find(static_cast<std::uint32_t>(value.toInteger()));
        if (found != names->end())
            return "<" + found->second + ">";
    }
    return value.toText();
}

std::string describe(const ColumnDefinition& c)
{
    return "column " + c.name + " " + std::to_string(c.storedType) + " " + std::to_string(c.ordinal)
           + " " + std::to_string(c.collation) + " " + std::to_string(c.flags1) + " "
           + std::to_string(c.flags2) + " " + std::to_string(c.length);
}

std::string describe(const Definition& definition, const LogicalIndex& index, const Names& names)
{
    const RealIndex& real = definition.realIndexes[index.real];
    std::string text = "index " + index.name + " " + std::to_string(index.number) + " on "
                       + std::to_string(index.real) + " type " + std::to_string(index.type)
                       + " flags " + std::to_string(real.flags) + " side "
                       + std::to_string(index.relationSide) + " partner "
                       + std::to_string(index.partner) + " of ";
    const auto partner = names.find(index.partnerTable);
    text += partner == names.end() ? "none" : partner->second;
    text += " cascades " + std::to_string(index.cascadeUpdates)
            + std::to_string(index.cascadeDeletes) + ":";
    for (const RealIndexColumn& column : real.columns) {
        const int position = definition.columnPositionById(column.columnId);
        text += (column.descending ? " -" : " +")
                + definition.columns[static_cast<std::size_t>(position)].name;
    }
    return text;
}

std::vector<std::string> contentOf(Table& table, const Names& names)
{
    const Definition& definition = table.definition();
    std::vector<std::string> lines;
    std::int64_t highest = static_cast<std::int32_t>(definition.lastAutoNumber);
    for (TableScan scan = table.scan(); scan.next();) {
        std::string& line = lines.emplace_back();
        for (std::size_t i = 0; i < definition.columns.size(); ++i) {
            const ColumnDefinition& column = definition.columns[i];
            const Value value = scan.row().value(static_cast<int>(i));
            line += textOf(value, holdsObjects(table.name(), column.name) ? &names : nullptr) + "|";
            if ((column.flags1 & columnflag::kAutoNumber) != 0)
                highest = std::max(highest, value.toInteger());
        }
    }
    std::ranges::sort(lines);
    for (const ColumnDefinition& column : definition.columns)
        lines.push_back(describe(column));
    for (const LogicalIndex& index : definition.logicalIndexes)
        lines.push_back(describe(definition, index, names));
    lines.push_back("counter " + std::to_string(highest));
    return lines;
}

} // namespace

std::map<std::string, std::vector<std::string>> contentOf(FileSystem& files,
                                                          const std::filesystem::path& path)
{
    const auto store = Store::open(files, path, OpenMode::ReadOnly);
    Names names;
    for (const CatalogueObject& object : store->objects())
        names[object.id] = std::to_string(object.type) + " " + object.name;
    std::map<std::string, std::vector<std::string>> content;
    for (const CatalogueObject& object : store->objects()) {
        if (object.isLocalTable())
            content[object.name] = contentOf(store->table(object.name), names);
    }
    const DatabaseHeader& header = store->pager().header();
    content["header"] = {std::to_string(header.codePage), std::to_string(header.collation),
                         std::to_string(header.created.days), std::to_string(header.sidKey),
                         std::to_string(header.buildNumber)};
    return content;
}

void expectSameContent(FileSystem& files, const std::filesystem::path& before,
                       const std::filesystem::path& after)
{
    const auto old = contentOf(files, before);
    auto fresh = contentOf(files, after);
    EXPECT_EQ(old.size(), fresh.size());
    for (const auto& [table, lines] : old)
        EXPECT_EQ(lines, fresh[table]) << table;
}

std::string harmfulFindings(FileSystem& files, const std::filesystem::path& path)
{
    const auto pager = Pager::open(files, path, true);
    std::string text;
    for (const Finding& finding : checkDatabase(*pager)) {
        if (finding.severity == Severity::Harmful)
            text += finding.table + ", page " + std::to_string(finding.page) + ": " + finding.text
                    + "\n";
    }
    return text;
}

} // namespace jet::test
