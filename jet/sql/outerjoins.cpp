#include "jet/sql/outerjoins.h"

#include "jet/text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace jet::sql {

namespace {

void simplify(Query& query);

bool isColumnOf(const Expression& expression, std::string_view source)
{
    return expression.kind == ExpressionKind::Column && !expression.qualifier.empty()
           && sameName(expression.qualifier, source);
}

bool isComparison(Operator op)
{
    switch (op) {
    case Operator::Equal:
    case Operator::NotEqual:
    case Operator::Less:
    case Operator::LessOrEqual:
    case Operator::Greater:
    case Operator::GreaterOrEqual:
        return true;
    default:
        return false;
    }
}

// True when a condition cannot hold on a row where all columns of the source are NULL.
// Comparisons with NULL give NULL, negated or not. Only columns that name their source and
// stand there bare are looked at; a function might turn NULL into something.
bool refusesNulls(const Expression& condition, std::string_view source)
{
    const auto any = [&](auto from, auto to) {
        return std::any_of(
            from, to, [&](const ExpressionPtr& operand) { return isColumnOf(*operand, source); });
    };
    const auto& operands = condition.operands;
    switch (condition.kind) {
    case ExpressionKind::Operation:
        if (condition.op == Operator::And)
            return refusesNulls(*operands[0], source) || refusesNulls(*operands[1], source);
        if (condition.op == Operator::Or)
            return refusesNulls(*operands[0], source) && refusesNulls(*operands[1], source);
        return isComparison(condition.op) && any(operands.begin(), operands.end());
    case ExpressionKind::Like:
    case ExpressionKind::Between:
    case ExpressionKind::InList:
        return any(operands.begin(), operands.begin() + 1);
    case ExpressionKind::IsNull:
        return condition.negated && any(operands.begin(), operands.end());
    default:
        return false;
    }
}

// True when a condition refuses the rows that have no partner on this side of a join.
bool refusesMissing(const Expression& condition, const Source& side)
{
    if (side.left)
        return refusesMissing(condition, *side.left) || refusesMissing(condition, *side.right);
    return refusesNulls(condition, side.alias.empty() ? side.table : side.alias);
}

void simplify(Source& source, const Expression* where)
{
    if (source.query)
        simplify(*source.query);
    if (!source.left)
        return;
    if (where && source.join == JoinKind::Left && refusesMissing(*where, *source.right))
        source.join = JoinKind::Inner;
    else if (where && source.join == JoinKind::Right && refusesMissing(*where, *source.left))
        source.join = JoinKind::Inner;
    simplify(*source.left, where);
    simplify(*source.right, where);
}

void simplify(Expression& expression)
{
    if (expression.query)
        simplify(*expression.query);
    for (const ExpressionPtr& operand : expression.operands)
        simplify(*operand);
}

void simplify(Query& query)
{
    for (Select& select : query.parts) {
        for (Source& source : select.from)
            simplify(source, select.where.get());
        if (select.where)
            simplify(*select.where);
        for (SelectItem& item : select.items) {
            if (item.expression)
                simplify(*item.expression);
        }
    }
}

} // namespace

void simplifyOuterJoins(Statement& statement)
{
    if (auto* query = std::get_if<Query>(&statement))
        simplify(*query);
    else if (auto* insert = std::get_if<Insert>(&statement); insert && insert->query)
        simplify(*insert->query);
}

} // namespace jet::sql
