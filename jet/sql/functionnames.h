#pragma once

#include "jet/tabledef.h"

#include <optional>
#include <span>
#include <string_view>

namespace jet::sql {

// How the type of a call follows from its arguments.
enum class ResultRule {
    Fixed,   // always FunctionName::type
    First,   // the type of the first argument
    Numeric, // the first argument's when it is a number, Double otherwise
    Unknown,
};

// A function that the SQLite text calls under the name `jet_` + name. NULL arguments give
// NULL unless the remark says otherwise. Arguments called "date" are REAL days or TEXT that
// is read as CDate reads it; "text" arguments that are numbers are written as CStr does
// (dates are turned into text by the translator through datetext). Conditions are -1/0.
struct FunctionName
{
    std::string_view name; // lower case, as in Jet SQL
    int minimum, maximum;  // number of arguments; maximum -1: any number
    ResultRule rule = ResultRule::Fixed;
    FieldType type = FieldType::Text;
};

// Functions that Jet SQL texts may call and that have an implementation of the same name.
//   format(number or text, pattern)
//   dateadd(interval, number, date)   datediff(interval, date, date[, first day[, first week]])
//   datepart(interval, date[, first day[, first week]])   weekday(date[, first day])
//   instr([start,] text, sought[, compare])   replace(text, find, with[, start[, count]])
//   strcomp(text, text[, compare])    mid(text, start[, length])   round(number[, digits])
//   str puts a space before numbers not negative; val reads the number that a text begins with
//   isnumeric and isdate give 0 for NULL; rnd takes an optional argument
std::span<const FunctionName> functions();

// Functions that only the translator writes, standing for operators and aggregates:
//   concat(a, b, ...)  `&`: NULL counts as "", NULL only when all are; 2 to 100 arguments
//   add(a, b)          `+` when a side's type is unknown: text + text joins, else sum
//   divide(a, b)       `/`: floating; a zero divisor is an error
//   intdiv(a, b)       `\`: both rounded half to even first; a zero divisor is an error
//   mod(a, b)          likewise, sign of the dividend
//   power(a, b)        `^`
//   like(text, pattern)   -1/0 by Jet's wildcards * ? # [a-z] [!a-z], without case
//   datetext(date)     as CStr writes a date: dd.MM.yyyy[ H:mm:ss], the time alone on day 0
//   formatdate(date, pattern)   Format of a value known to be a date
// and the aggregates first, last, stdev, stdevp, var, varp with one argument each.
std::span<const FunctionName> operatorFunctions();
std::span<const FunctionName> aggregateFunctions();

// Null when there is none; case-insensitive, without the prefix.
const FunctionName* findFunction(std::string_view name);

} // namespace jet::sql
