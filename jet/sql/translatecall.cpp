#include "jet/sql/functionnames.h"
#include "jet/sql/translator.h"

#include "jet/error.h"
#include "jet/text.h"

#include <utility>

namespace jet::sql {

namespace {

bool isCalled(const Expression& expression, std::string_view name)
{
    return sameName(expression.name, name);
}

void checkCount(const Expression& call, int minimum, int maximum)
{
    const int count = static_cast<int>(call.operands.size());
    if (call.star || count < minimum || (maximum >= 0 && count > maximum))
        throw Error(Fault::Syntax, "неверное число аргументов функции «" + call.name + "»");
}

Type resultType(const FunctionName& function, const std::vector<Fragment>& arguments)
{
    const Type first = arguments.empty() ? Type() : arguments.front().type;
    switch (function.rule) {
    case ResultRule::Fixed:
        return function.type;
    case ResultRule::Numeric:
        return numericType(first);
    case ResultRule::Argument:
        return first;
    }
    return function.type;
}

bool isSqliteAggregate(std::string_view name)
{
    return name == "sum" || name == "avg" || name == "min" || name == "max" || name == "count";
}

} // namespace

Fragment Translator::call(const Expression& expression, Scope& scope)
{
    for (const std::string_view name : {"iif", "isnull", "nz", "switch", "choose"})
        if (isCalled(expression, name))
            return special(expression, scope);
    return findAggregate(expression.name) ? aggregate(expression, scope)
                                          : function(expression, scope);
}

Fragment Translator::function(const Expression& expression, Scope& scope)
{
    const FunctionName* known = findFunction(expression.name);
    if (!known)
        throw Error(Fault::UnknownName, "неизвестная функция «" + expression.name + "»");
    checkCount(expression, known->minimum, known->maximum);
    std::vector<Fragment> arguments;
    for (const ExpressionPtr& operand : expression.operands) {
        Fragment argument = value(*operand, scope);
        if (known->textual && isDate(argument.type))
            argument = callOf("datetext", {argument}, FieldType::Text);
        arguments.push_back(std::move(argument));
    }
    const bool ofDate = !arguments.empty() && isDate(arguments.front().type);
    if (ofDate && known->name == "format")
        return callOf("formatdate", arguments, FieldType::Text);
    if (ofDate && known->name == "isdate")
        return conditionOf(bracketed(arguments[0], Binding::Sum) + " IS NOT NULL",
                           Binding::Comparison);
    return callOf(known->name, arguments, resultType(*known, arguments));
}

Fragment Translator::aggregate(const Expression& expression, Scope& scope)
{
    const FunctionName& known = *findAggregate(expression.name);
    if (!scope.aggregateAllowed)
        throw Error(Fault::Syntax,
                    "функция «" + expression.name + "» стоит там, где итогов быть не может");
    scope.aggregated = true;
    if (expression.star && known.name == "count")
        return {"count(*)", Binding::Atom, FieldType::Long, false, ColumnOf::Nothing};
    checkCount(expression, 1, 1);
    const std::size_t looseBefore = scope.loose.size();
    scope.aggregateAllowed = false;
    Fragment argument = value(*expression.operands[0], scope);
    scope.aggregateAllowed = true;
    scope.loose.resize(looseBefore);
    const bool ordered = known.name == "min" || known.name == "max";
    const Type type = known.name == "sum" ? sumType(argument.type) : resultType(known, {argument});
    if (ordered)
        argument = collated(std::move(argument));
    Fragment result = callOf(known.name, {argument}, type);
    if (isSqliteAggregate(known.name))
        result.sql = std::string(known.name) + '(' + argument.sql + ')';
    return result;
}

Fragment Translator::special(const Expression& each, Scope& scope)
{
    if (isCalled(each, "isnull")) {
        checkCount(each, 1, 1);
        return conditionOf(bracketed(value(*each.operands[0], scope), Binding::Sum) + " IS NULL",
                           Binding::Comparison);
    }
    if (isCalled(each, "nz"))
        return nullReplaced(each, scope);
    return isCalled(each, "choose") ? choice(each, scope) : conditional(each, scope);
}

// IIf(c, a, b) and Switch(c1, a1, c2, a2, ...).
Fragment Translator::conditional(const Expression& each, Scope& scope)
{
    const bool iif = isCalled(each, "iif");
    checkCount(each, iif ? 3 : 2, iif ? 3 : -1);
    const std::size_t count = each.operands.size();
    if (!iif && count % 2 != 0)
        throw Error(Fault::Syntax, "неверное число аргументов функции «" + each.name + "»");
    std::string sql = "CASE";
    Type type;
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        const Fragment condition = expression(*each.operands[i], scope);
        const Fragment result = value(*each.operands[i + 1], scope);
        sql += " WHEN " + condition.sql + " THEN " + result.sql;
        type = i == 0 ? result.type : unified(type, result.type);
    }
    if (iif) {
        const Fragment otherwise = value(*each.operands[2], scope);
        sql += " ELSE " + otherwise.sql;
        type = unified(type, otherwise.type);
    }
    return {sql + " END", Binding::Atom, type, false, ColumnOf::Nothing};
}

// Choose(n, a1, a2, ...)
Fragment Translator::choice(const Expression& each, Scope& scope)
{
    checkCount(each, 2, -1);
    std::string sql = "CASE jet_fix(" + value(*each.operands[0], scope).sql + ')';
    Type type;
    for (std::size_t i = 1; i < each.operands.size(); ++i) {
        const Fragment result = value(*each.operands[i], scope);
        sql += " WHEN " + std::to_string(i) + " THEN " + result.sql;
        type = i == 1 ? result.type : unified(type, result.type);
    }
    return {sql + " END", Binding::Atom, type, false, ColumnOf::Nothing};
}

// Nz(x[, y]); without y the empty value of x's type.
Fragment Translator::nullReplaced(const Expression& each, Scope& scope)
{
    checkCount(each, 1, 2);
    const Fragment operand = value(*each.operands[0], scope);
    Fragment other{isText(operand.type) ? "''" : "0", Binding::Atom, operand.type, false,
                   ColumnOf::Nothing};
    if (each.operands.size() == 2)
        other = value(*each.operands[1], scope);
    return {"coalesce(" + operand.sql + ", " + other.sql + ')', Binding::Atom,
            unified(operand.type, other.type), false, ColumnOf::Nothing};
}

} // namespace jet::sql
