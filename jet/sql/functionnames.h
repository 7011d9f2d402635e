#pragma once

#include "jet/tabledef.h"

#include <optional>
#include <span>
#include <string_view>

namespace jet::sql {

// How the type of a call follows from its arguments.
enum class ResultRule {
    Fixed,    // always FunctionName::type
    Argument, // the type of the first argument
    Numeric,  // the first argument's when it is a number, Double otherwise
};

// A function that the SQLite text calls under the name `jet_` + name. NULL arguments give
// NULL unless the remark says otherwise. Arguments called "date" are REAL days, or TEXT that
// is read as CDate reads it. Arguments called "text" may be numbers, which are written as
// CStr does; a value known to be a date is turned into text by the translator (`textual`).
struct FunctionName
{
    std::string_view name; // lower case, as in Jet SQL
    int minimum = 1;       // number of arguments
    int maximum = 1;       // -1: any number
    ResultRule rule = ResultRule::Fixed;
    FieldType type = FieldType::Text;
    bool textual = false; // arguments are texts
};

// Functions that Jet SQL texts may call and that have an implementation of the same name.
//   format(number or text[, pattern])
//   dateadd(interval, number, date)   datediff(interval, date, date[, first day[, first week]])
//   datepart(interval, date[, first day[, first week]])   weekday(date[, first day])
//   instr([start,] text, sought[, compare])   replace(text, find, with[, start[, count]])
//   strcomp(text, text[, compare])    mid(text, start[, length])   round(number[, digits])
//   string(count, text)   str puts a space before numbers not negative
//   val reads the number that a text begins with, blanks left out, 0 if none
//   isnumeric and isdate give 0 for NULL; cbool and they give -1/0; rnd has an optional argument
// IIf, IsNull, Nz, Switch and Choose need none: they become CASE, IS NULL and coalesce.
std::span<const FunctionName> functions();

// Functions that only the translator writes, standing for operators.
//   concat(a, b, ...)  `&`: NULL counts as "", NULL only when all are; 2 to 100 arguments
//   add(a, b)          `+` when a side's type is unknown: text + text joins, else the sum
//   divide(a, b)       `/`: floating; a zero divisor is an error
//   intdiv(a, b)       `\`: both rounded half to even first; a zero divisor is an error
//   mod(a, b)          likewise, sign of the dividend
//   power(a, b)        `^`
//   like(text, pattern)   -1/0 by Jet's wildcards * ? # [a-z] [!a-z], without case
//   datetext(date)     as CStr writes a date: dd.MM.yyyy[ H:mm:ss], the time alone on day 0
//   formatdate(date[, pattern])   Format of a value known to be a date
std::span<const FunctionName> operatorFunctions();

// Aggregates by Jet's names. sum, avg, min, max and count are SQLite's own; the others are
// called with the prefix: jet_first, jet_last, jet_stdev, jet_stdevp, jet_var, jet_varp.
std::span<const FunctionName> aggregateFunctions();

// Functions and aggregates that Jet SQL texts may call; null when there is none.
// Case-insensitive, without the prefix.
const FunctionName* findFunction(std::string_view name);
const FunctionName* findAggregate(std::string_view name);

} // namespace jet::sql
