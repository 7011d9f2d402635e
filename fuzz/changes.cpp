#include "fuzz/changes.h"

#include "fuzz/walk.h"
#include "jet/storage/store.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <random>
#include <utility>
#include <vector>

namespace jet::fuzz {

namespace {

constexpr int kMaxSteps = 10;

const char* const kStatements[] = {
    "UPDATE SPSTUD SET FAM = FAM & FAM",
    "UPDATE SPSTUD SET MEMO = FAM & MEMO & 'x' WHERE ID < 40",
    "UPDATE SPSTUD INNER JOIN SPGRUP ON SPSTUD.IDG = SPGRUP.IDG SET SUM = KURS, FAM = NAIM",
    "DELETE FROM SPSTUD WHERE IDG = 1",
    "DELETE FROM SPSTUD",
    "INSERT INTO SPSTUD (IDG, FAM, MEMO) SELECT IDG + 1, FAM & '2', MEMO FROM SPSTUD",
    "INSERT INTO SPGRUP (NAIM) VALUES ('новая')",
    "UPDATE KINDS SET O = Null, T = T & 'б'",
    "UPDATE SPSTUD SET ID = ID + 1000 WHERE ID > 50",
    "CREATE TABLE NEWONE (A COUNTER PRIMARY KEY, B TEXT(30) UNIQUE, C MEMO)",
    "INSERT INTO NEWONE (B, C) SELECT FAM, MEMO FROM SPSTUD",
    "CREATE UNIQUE INDEX EVERY ON SPSTUD (IDG, FAM DESC, ID)",
    "ALTER TABLE SPSTUD ADD COLUMN LATER TEXT(80) UNIQUE",
    "UPDATE SPSTUD SET LATER = FAM",
    "ALTER TABLE SPSTUD DROP COLUMN MEMO",
    "DROP INDEX FAMBORN ON SPSTUD",
    "DROP TABLE SPSTUD",
};

std::string randomText(std::mt19937& random, std::size_t length)
{
    static constexpr std::array<const char*, 8> kLetters = {"а", "Ё", "z", "-", " ", "'", "9", "й"};
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
        text += kLetters[random() % kLetters.size()];
    return text;
}

// A value that the column may take or that is refused.
Value randomValue(FieldType type, std::mt19937& random)
{
    constexpr std::array<std::size_t, 6> kLengths = {0, 3, 30, 300, 2500, 9000};
    if (random() % 8 == 0)
        return {};
    const auto number = static_cast<std::int64_t>(random()) >> (random() % 32);
    switch (type) {
    case FieldType::Text:
        return randomText(random, random() % 60);
    case FieldType::Memo:
        return randomText(random, kLengths[random() % kLengths.size()]);
    case FieldType::Binary:
        return Bytes(random() % 30, std::uint8_t{7});
    case FieldType::LongBinary:
        return Bytes(kLengths[random() % kLengths.size()], std::uint8_t{1});
    case FieldType::Date:
        return DateTime{static_cast<double>(number % 100000) / 4};
    case FieldType::Guid:
        return Guid{std::array<std::uint8_t, 16>{static_cast<std::uint8_t>(number)}};
    case FieldType::Boolean:
        return number % 2 == 0;
    default:
        return number;
    }
}

// Fills each column whose bit of `columns` is set, all when none is.
void fill(std::vector<Value>& values, const Definition& definition, unsigned seed, unsigned columns)
{
    std::mt19937 random(seed);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (columns == 0 || ((columns >> (i % 8)) & 1U) != 0)
            values[i] = randomValue(definition.columns[i].type(), random);
    }
}

// The n-th row, of fewer rows the last.
std::optional<RowPointer> rowAt(Table& table, int n)
{
    std::optional<RowPointer> found;
    for (TableScan rows = table.scan(); n >= 0 && rows.next(); --n)
        found = rows.row().pointer();
    return found;
}

std::string newName(std::uint8_t number)
{
    return "N" + std::to_string(number % 16);
}

Field newField(std::uint8_t number, std::uint8_t kind)
{
    constexpr std::array<FieldType, 13> kTypes = {
        FieldType::Text,    FieldType::Long, FieldType::Memo,       FieldType::Boolean,
        FieldType::Byte,    FieldType::Date, FieldType::Currency,   FieldType::Double,
        FieldType::Binary,  FieldType::Guid, FieldType::LongBinary, FieldType::Single,
        FieldType::Integer,
    };
    Field field;
    field.name = newName(number);
    field.type = kTypes[(number + kind) % kTypes.size()];
    field.size = fieldSize(field.type, 1 + kind % 100);
    field.ordinal = number;
    field.required = kind % 16 == 9;
    if (field.type == FieldType::Long && kind % 4 == 1)
        field.attributes = attribute::kFixed | attribute::kAutoIncrement;
    if (kind % 16 == 3)
        field.defaultValue = "1";
    return field;
}

// One or two of the table's fields.
Index indexOf(const TableDef& table, std::uint8_t field, std::uint8_t kind)
{
    Index index;
    index.name = newName(field);
    const std::size_t count = std::max<std::size_t>(1, table.fields.size());
    for (std::size_t i = 0; i <= kind % 2U && i < table.fields.size(); ++i)
        index.fields.push_back({table.fields[(field + i) % count].name, (kind & 2) != 0});
    index.primary = (kind & 12) == 12;
    index.unique = index.primary || (kind & 4) != 0;
    index.required = index.primary || (kind & 16) != 0;
    index.ignoreNulls = (kind & 32) != 0;
    return index;
}

} // namespace

Changes::Changes(test::MemoryFiles& files)
    : m_files(files)
    , m_database(Database::open(files, kFile, OpenMode::Exclusive))
{}

Changes::~Changes()
{
    while (!m_transactions.empty())
        closeTransaction(false);
}

void Changes::run(Input& input)
{
    for (int count = 0; count < kMaxSteps && !input.atEnd(); ++count) {
        Step step{};
        step.action = input.u8();
        step.table = input.u8();
        step.first = input.u8();
        step.second = input.u8();
        attempt([&] { act(step); });
        if (!m_database)
            return;
    }
    while (!m_transactions.empty())
        closeTransaction(true);
}

void Changes::act(const Step& step)
{
    constexpr std::array<void (Changes::*)(const Step&), 14> kActions = {
        &Changes::insert,      &Changes::update,    &Changes::erase,       &Changes::runStatement,
        &Changes::createTable, &Changes::dropTable, &Changes::appendField, &Changes::dropField,
        &Changes::createIndex, &Changes::dropIndex, &Changes::begin,       &Changes::end,
        &Changes::reopen,      &Changes::failSoon,
    };
    (this->*kActions[step.action % kActions.size()])(step);
}

std::string Changes::tableOf(const Step& step)
{
    const std::vector<std::string> names = m_database->tableNames();
    if (names.empty())
        throw Error(Fault::UnknownName, "нет таблиц");
    return names[names.size() - 1 - step.table % names.size()];
}

void Changes::insert(const Step& step)
{
    StatementScope scope(m_database->store());
    Table& table = m_database->store().table(tableOf(step));
    std::vector<Value> values(table.definition().columns.size());
    // A counter counts by itself unless told otherwise.
    fill(values, table.definition(), step.first, step.second);
    table.insert(values);
    scope.done();
}

void Changes::update(const Step& step)
{
    StatementScope scope(m_database->store());
    Table& table = m_database->store().table(tableOf(step));
    const auto pointer = rowAt(table, step.first);
    const auto row = pointer ? table.find(*pointer) : std::nullopt;
    if (!row)
        return;
    std::vector<Value> values;
    for (std::size_t i = 0; i < table.definition().columns.size(); ++i)
        values.push_back(row->value(static_cast<int>(i)));
    fill(values, table.definition(), step.second, step.second);
    table.update(*pointer, values);
    scope.done();
}

void Changes::erase(const Step& step)
{
    StatementScope scope(m_database->store());
    Table& table = m_database->store().table(tableOf(step));
    for (int i = 0; i <= step.second % 8; ++i) {
        if (const auto row = rowAt(table, step.first))
            table.erase(*row);
    }
    scope.done();
}

void Changes::runStatement(const Step& step)
{
    m_database->execute(kStatements[step.first % std::size(kStatements)]);
}

void Changes::createTable(const Step& step)
{
    TableDef definition;
    definition.name = newName(step.first);
    for (int i = 0; i <= step.second % 40; ++i)
        definition.fields.push_back(newField(static_cast<std::uint8_t>(i), step.second));
    definition.indexes.push_back(indexOf(definition, 0, step.second));
    m_database->createTable(definition);
}

void Changes::dropTable(const Step& step)
{
    m_database->dropTable(tableOf(step));
}

void Changes::appendField(const Step& step)
{
    m_database->appendField(tableOf(step), newField(step.first, step.second));
}

void Changes::dropField(const Step& step)
{
    const std::string table = tableOf(step);
    const TableDef definition = m_database->tableDef(table);
    if (!definition.fields.empty())
        m_database->dropField(table, definition.fields[step.first % definition.fields.size()].name);
}

void Changes::createIndex(const Step& step)
{
    const std::string table = tableOf(step);
    const TableDef definition = m_database->tableDef(table);
    m_database->createIndex(table, indexOf(definition, step.first, step.second));
}

void Changes::dropIndex(const Step& step)
{
    const std::string table = tableOf(step);
    const TableDef definition = m_database->tableDef(table);
    if (!definition.indexes.empty())
        m_database->dropIndex(table,
                              definition.indexes[step.first % definition.indexes.size()].name);
}

void Changes::begin(const Step&)
{
    m_transactions.push_back(std::make_unique<Transaction>(*m_database));
}

void Changes::end(const Step& step)
{
    if (!m_transactions.empty())
        closeTransaction(step.first % 2 == 0);
}

void Changes::reopen(const Step& step)
{
    while (!m_transactions.empty())
        closeTransaction(true);
    m_database.reset();
    m_files.failNever();
    m_files.powerCut(step.first);
    m_database = Database::open(m_files, kFile, OpenMode::Exclusive);
}

void Changes::failSoon(const Step& step)
{
    using enum test::MemoryFiles::Failure;
    constexpr std::array<test::MemoryFiles::Failure, 3> kFailures = {Once, ForGood, NoRoom};
    m_files.tearWrites(test::MemoryFiles::Tear::RandomSectors, step.second);
    m_files.failAt(step.first % 64, kFailures[step.table % kFailures.size()],
                   step.second % 2 == 0 ? Fault::Io : Fault::DiskFull);
}

void Changes::closeTransaction(bool commit)
{
    if (commit)
        attempt([&] { m_transactions.back()->commit(); });
    m_transactions.pop_back();
}

} // namespace jet::fuzz
