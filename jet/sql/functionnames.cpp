#include "jet/sql/functionnames.h"

#include "jet/text.h"

#include <algorithm>

namespace jet::sql {

namespace {

constexpr FunctionName fixed(std::string_view name, int minimum, int maximum, FieldType type)
{
    return {name, minimum, maximum, ResultRule::Fixed, type, false};
}

// Takes texts, gives a value of the type.
constexpr FunctionName ofText(std::string_view name, int minimum, int maximum,
                              FieldType type = FieldType::Text)
{
    return {name, minimum, maximum, ResultRule::Fixed, type, true};
}

constexpr FunctionName like(std::string_view name, ResultRule rule, int maximum = 1)
{
    return {name, 1, maximum, rule, FieldType::Double, false};
}

using enum FieldType;

constexpr FunctionName kFunctions[] = {
    ofText("val", 1, 1, Double),
    ofText("trim", 1, 1),
    ofText("ltrim", 1, 1),
    ofText("rtrim", 1, 1),
    ofText("len", 1, 1, Long),
    ofText("left", 2, 2),
    ofText("right", 2, 2),
    ofText("mid", 2, 3),
    ofText("instr", 2, 4, Long),
    ofText("ucase", 1, 1),
    ofText("lcase", 1, 1),
    ofText("replace", 3, 5),
    fixed("space", 1, 1, Text),
    ofText("string", 2, 2),
    fixed("chr", 1, 1, Text),
    ofText("asc", 1, 1, Long),
    ofText("strcomp", 2, 3, Integer),
    fixed("str", 1, 1, Text),
    ofText("cstr", 1, 1),
    fixed("format", 1, 2, Text),

    fixed("year", 1, 1, Integer),
    fixed("month", 1, 1, Integer),
    fixed("day", 1, 1, Integer),
    fixed("hour", 1, 1, Integer),
    fixed("minute", 1, 1, Integer),
    fixed("second", 1, 1, Integer),
    fixed("weekday", 1, 2, Integer),
    fixed("date", 0, 0, Date),
    fixed("now", 0, 0, Date),
    fixed("time", 0, 0, Date),
    fixed("dateserial", 3, 3, Date),
    fixed("timeserial", 3, 3, Date),
    fixed("dateadd", 3, 3, Date),
    fixed("datediff", 3, 5, Long),
    fixed("datepart", 2, 4, Integer),
    fixed("cdate", 1, 1, Date),
    fixed("datevalue", 1, 1, Date),
    fixed("timevalue", 1, 1, Date),
    fixed("isdate", 1, 1, Boolean),

    fixed("cint", 1, 1, Integer),
    fixed("clng", 1, 1, Long),
    fixed("cdbl", 1, 1, Double),
    fixed("csng", 1, 1, Single),
    fixed("cbool", 1, 1, Boolean),
    fixed("cbyte", 1, 1, Byte),
    fixed("ccur", 1, 1, Currency),
    fixed("isnumeric", 1, 1, Boolean),
    like("abs", ResultRule::Numeric),
    like("int", ResultRule::Argument),
    like("fix", ResultRule::Argument),
    like("round", ResultRule::Numeric, 2),
    fixed("sgn", 1, 1, Integer),
    fixed("sqr", 1, 1, Double),
    fixed("exp", 1, 1, Double),
    fixed("log", 1, 1, Double),
    fixed("sin", 1, 1, Double),
    fixed("cos", 1, 1, Double),
    fixed("tan", 1, 1, Double),
    fixed("atn", 1, 1, Double),
    fixed("rnd", 0, 1, Single),
};

constexpr FunctionName kOperatorFunctions[] = {
    ofText("concat", 2, 100),        fixed("add", 2, 2, Double),
    fixed("divide", 2, 2, Double),   fixed("intdiv", 2, 2, Long),
    fixed("mod", 2, 2, Long),        fixed("power", 2, 2, Double),
    ofText("like", 2, 2, Boolean),   fixed("datetext", 1, 1, Text),
    fixed("formatdate", 1, 2, Text), fixed("comparednumber", 1, 1, Double),
};

constexpr FunctionName kAggregates[] = {
    like("sum", ResultRule::Numeric),   fixed("avg", 1, 1, Double),
    like("min", ResultRule::Argument),  like("max", ResultRule::Argument),
    fixed("count", 1, 1, Long),         like("first", ResultRule::Argument),
    like("last", ResultRule::Argument), fixed("stdev", 1, 1, Double),
    fixed("stdevp", 1, 1, Double),      fixed("var", 1, 1, Double),
    fixed("varp", 1, 1, Double),
};

const FunctionName* find(std::span<const FunctionName> list, std::string_view name)
{
    const auto found = std::ranges::find_if(
        list, [&](const FunctionName& function) { return sameName(function.name, name); });
    return found == list.end() ? nullptr : &*found;
}

} // namespace

std::span<const FunctionName> functions()
{
    return kFunctions;
}

std::span<const FunctionName> operatorFunctions()
{
    return kOperatorFunctions;
}

std::span<const FunctionName> aggregateFunctions()
{
    return kAggregates;
}

const FunctionName* findFunction(std::string_view name)
{
    return find(kFunctions, name);
}

const FunctionName* findAggregate(std::string_view name)
{
    return find(kAggregates, name);
}

} // namespace jet::sql
