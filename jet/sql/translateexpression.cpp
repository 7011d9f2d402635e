#include "jet/sql/translator.h"

#include "jet/error.h"

#include <algorithm>
#include <limits>

namespace jet::sql {

namespace {

// No statement of any use comes near; aliases that repeat each other would.
constexpr std::size_t kMaxText = 1'000'000;
// Expressions being translated one inside the other, through sub-queries and aliases.
constexpr int kMaxOpen = 1000;

Fragment integerLiteral(std::int64_t value)
{
    const bool fits = value >= std::numeric_limits<std::int32_t>::min()
                      && value <= std::numeric_limits<std::int32_t>::max();
    return {std::to_string(value), value < 0 ? Binding::Sign : Binding::Atom,
            fits ? FieldType::Long : FieldType::Double, false, ColumnOf::Nothing};
}

Fragment realFragment(double value, FieldType type)
{
    return {realLiteral(value), value < 0 ? Binding::Sign : Binding::Atom, type, false,
            ColumnOf::Nothing};
}

} // namespace

// Translates, and takes what is a GROUP BY expression off the columns used loosely.
Fragment Translator::expression(const Expression& expression, Scope& scope)
{
    const std::size_t looseBefore = scope.loose.size();
    if (++m_open > kMaxOpen)
        throw Error(Fault::Limit, "слишком сложное выражение в запросе");
    Fragment result = ungrouped(expression, scope);
    --m_open;
    if (result.sql.size() > kMaxText)
        throw Error(Fault::Limit, "слишком длинное выражение в запросе");
    if (scope.loose.size() > looseBefore
        && std::ranges::find(scope.groups, result.sql) != scope.groups.end())
        scope.loose.resize(looseBefore);
    return result;
}

Fragment Translator::ungrouped(const Expression& expression, Scope& scope)
{
    switch (expression.kind) {
    case ExpressionKind::Literal:
        return literal(expression);
    case ExpressionKind::Column:
        return scope.column(expression.qualifier, expression.name);
    case ExpressionKind::Operation:
        return operation(expression, scope);
    case ExpressionKind::Call:
        return call(expression, scope);
    case ExpressionKind::Like:
        return like(expression, scope);
    case ExpressionKind::Between:
        return between(expression, scope);
    case ExpressionKind::InList:
        return inList(expression, scope);
    case ExpressionKind::InQuery:
        return inQuery(expression, scope);
    case ExpressionKind::Exists:
        return exists(expression, scope);
    case ExpressionKind::IsNull:
        return isNull(expression, scope);
    case ExpressionKind::Scalar:
        return scalar(expression, scope);
    }
    throw Error(Fault::Syntax, "непонятное выражение в запросе");
}

Fragment Translator::value(const Expression& each, Scope& scope)
{
    return asValue(expression(each, scope));
}

// A condition on single rows, where aggregates have no meaning.
Fragment Translator::rowCondition(const Expression& each, Scope& scope)
{
    const bool allowed = std::exchange(scope.aggregateAllowed, false);
    Fragment result = expression(each, scope);
    scope.aggregateAllowed = allowed;
    return result;
}

Fragment Translator::literal(const Expression& expression) const
{
    const Value& value = expression.literal;
    if (const auto* integer = value.as<std::int64_t>())
        return integerLiteral(*integer);
    if (const auto* real = value.as<double>())
        return realFragment(*real, FieldType::Double);
    if (const auto* date = value.as<DateTime>())
        return realFragment(date->days, FieldType::Date);
    if (const auto* flag = value.as<bool>()) {
        Fragment result = integerLiteral(*flag ? -1 : 0);
        result.type = FieldType::Boolean;
        return result;
    }
    if (const auto* text = value.as<std::string>())
        return {quotedText(*text), Binding::Atom, FieldType::Text, false, ColumnOf::Nothing};
    return {"NULL", Binding::Atom, std::nullopt, false, ColumnOf::Nothing};
}

Fragment Translator::isNull(const Expression& expression, Scope& scope)
{
    const Fragment operand = value(*expression.operands[0], scope);
    return conditionOf(bracketed(operand, Binding::Sum)
                           + (expression.negated ? " IS NOT NULL" : " IS NULL"),
                       Binding::Comparison);
}

Fragment Translator::exists(const Expression& expression, Scope& scope)
{
    return conditionOf("EXISTS (" + queryText(*expression.query, &scope).sql + ')', Binding::Atom);
}

Fragment Translator::scalar(const Expression& expression, Scope& scope)
{
    const QueryText query = queryText(*expression.query, &scope);
    if (query.columns.size() != 1)
        throw Error(Fault::Syntax, "подзапрос должен давать одно поле");
    return {'(' + query.sql + ')', Binding::Atom, query.columns[0].type, false, ColumnOf::Nothing};
}

Fragment Translator::inQuery(const Expression& expression, Scope& scope)
{
    const Fragment left = collated(value(*expression.operands[0], scope));
    const QueryText query = queryText(*expression.query, &scope);
    if (query.columns.size() != 1)
        throw Error(Fault::Syntax, "подзапрос после IN должен давать одно поле");
    return conditionOf(bracketed(left, Binding::Sum) + (expression.negated ? " NOT IN (" : " IN (")
                           + query.sql + ')',
                       Binding::Comparison);
}

} // namespace jet::sql
