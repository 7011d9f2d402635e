#pragma once

#include "jet/tabledef.h"
#include "jet/value.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// The syntax tree of one Jet SQL statement. Names are kept as written.
namespace jet::sql {

struct Expression;
struct Query;
using ExpressionPtr = std::unique_ptr<Expression>;
using QueryPtr = std::unique_ptr<Query>;

enum class Operator {
    None,
    Or,
    And,
    Not,
    Xor,
    Eqv,
    Imp,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Concatenate,
    Add,
    Subtract,
    Modulo,
    IntegerDivide,
    Multiply,
    Divide,
    Negate,
    Plus, // unary
    Power,
};

enum class ExpressionKind {
    Literal,   // literal
    Column,    // [qualifier.]name
    Operation, // op with one or two operands
    Call,      // name(operands); `star` for Count(*)
    Like,      // operands: text, pattern
    Between,   // operands: value, low, high
    InList,    // operands: value, then the list
    InQuery,   // operands: value; query
    Exists,    // query
    IsNull,    // operands: value
    Scalar,    // query
};

struct Expression
{
    ExpressionKind kind = ExpressionKind::Literal;
    std::size_t place = 0; // byte offset in the statement, for messages
    Value literal;
    std::string qualifier;
    std::string name;
    Operator op = Operator::None;
    bool negated = false; // Like, Between, InList, InQuery, IsNull: with NOT
    bool star = false;
    std::vector<ExpressionPtr> operands;
    QueryPtr query;
    int depth = 1; // of the tree below, sub-queries included; the parser bounds it
};

enum class JoinKind { Inner, Left, Right };

// A table, a derived table or a join in FROM.
struct Source
{
    std::string table; // a table when not empty
    std::string alias; // "" when none was given
    QueryPtr query;    // a derived table when set
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<Source> left, right; // a join when set
    ExpressionPtr on;
    std::size_t place = 0;
};

struct SelectItem
{
    ExpressionPtr expression; // null for `*` and `T.*`
    std::string qualifier;    // of `T.*`
    std::string alias;
    std::size_t place = 0;
};

struct Select
{
    bool distinct = false;
    bool distinctRow = false;
    std::optional<std::int64_t> top;
    bool topPercent = false;
    std::vector<SelectItem> items;
    std::vector<Source> from; // comma list; empty for SELECT without FROM
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
};

struct OrderItem
{
    ExpressionPtr expression;
    bool descending = false;
};

// One or more selects joined by UNION.
struct Query
{
    std::vector<Select> parts;
    std::vector<bool> unionAll; // one for each part but the first
    std::vector<OrderItem> orderBy;
    int depth = 0; // of the deepest expression in it
};

struct Insert
{
    std::string table;
    std::vector<std::string> columns; // empty: all, or by name for a query
    std::vector<ExpressionPtr> values;
    QueryPtr query; // instead of values
    std::size_t place = 0;
};

struct Assignment
{
    std::string qualifier;
    std::string name;
    ExpressionPtr value;
    std::size_t place = 0;
};

struct Update
{
    std::vector<Source> sources;
    std::vector<Assignment> assignments;
    ExpressionPtr where;
};

struct Delete
{
    std::string target; // of `DELETE T.* FROM`; "" for `DELETE * FROM` and `DELETE FROM`
    std::vector<Source> sources;
    ExpressionPtr where;
    std::size_t place = 0;
};

struct CreateTable
{
    TableDef definition;
};

struct DropTable
{
    std::string table;
};

struct AddColumn
{
    std::string table;
    Field field;
    std::optional<Index> index; // from a constraint on the column
};

struct DropColumn
{
    std::string table;
    std::string column;
};

struct CreateIndex
{
    std::string table;
    Index index;
};

struct DropIndex
{
    std::string table;
    std::string index;
};

using Statement = std::variant<Query, Insert, Update, Delete, CreateTable, DropTable, AddColumn,
                               DropColumn, CreateIndex, DropIndex>;

} // namespace jet::sql
