#include "tests/jet/checkedfile.h"

#include "jet/storage/sid.h"
#include "jet/storage/usagemap.h"

#include <algorithm>
#include <fstream>

namespace jet::test {
namespace {

const std::filesystem::path kPath = "folder/base.mdb";
constexpr std::int64_t kRelationships = 0x0F000003; // the container of relationships

Field field(const std::string& name, FieldType type, int size = 0)
{
    Field f;
    f.name = name;
    f.type = type;
    f.size = size;
    return f;
}

Field counter(const char* name)
{
    Field f = field(name, FieldType::Long);
    f.attributes |= attribute::kAutoIncrement;
    return f;
}

Index primaryKey(const char* name)
{
    return {"PrimaryKey", {{name, false}}, true, true, true, false, false};
}

TableDef studentsTable()
{
    TableDef table;
    table.name = "SPSTUD";
    table.fields = {counter("ID"),
                    field("FAM", FieldType::Text, 40),
                    field("BORN", FieldType::Date),
                    field("LEFT", FieldType::Boolean),
                    field("NOTE", FieldType::Memo),
                    field("OLD", FieldType::Text, 20),
                    field("CITY", FieldType::Text, 60),
                    field("CODE", FieldType::Binary, 20),
                    field("IDG", FieldType::Long)};
    const Index byName{"FAMBORN", {{"FAM", false}, {"BORN", true}}, false, false, false, false,
                       false};
    const Index byGroup{"SPGRUPSPSTUD", {{"IDG", false}}, false, false, false, false, false};
    table.indexes = {primaryKey("ID"), byName, byGroup};
    return table;
}

TableDef groupsTable()
{
    TableDef table;
    table.name = "SPGRUP";
    table.fields = {counter("IDG"), field("NAIM", FieldType::Text, 20)};
    table.fields[1].required = true;
    table.fields[1].defaultValue = "\"нет\"";
    table.indexes = {primaryKey("IDG")};
    return table;
}

TableDef wideTable()
{
    TableDef table;
    table.name = "WIDE";
    for (int i = 0; i < 60; ++i)
        table.fields.push_back(
            field("Очень длинное имя поля номер " + std::to_string(i), FieldType::Integer));
    return table;
}

std::size_t memoBytes(int i)
{
    if (i % 7 == 0)
        return 20;
    return i % 50 == 1 ? 1800 : i % 100 == 2 ? 18000 : 0;
}

Value memo(int i)
{
    const std::size_t bytes = memoBytes(i);
    // Of letters that are never compressed.
    std::string text;
    for (std::size_t at = 0; at < bytes / 2; ++at)
        text += "я";
    return text.empty() ? Value() : Value(text);
}

std::vector<Value> studentRow(int i, const std::string& city)
{
    return {Value(),
            "Ёлкин-Иванов " + std::to_string(i % 150),
            i % 5 == 0 ? Value() : Value(DateTime{30000.0 + i}),
            i % 2 == 0,
            memo(i),
            "старое",
            city,
            Bytes{1, 2, 3, 4},
            i % 10 == 3 ? Value() : Value(1 + i % 3)};
}

// Values by name in the order of the definition.
std::vector<Value> rowOf(const Definition& table, const std::map<std::string, Value>& values)
{
    std::vector<Value> row;
    for (const ColumnDefinition& c : table.columns) {
        const auto value = values.find(c.name);
        row.push_back(value == values.end() ? Value() : value->second);
    }
    return row;
}

LogicalIndex* logicalIndex(Definition& table, const char* name)
{
    const auto found = std::ranges::find(table.logicalIndexes, name, &LogicalIndex::name);
    return found == table.logicalIndexes.end() ? nullptr : &*found;
}

} // namespace

CheckedFile::CheckedFile(bool encoded, int rows)
{
    CreateOptions options;
    options.encoded = encoded;
    {
        const auto store = Store::create(m_files, kPath, options);
        StatementScope statement(*store);
        fill(*store, rows);
        relate(*store);
        statement.done();
    }
    m_sound = m_files.content(kPath);
    survey();
}

void CheckedFile::fill(Store& store, int count)
{
    store.createTable(groupsTable());
    for (const char* name : {"ИС-21", "ИС-22", "Э-21"})
        store.table("SPGRUP").insert(std::vector<Value>{Value(), name});
    store.createTable(wideTable());
    store.table("WIDE").insert(std::vector<Value>(60, Value(7)));
    store.createTable(studentsTable());
    std::vector<RowPointer> rows;
    for (int i = 0; i < count; ++i)
        rows.push_back(store.table("SPSTUD").insert(studentRow(i, "Омск")));
    store.dropField("SPSTUD", "OLD");
    store.appendField("SPSTUD", field("PHONE", FieldType::Text, 10));
    Table& students = store.table("SPSTUD");
    for (std::size_t i = 5; i < rows.size(); i += 30) {
        auto values =
            studentRow(static_cast<int>(i), "Петропавловск-Камчатский, улица Длинная, 12");
        values[0] = static_cast<int>(i) + 1;
        values.erase(values.begin() + 5);
        values.emplace_back("12345");
        students.update(rows[i], values);
    }
    for (std::size_t i = 10; i < rows.size(); i += 30)
        students.erase(rows[i]);
}

// What no statement of ours makes: a relationship of SPSTUD with SPGRUP.
void CheckedFile::relate(Store& store)
{
    Definition students = store.table("SPSTUD").definition();
    Definition groups = store.table("SPGRUP").definition();
    LogicalIndex referenced = groups.logicalIndexes.at(0);
    referenced.name = ".rB";
    referenced.number = 1;
    referenced.type = 2;
    referenced.relationSide = 1;
    LogicalIndex& referencing = *logicalIndex(students, "SPGRUPSPSTUD");
    referencing.type = 2;
    referencing.relationSide = 2;
    referencing.partner = 1;
    referencing.partnerTable = groups.page;
    referencing.cascadeUpdates = referencing.cascadeDeletes = 0;
    referenced.partner = static_cast<std::int32_t>(referencing.number);
    referenced.partnerTable = students.page;
    referenced.cascadeUpdates = referenced.cascadeDeletes = 0;
    groups.logicalIndexes.push_back(referenced);
    writeDefinition(store.pager(), store.allocator(), students);
    writeDefinition(store.pager(), store.allocator(), groups);

    Table& relations = store.table("MSysRelationships");
    relations.insert(rowOf(relations.definition(), {{"szRelationship", "SPGRUPSPSTUD"},
                                                    {"szObject", "SPSTUD"},
                                                    {"szColumn", "IDG"},
                                                    {"szReferencedObject", "SPGRUP"},
                                                    {"szReferencedColumn", "IDG"},
                                                    {"ccolumn", 1},
                                                    {"icolumn", 0},
                                                    {"grbit", 0}}));
    Table& objects = store.table("MSysObjects");
    const Bytes owner = sid::coded(sid::kAdmin, store.pager().header().sidKey);
    objects.insert(rowOf(objects.definition(), {{"Id", std::int64_t{INT32_MIN}},
                                                {"ParentId", kRelationships},
                                                {"Name", "SPGRUPSPSTUD"},
                                                {"Type", 8},
                                                {"DateCreate", DateTime{40000}},
                                                {"DateUpdate", DateTime{40000}},
                                                {"Owner", owner},
                                                {"Flags", 0}}));
}

void CheckedFile::survey()
{
    const auto store = Store::open(m_files, kPath, OpenMode::ReadOnly);
    for (const char* table :
         {"SPSTUD", "SPGRUP", "WIDE", "MSysObjects", "MSysACEs", "MSysRelationships"})
        surveyRows(*store, table);
}

void CheckedFile::surveyRows(Store& store, const std::string& name)
{
    Table& table = store.table(name);
    const Definition& definition = table.definition();
    m_definitions.emplace(name, definition);
    for (TableScan scan = table.scan(); scan.next();) {
        const RowPointer row = scan.row().pointer();
        const PageRef page = store.pager().read(row.page);
        const bool moved = (get16(page.bytes(), slotOf(row)) & 0x4000) != 0;
        const auto value = [&](const char* f) {
            return scan.row().value(definition.columnPosition(f));
        };
        if (name == "MSysObjects")
            m_objects.emplace(value("Name").toText(), row);
        if (name == "MSysACEs")
            m_permissions[static_cast<PageNumber>(value("ObjectId").toInteger())].push_back(row);
        if (moved && name == "SPSTUD")
            m_moved.push_back(row);
        if (moved)
            continue;
        m_rows[name].push_back(row);
        if (name == "SPSTUD")
            m_byMemo[value("NOTE").toText().size()].push_back(row);
    }
}

std::vector<Finding> CheckedFile::check(CheckTotals* totals)
{
    const auto pager = Pager::open(m_files, kPath, true);
    return checkDatabase(*pager, totals);
}

void CheckedFile::damage(const std::function<void(Pager&)>& change)
{
    m_files.setContent(kPath, m_sound);
    const auto pager = Pager::open(m_files, kPath, false);
    pager->beginTransaction();
    change(*pager);
    pager->commit();
}

void CheckedFile::setContent(std::vector<std::uint8_t> bytes)
{
    m_files.setContent(kPath, std::move(bytes));
}

void CheckedFile::saveAs(const std::filesystem::path& path) const
{
    const auto bytes = m_files.content(kPath);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

} // namespace jet::test
