#include "jet/sql/comparable.h"
#include "jet/sql/translator.h"

#include "jet/error.h"

#include <algorithm>
#include <utility>

namespace jet::sql {

namespace {

constexpr std::size_t kMaxArguments = 100; // of concat; SQLite takes 127

std::string comparisonSign(Operator op)
{
    switch (op) {
    case Operator::Equal:
        return " = ";
    case Operator::NotEqual:
        return " <> ";
    case Operator::Less:
        return " < ";
    case Operator::LessOrEqual:
        return " <= ";
    case Operator::Greater:
        return " > ";
    default:
        return " >= ";
    }
}

bool isComparison(Operator op)
{
    return op >= Operator::Equal && op <= Operator::GreaterOrEqual;
}

// A value that is to be calculated with: text must be a number.
Fragment asNumber(const Fragment& fragment)
{
    return isText(fragment.type) ? callOf("cdbl", {fragment}, FieldType::Double) : fragment;
}

Fragment asTextOperand(const Fragment& fragment)
{
    return isDate(fragment.type) ? callOf("datetext", {fragment}, FieldType::Text) : fragment;
}

// Both operands in a row of the same binding, left to right.
Fragment infix(const Fragment& left, const char* sign, const Fragment& right, Binding binding,
               Type type)
{
    const auto tighter = static_cast<Binding>(static_cast<int>(binding) + 1);
    return {bracketed(left, binding) + sign + bracketed(right, tighter), binding, type, false,
            ColumnOf::Nothing};
}

} // namespace

void makeComparable(Fragment& left, std::span<Fragment> others)
{
    const auto fit = [](Fragment& text, const Fragment& other) {
        if (!isText(text.type))
            return;
        if (isDate(other.type))
            text = callOf("cdate", {text}, FieldType::Date);
        else if (isNumber(other.type) && text.column != ColumnOf::Table)
            text = callOf("comparednumber", {text}, FieldType::Double);
    };
    bool declared = left.column == ColumnOf::Table && isText(left.type);
    for (Fragment& other : others) {
        fit(other, left);
        fit(left, other);
        declared = declared
                   || (others.size() == 1 && left.column == ColumnOf::Nothing
                       && other.column == ColumnOf::Table && isText(other.type));
    }
    const bool mayBeText =
        (!left.type || isText(left.type)) && std::ranges::any_of(others, [](const Fragment& other) {
            return !other.type || isText(other.type);
        });
    if (mayBeText && !declared) {
        left.sql = bracketed(left, Binding::Sign) + " COLLATE JET";
        left.binding = Binding::Collation;
    }
}

Fragment Translator::operation(const Expression& expression, Scope& scope)
{
    if (isComparison(expression.op))
        return comparison(expression, scope);
    switch (expression.op) {
    case Operator::Not:
        return negation(expression, scope);
    case Operator::Or:
    case Operator::And:
    case Operator::Xor:
    case Operator::Eqv:
    case Operator::Imp:
        return logical(expression, scope);
    case Operator::Concatenate:
        return concatenation(expression, scope);
    case Operator::Add:
        return addition(expression, scope);
    case Operator::Negate:
    case Operator::Plus:
        return sign(expression, scope);
    default:
        return arithmetic(expression, scope);
    }
}

Fragment Translator::logical(const Expression& each, Scope& scope)
{
    const Fragment left = expression(*each.operands[0], scope);
    const Fragment right = expression(*each.operands[1], scope);
    const auto joined = [&](const char* sign, Binding binding) {
        const Fragment text = infix(left, sign, right, binding, FieldType::Boolean);
        return conditionOf(text.sql, binding);
    };
    switch (each.op) {
    case Operator::Or:
        return joined(" OR ", Binding::Or);
    case Operator::And:
        return joined(" AND ", Binding::And);
    case Operator::Xor:
        return conditionOf(asTruth(left) + " <> " + asTruth(right), Binding::Comparison);
    case Operator::Eqv:
        return conditionOf(asTruth(left) + " = " + asTruth(right), Binding::Comparison);
    default: // Imp
        return conditionOf("NOT " + asTruth(left) + " OR " + asTruth(right), Binding::Or);
    }
}

Fragment Translator::negation(const Expression& each, Scope& scope)
{
    const Fragment operand = expression(*each.operands[0], scope);
    return conditionOf("NOT " + bracketed(operand, Binding::Not), Binding::Not);
}

Fragment Translator::comparison(const Expression& expression, Scope& scope)
{
    Fragment left = value(*expression.operands[0], scope);
    Fragment right = value(*expression.operands[1], scope);
    makeComparable(left, {&right, 1});
    return conditionOf(bracketed(left, Binding::Sum) + comparisonSign(expression.op)
                           + bracketed(right, Binding::Sum),
                       Binding::Comparison);
}

Fragment Translator::like(const Expression& expression, Scope& scope)
{
    const Fragment text = asTextOperand(value(*expression.operands[0], scope));
    const Fragment pattern = asTextOperand(value(*expression.operands[1], scope));
    const Fragment result = callOf("like", {text, pattern}, FieldType::Boolean);
    return expression.negated ? conditionOf("NOT " + result.sql, Binding::Not) : result;
}

Fragment Translator::between(const Expression& expression, Scope& scope)
{
    Fragment operand = value(*expression.operands[0], scope);
    Fragment limits[] = {value(*expression.operands[1], scope),
                         value(*expression.operands[2], scope)};
    makeComparable(operand, limits);
    return conditionOf(
        bracketed(operand, Binding::Sum) + (expression.negated ? " NOT BETWEEN " : " BETWEEN ")
            + bracketed(limits[0], Binding::Sum) + " AND " + bracketed(limits[1], Binding::Sum),
        Binding::Comparison);
}

Fragment Translator::inList(const Expression& expression, Scope& scope)
{
    Fragment left = value(*expression.operands[0], scope);
    std::vector<Fragment> members;
    for (std::size_t i = 1; i < expression.operands.size(); ++i)
        members.push_back(value(*expression.operands[i], scope));
    makeComparable(left, members);
    // Unlike in a comparison, no member's collation counts, not even that of the only one.
    if (left.binding != Binding::Collation)
        left = collated(std::move(left));
    std::string sql = bracketed(left, Binding::Sum) + (expression.negated ? " NOT IN (" : " IN (");
    for (const Fragment& member : members)
        sql += (&member == members.data() ? "" : ", ") + member.sql;
    return conditionOf(sql + ')', Binding::Comparison);
}

// `a & b & c` becomes one call, so that long texts nest no deeper than short ones.
Fragment Translator::concatenation(const Expression& expression, Scope& scope)
{
    std::vector<const Expression*> parts;
    const Expression* left = &expression;
    for (; left->kind == ExpressionKind::Operation && left->op == Operator::Concatenate;
         left = left->operands[0].get())
        parts.push_back(left->operands[1].get());
    parts.push_back(left);
    std::vector<Fragment> arguments;
    std::ranges::reverse(parts);
    for (const Expression* part : parts) {
        if (arguments.size() == kMaxArguments)
            arguments = {callOf("concat", arguments, FieldType::Text)};
        arguments.push_back(asTextOperand(value(*part, scope)));
    }
    return callOf("concat", arguments, FieldType::Text);
}

Fragment Translator::addition(const Expression& expression, Scope& scope)
{
    const Fragment left = value(*expression.operands[0], scope);
    const Fragment right = value(*expression.operands[1], scope);
    if (isText(left.type) && isText(right.type))
        return infix(left, " || ", right, Binding::Join, unified(left.type, right.type));
    const bool leftKnown = left.type && !isText(left.type);
    const bool rightKnown = right.type && !isText(right.type);
    if (leftKnown && rightKnown)
        return infix(left, " + ", right, Binding::Sum, additionType(left.type, right.type));
    return callOf("add", {left, right}, std::nullopt);
}

Fragment Translator::arithmetic(const Expression& expression, Scope& scope)
{
    const Fragment left = asNumber(value(*expression.operands[0], scope));
    const Fragment right = asNumber(value(*expression.operands[1], scope));
    switch (expression.op) {
    case Operator::Subtract:
        return infix(left, " - ", right, Binding::Sum, subtractionType(left.type, right.type));
    case Operator::Multiply:
        return infix(left, " * ", right, Binding::Product, productType(left.type, right.type));
    case Operator::Divide:
        return callOf("divide", {left, right}, FieldType::Double);
    case Operator::IntegerDivide:
        return callOf("intdiv", {left, right}, FieldType::Long);
    case Operator::Modulo:
        return callOf("mod", {left, right}, FieldType::Long);
    case Operator::Power:
        return callOf("power", {left, right}, FieldType::Double);
    default:
        throw Error(Fault::Syntax, "непонятное действие в запросе");
    }
}

Fragment Translator::sign(const Expression& expression, Scope& scope)
{
    Fragment operand = asNumber(value(*expression.operands[0], scope));
    if (expression.op == Operator::Plus)
        return operand;
    // Two minus signs would begin a comment.
    const bool minus = operand.sql.front() == '-';
    return {'-' + (minus ? '(' + operand.sql + ')' : bracketed(operand, Binding::Sign)),
            Binding::Sign, negatedType(operand.type), false, ColumnOf::Nothing};
}

} // namespace jet::sql
