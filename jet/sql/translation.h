#pragma once

#include "jet/sql/ast.h"
#include "jet/tabledef.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

struct SchemaColumn
{
    std::string name;
    FieldType type = FieldType::Long;
    bool counter = false;
    std::string defaultValue = {}; // as stored, "" if none
};

// What the translator asks about the tables of a database. Names compare without case.
class SchemaLookup
{
public:
    virtual ~SchemaLookup() = default;
    // The columns in collection order, null when there is no such table. Must stay valid
    // until the translation is finished.
    virtual const std::vector<SchemaColumn>* columns(std::string_view table) = 0;
    // The name as the table was created; called only for tables that exist.
    virtual std::string canonicalName(std::string_view table) = 0;
};

enum class StatementKind {
    Select,
    Insert,
    Update,
    Delete,
    CreateTable,
    DropTable,
    AddColumn,
    DropColumn,
    CreateIndex,
    DropIndex,
};

struct ResultColumn
{
    std::string name; // DAO's name
    // The declared type of a column, the deduced one of an expression; nothing when only
    // the values can tell (NULL alone, a mixture of types).
    std::optional<FieldType> type;
    // Of a plain column of a table: the table's name or alias, and the field. So a caller may
    // ask for "SPPREP.FAMIO" even where the name is just "FAMIO".
    std::string source;
    std::string field;
};

// One Jet SQL statement in SQLite's language.
//
// In the SQLite text a Jet table is a table of the same canonical name in double quotes,
// its columns likewise; `rowid` names a row. Values: numbers INTEGER or REAL, Currency and
// Decimal REAL, Boolean INTEGER -1/0, Date REAL (days since 1899-12-30), Text and Memo
// TEXT, Binary and LongBinary BLOB, Guid TEXT. Text columns must be declared COLLATE JET;
// the text adds COLLATE JET where text that is no plain column is compared or sorted.
// Functions are called by the names in jet/sql/functionnames.h.
// Values reach INSERT and UPDATE as the expression gives them: the receiver converts them to
// the type of the column (a REAL for a Long column is rounded, text for a Date is parsed ...).
struct Translation
{
    StatementKind kind = StatementKind::Select;
    std::string sqlite;                // Select, Insert, Update, Delete; "" for definitions
    std::vector<ResultColumn> columns; // Select: as many as SQLite gives, in the same order
    std::string table;                 // what is changed; canonical but for CreateTable
    std::vector<std::string> tables;   // canonical names of all tables that the text names

    TableDef definition;   // CreateTable: name, fields and indexes
    Field field;           // AddColumn
    Index index;           // CreateIndex; AddColumn with a constraint
    bool hasIndex = false; // AddColumn: `index` is to be made after the column
    std::string name;      // DropColumn, DropIndex: the column or index, as written
};

// Throws Error (Fault::Syntax, Limit) that names the place and the word, in Russian.
Statement parse(std::string_view sql);

// Throws Error: UnknownName, Syntax (misplaced aggregate and the like), Type, Unsupported.
Translation translate(const Statement& statement, SchemaLookup& schema);

} // namespace jet::sql
