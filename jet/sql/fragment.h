#pragma once

#include "jet/sql/types.h"

#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

// How tight the outermost operator of a piece of SQLite text binds, loosest first.
enum class Binding { Or, And, Not, Comparison, Sum, Product, Join, Collation, Sign, Atom };

// Whether a piece is a column, and of what: SQLite takes the collation of a comparison from
// the column on its left, and only columns of tables are known to be declared COLLATE JET.
enum class ColumnOf { Nothing, Table, Query };

// An expression translated to SQLite.
struct Fragment
{
    std::string sql;
    Binding binding = Binding::Atom;
    Type type;
    bool condition = false; // gives 1/0/NULL, where Jet has -1/0/NULL
    ColumnOf column = ColumnOf::Nothing;
};

// "name" with quotes doubled, 'text' with quotes doubled, a REAL that is read back exactly.
std::string quotedName(std::string_view name);
std::string quotedText(std::string_view text);
std::string realLiteral(double value);

// The text, in brackets when it binds looser than asked.
std::string bracketed(const Fragment& fragment, Binding least);

// As Jet's value: a condition becomes -1/0.
Fragment asValue(Fragment fragment);
// As 1/0/NULL, to be compared with another one.
std::string asTruth(const Fragment& fragment);
// A value with COLLATE JET where it may be text and is no column of a table.
Fragment collated(Fragment fragment);

Fragment conditionOf(std::string sql, Binding binding);
// jet_name(arguments); arguments are values.
Fragment callOf(std::string_view name, const std::vector<Fragment>& arguments, Type type);

} // namespace jet::sql
