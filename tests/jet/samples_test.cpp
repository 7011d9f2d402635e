// Files that Access wrote, read through SQL and compared value for value with mdb-export;
// then changed, and looked at with mdb-export and the structure checker.
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

namespace jet::test {

namespace {

// How mdb-export writes NULL: without quotes, unlike any text.
constexpr const char* kNull = "NULL";

// One field as mdb-export writes it.
struct Exported
{
    std::string text;
    bool quoted = false;
};
using ExportedRow = std::vector<Exported>;

std::vector<ExportedRow> parseCsv(const std::string& csv)
{
    std::vector<ExportedRow> rows;
    ExportedRow row;
    std::size_t at = 0;
    while (at < csv.size()) {
        Exported& field = row.emplace_back();
        if (csv[at] == '"') {
            field.quoted = true;
            for (++at; at < csv.size(); ++at) {
                if (csv[at] == '"' && (at + 1 == csv.size() || csv[++at] != '"'))
                    break;
                field.text += csv[at];
            }
        } else {
            const std::size_t end = csv.find_first_of(",\n", at);
            field.text = csv.substr(at, end - at);
            at = end;
        }
        if (at >= csv.size() || csv[at] == '\n')
            rows.push_back(std::exchange(row, {}));
        ++at;
    }
    return rows;
}

// The first row holds the names of the columns.
std::optional<std::vector<ExportedRow>> exported(const std::filesystem::path& file,
                                                 const std::string& table)
{
    const auto csv =
        mdbtools("mdb-export", {"-0", kNull, "-D", "%Y-%m-%d %H:%M:%S", "-T", "%Y-%m-%d %H:%M:%S",
                                "-b", "hex", file.string(), table});
    if (!csv)
        return std::nullopt;
    return parseCsv(*csv);
}

std::string isoDate(DateTime date)
{
    const DateTime::Parts p = date.parts();
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day,
                  p.hour, p.minute, p.second);
    return text;
}

std::optional<double> numberOf(const std::string& text)
{
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// mdb-export leaves the last hyphen out and, asked for bytes in hexadecimal, takes the text
// for bytes.
std::string guidAsExported(const Guid& guid)
{
    std::string text = guid.toString();
    text.erase(text.rfind('-'), 1);
    return Value(Bytes(text.begin(), text.end())).toText();
}

// mdb-export writes True as 1, Single with 8 and other numbers with at most 16 digits, days
// before March 1900 wrongly or not at all and texts as far as a zero character; bytes it
// writes in hexadecimal.
bool agree(const Value& ours, FieldType type, const Exported& theirs)
{
    constexpr double kFirstDayWrittenRightly = 61;
    if (const auto* date = ours.as<DateTime>(); date && date->days < kFirstDayWrittenRightly)
        return true;
    if (ours.isNull() || (!theirs.quoted && theirs.text == kNull))
        return ours.isNull() && !theirs.quoted && theirs.text == kNull;
    if (const auto* text = ours.as<std::string>())
        return text->c_str() == theirs.text;
    if (const auto* date = ours.as<DateTime>())
        return isoDate(*date) == theirs.text;
    if (const auto* flag = ours.as<bool>())
        return theirs.text == (*flag ? "1" : "0");
    if (ours.as<Bytes>())
        return ours.toText() == theirs.text;
    if (const auto* guid = ours.as<Guid>())
        return guidAsExported(*guid) == theirs.text;
    const auto number = numberOf(theirs.text);
    const double tolerance = type == FieldType::Single ? 1e-7 : 1e-14;
    return number && std::abs(*number - ours.toDouble()) <= tolerance * std::abs(ours.toDouble());
}

// `positions` are those of their columns in our rows.
bool agree(const Recordset& ours, const std::vector<int>& positions, const ExportedRow& theirs)
{
    if (theirs.size() != positions.size())
        return false;
    for (std::size_t i = 0; i < theirs.size(); ++i) {
        const auto type = ours.columns()[static_cast<std::size_t>(positions[i])].type;
        if (!agree(ours.value(positions[i]), type, theirs[i]))
            return false;
    }
    return true;
}

std::string shown(const Recordset& ours)
{
    std::string text;
    for (std::size_t i = 0; i < ours.columns().size(); ++i) {
        const Value value = ours.value(static_cast<int>(i));
        text += (i == 0 ? "" : ",") + (value.isNull() ? kNull : value.toText());
    }
    return text;
}

// Every row of ours has a row of its own among theirs: the two programs need not walk the
// pages in the same order.
void expectSameRows(Database& database, const std::filesystem::path& file, const std::string& table)
{
    auto theirs = exported(file, table);
    if (!theirs)
        GTEST_SKIP() << "no mdb-export";
    const std::string where = file.filename().string() + " " + table;
    Recordset ours = database.query("SELECT * FROM [" + table + "]");
    // Ours are in the order of DAO's collection, theirs as they lie in the definition.
    std::vector<int> positions;
    for (const Exported& column : theirs->front())
        positions.push_back(ours.column(column.text));
    ASSERT_EQ(positions.size(), ours.columns().size()) << where;
    theirs->erase(theirs->begin());
    std::size_t count = 0;
    for (; ours.next(); ++count) {
        const auto match =
            std::find_if(theirs->begin(), theirs->end(),
                         [&](const ExportedRow& row) { return agree(ours, positions, row); });
        if (match == theirs->end())
            ADD_FAILURE() << where << ": mdb-export has no row " << shown(ours);
        else
            theirs->erase(match);
    }
    EXPECT_TRUE(theirs->empty()) << where << ": " << theirs->size() << " rows too few of "
                                 << count + theirs->size();
}

// Rows by file and table as mdb-export counts them; file names are the samples'.
struct Count
{
    std::string file, table;
    std::int64_t rows;
};

std::vector<Count> countsOfSamples()
{
    std::vector<Count> counts;
    std::ifstream in(sharedFolder().value() / "samples" / "counts.tsv");
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string file, table, byCounter, byExport;
        std::getline(fields, file, '\t');
        std::getline(fields, table, '\t');
        std::getline(fields, byCounter, '\t');
        std::getline(fields, byExport, '\t');
        counts.push_back({file, table, std::stoll(byExport)});
    }
    return counts;
}

TEST(Samples, TablesAndRowsAreThoseThatMdbtoolsCounts)
{
    if (readableSamples().empty())
        GTEST_SKIP() << "no samples";
    const auto counts = countsOfSamples();
    for (const auto& sample : readableSamples()) {
        const auto database = Database::open(sample, OpenMode::ReadOnly);
        std::vector<std::string> expected;
        for (const Count& count : counts) {
            if (count.file != sample.filename().string())
                continue;
            EXPECT_EQ(database->rowCount(count.table), count.rows)
                << count.file << " " << count.table;
            EXPECT_EQ(database->count("SELECT * FROM [" + count.table + "]"), count.rows);
            if (!count.table.starts_with("MSys"))
                expected.push_back(count.table);
        }
        auto names = database->tableNames();
        std::sort(names.begin(), names.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(names, expected) << sample;
    }
}

TEST(Samples, ValuesAreThoseThatMdbExportReads)
{
    if (readableSamples().empty())
        GTEST_SKIP() << "no samples";
    for (const auto& sample : readableSamples()) {
        const auto database = Database::open(sample, OpenMode::ReadOnly);
        for (const std::string& table : database->tableNames())
            expectSameRows(*database, sample, table);
    }
}

// Adds a row to every table by copying its values, changes and deletes rows; the copies of
// unique keys are left to fail. Gives the number of rows changed.
std::int64_t changeEverything(Database& database)
{
    std::int64_t changed = 0;
    for (const std::string& table : database.tableNames()) {
        const TableDef definition = database.tableDef(table);
        std::string texts;
        for (const Field& field : definition.fields) {
            if (field.type == FieldType::Text && field.size >= 20)
                texts = field.name;
        }
        const std::string from = " FROM [" + table + "]";
        const auto attempt = [&](const std::string& sql) {
            try {
                changed += database.execute(sql);
            } catch (const Error& error) {
                const bool rule =
                    error.fault() == Fault::Duplicate || error.fault() == Fault::NullValue
                    || error.fault() == Fault::Unsupported || error.fault() == Fault::Overflow;
                EXPECT_TRUE(rule) << table << ": " << sql << ": " << error.what();
            }
        };
        if (!texts.empty()) {
            attempt("UPDATE [" + table + "] SET [" + texts + "] = Left([" + texts
                    + "] & \" ё-x\", 20)");
        }
        attempt("INSERT INTO [" + table + "] SELECT *" + from);
        const auto half = database.count("SELECT *" + from) / 2;
        if (const Field& first = definition.fields.front();
            half > 0 && first.type == FieldType::Long)
            attempt("DELETE" + from + " WHERE [" + first.name + "] Mod 2 = 1");
    }
    return changed;
}

// What the checker says but for its warnings and its last line. Two samples came with row
// counters that are wrong; changes add to them what they add.
std::string withoutInheritedErrors(const std::string& errors)
{
    std::istringstream lines(errors);
    std::string rest;
    for (std::string line; std::getline(lines, line);) {
        const bool harmless = line.find(": row count is ") != std::string::npos
                              || line.starts_with("warning: ") || line.ends_with(" warnings");
        if (!harmless)
            rest += line + '\n';
    }
    return rest;
}

TEST(Samples, ChangedCopiesAreSoundAndReadTheSameElsewhere)
{
    if (readableSamples().empty())
        GTEST_SKIP() << "no samples";
    std::int64_t changed = 0;
    for (const auto& sample : readableSamples()) {
        const TemporaryFolder folder;
        const auto copy = copyOf(sample, folder);
        changed += changeEverything(*Database::open(copy));
        if (const auto errors = structuralErrors(copy)) {
            EXPECT_EQ(withoutInheritedErrors(*errors), "") << sample;
        }
        const auto database = Database::open(copy, OpenMode::ReadOnly);
        for (const std::string& table : database->tableNames())
            expectSameRows(*database, copy, table);
    }
    EXPECT_GT(changed, 5000);
}

} // namespace

} // namespace jet::test
