#include "jet/sql/selecttranslator.h"

#include "jet/error.h"
#include "jet/sql/rowid.h"
#include "jet/text.h"

#include <algorithm>
#include <utility>

namespace jet::sql {

SelectTranslator::SelectTranslator(Translator& translator, const Select& select,
                                   const std::vector<OrderItem>& order, Scope* outer)
    : m_translator(translator)
    , m_select(select)
    , m_order(order)
    , m_scope(outer)
{}

QueryText SelectTranslator::run()
{
    m_from = m_translator.from(m_select.from, m_scope);
    if (m_select.where)
        m_where = m_translator.rowCondition(*m_select.where, m_scope).sql;
    m_scope.loose.clear();
    groupBy();
    for (const SelectItem& item : m_select.items)
        expand(item);
    m_scope.alias = [this](std::string_view name) { return aliased(name); };
    for (Output& output : m_outputs)
        translate(output);
    having();
    orderBy();
    checkGrouping();
    nameOutputs();
    if (m_groupBy.empty())
        m_groupBy = rowGroups();
    const bool ranked = m_select.top && (m_select.topPercent || !m_keys.empty());
    return {ranked ? rankedText() : plainText(), resultColumns()};
}

void SelectTranslator::groupBy()
{
    for (const ExpressionPtr& each : m_select.groupBy) {
        Fragment group = m_translator.rowCondition(*each, m_scope);
        m_scope.groups.push_back(group.sql);
        // SQLite takes a number for the position of a column.
        if (each->kind != ExpressionKind::Literal)
            m_groupBy += (m_groupBy.empty() ? "" : ", ") + collated(asValue(group)).sql;
    }
    m_scope.loose.clear();
}

void SelectTranslator::expand(const SelectItem& item)
{
    if (item.expression) {
        Output output;
        output.expression = item.expression.get();
        output.alias = item.alias;
        m_outputs.push_back(std::move(output));
        return;
    }
    if (!item.qualifier.empty()) {
        const ScopeSource* source = m_scope.find(item.qualifier);
        if (!source)
            throw Error(Fault::UnknownName, "в запросе нет таблицы «" + item.qualifier + "»");
        expandSource(*source);
        return;
    }
    if (m_scope.sources().empty())
        throw Error(Fault::Syntax, "знаку «*» не хватает таблицы после FROM");
    for (const ScopeSource& source : m_scope.sources())
        expandSource(source);
}

void SelectTranslator::expandSource(const ScopeSource& source)
{
    for (const ResultColumn& column : source.columns) {
        Output output;
        output.source = source.name;
        output.field = column.name;
        output.fragment = m_scope.use(source, column);
        output.loose = std::exchange(m_scope.loose, {});
        output.state = Output::State::Done;
        m_outputs.push_back(std::move(output));
    }
}

void SelectTranslator::translate(Output& output)
{
    if (output.state == Output::State::Done)
        return;
    if (output.state == Output::State::Open)
        throw Error(Fault::Syntax, "псевдоним «" + output.alias + "» ссылается сам на себя");
    output.state = Output::State::Open;
    auto loose = std::exchange(m_scope.loose, {});
    const bool allowed = std::exchange(m_scope.aggregateAllowed, true);
    const bool aggregated = std::exchange(m_scope.aggregated, false);
    output.fragment = m_translator.expression(*output.expression, m_scope);
    output.aggregated = m_scope.aggregated;
    m_scope.aggregated = aggregated || output.aggregated;
    m_scope.aggregateAllowed = allowed;
    output.loose = std::exchange(m_scope.loose, std::move(loose));
    describeColumn(output);
    output.state = Output::State::Done;
}

// Notes which column of which source an output is, if it is no more than that.
void SelectTranslator::describeColumn(Output& output) const
{
    if (output.expression->kind != ExpressionKind::Column)
        return;
    for (const ScopeSource& source : m_scope.sources())
        for (const ResultColumn& column : source.columns)
            if (output.fragment.sql == source.sqlName + '.' + quotedName(column.name)) {
                output.source = source.name;
                output.field = column.name;
            }
}

std::optional<Fragment> SelectTranslator::aliased(std::string_view name)
{
    for (Output& output : m_outputs) {
        if (output.alias.empty() || !sameName(output.alias, name))
            continue;
        translate(output);
        if (output.aggregated && !m_scope.aggregateAllowed)
            throw Error(Fault::Syntax, "итог «" + output.alias + "» стоит под другим итогом");
        m_scope.loose.insert(m_scope.loose.end(), output.loose.begin(), output.loose.end());
        return output.fragment;
    }
    return std::nullopt;
}

void SelectTranslator::having()
{
    m_scope.aggregateAllowed = true;
    if (m_select.having)
        m_having = m_translator.expression(*m_select.having, m_scope).sql;
}

void SelectTranslator::orderBy()
{
    for (const OrderItem& item : m_order)
        m_keys.push_back(
            {collated(asValue(orderExpression(*item.expression))).sql, item.descending});
}

Fragment SelectTranslator::orderExpression(const Expression& expression)
{
    if (const auto* position = expression.literal.as<std::int64_t>();
        position && expression.kind == ExpressionKind::Literal)
        return outputAt(*position);
    if (expression.kind == ExpressionKind::Column && expression.qualifier.empty())
        if (const Output* output = outputNamed(expression.name))
            return output->fragment;
    return m_translator.expression(expression, m_scope);
}

Fragment SelectTranslator::outputAt(std::int64_t position) const
{
    if (position < 1 || position > static_cast<std::int64_t>(m_outputs.size()))
        throw Error(Fault::Syntax, "в ORDER BY указан номер поля " + std::to_string(position)
                                       + ", а полей в запросе " + std::to_string(m_outputs.size()));
    return m_outputs[static_cast<std::size_t>(position - 1)].fragment;
}

// The one output that a bare name in ORDER BY can mean; null when there is none or several.
const SelectTranslator::Output* SelectTranslator::outputNamed(std::string_view name) const
{
    const Output* found = nullptr;
    for (const Output& output : m_outputs) {
        if (!sameName(output.alias.empty() ? output.field : output.alias, name))
            continue;
        if (found && found->fragment.sql != output.fragment.sql)
            return nullptr;
        found = &output;
    }
    return found;
}

void SelectTranslator::checkGrouping() const
{
    if (!m_scope.aggregated && m_select.groupBy.empty()) {
        if (m_select.having)
            throw Error(Fault::Syntax, "условие HAVING требует GROUP BY");
        return;
    }
    const auto check = [](const std::vector<Scope::Use>& loose) {
        if (!loose.empty())
            throw Error(Fault::Syntax, "поле «" + loose.front().source + '.' + loose.front().field
                                           + "» не входит в GROUP BY и не стоит под итогом");
    };
    for (const Output& output : m_outputs)
        check(output.loose);
    check(m_scope.loose);
}

void SelectTranslator::nameOutputs()
{
    int unnamed = 1000;
    for (Output& output : m_outputs) {
        if (!output.alias.empty()) {
            output.name = output.alias;
            if (nameTaken(output))
                throw Error(Fault::Syntax, "псевдоним «" + output.alias + "» указан дважды");
        } else if (!output.field.empty()) {
            const bool shared = std::ranges::any_of(m_outputs, [&](const Output& other) {
                return &other != &output
                       && sameName(other.alias.empty() ? other.field : other.alias, output.field)
                       && (!other.alias.empty() || !sameName(other.source, output.source));
            });
            output.name = shared && !output.source.empty() ? output.source + '.' + output.field
                                                           : output.field;
        }
        while (output.name.empty() || (output.alias.empty() && nameTaken(output)))
            output.name = "Expr" + std::to_string(unnamed++);
    }
}

bool SelectTranslator::nameTaken(const Output& output) const
{
    return std::ranges::any_of(m_outputs, [&output](const Output& other) {
        return &other != &output && !other.name.empty() && sameName(other.name, output.name);
    });
}

// DISTINCTROW: one result row for each combination of rows of the tables that are shown.
std::string SelectTranslator::rowGroups() const
{
    const bool grouped = m_scope.aggregated || !m_select.groupBy.empty();
    if (!m_select.distinctRow || grouped)
        return "";
    std::string result;
    std::size_t shown = 0;
    for (const ScopeSource& source : m_scope.sources()) {
        const auto uses = [&source](const Scope::Use& use) {
            return sameName(use.source, source.name);
        };
        if (std::ranges::none_of(m_outputs, [&](const Output& output) {
                return std::ranges::any_of(output.loose, uses);
            }))
            continue;
        if (!source.table)
            return "";
        ++shown;
        result += (result.empty() ? "" : ", ") + source.sqlName + '.' + rowIdName(source.columns);
    }
    return shown < m_scope.sources().size() ? result : "";
}

std::string SelectTranslator::columnList(bool numbered) const
{
    std::string result;
    for (std::size_t i = 0; i < m_outputs.size(); ++i)
        result += (i == 0 ? "" : ", ") + collated(asValue(m_outputs[i].fragment)).sql + " AS "
                  + (numbered ? "c" + std::to_string(i) : quotedName(m_outputs[i].name));
    return result;
}

std::string SelectTranslator::tail() const
{
    std::string result;
    const auto clause = [&result](const char* word, const std::string& text) {
        if (!text.empty())
            result += word + text;
    };
    clause(" FROM ", m_from);
    clause(" WHERE ", m_where);
    clause(" GROUP BY ", m_groupBy);
    clause(" HAVING ", m_having);
    return result;
}

std::string SelectTranslator::orderText() const
{
    std::string result;
    for (const OrderKey& key : m_keys)
        result +=
            (result.empty() ? " ORDER BY " : ", ") + key.sql + (key.descending ? " DESC" : "");
    return result;
}

std::string SelectTranslator::plainText() const
{
    std::string text = m_select.distinct ? "SELECT DISTINCT " : "SELECT ";
    text += columnList(false) + tail() + orderText();
    if (m_select.top)
        text += " LIMIT " + std::to_string(*m_select.top);
    return text;
}

// TOP gives all rows that tie with the last one in the order asked for; a percentage is
// rounded up to whole rows. Without an order no two rows tie.
std::string SelectTranslator::rankedText() const
{
    std::string outer, keys, keyList;
    for (std::size_t i = 0; i < m_outputs.size(); ++i)
        outer += (i == 0 ? "" : ", ") + ("c" + std::to_string(i)) + " AS "
                 + quotedName(m_outputs[i].name);
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        const std::string name = "o" + std::to_string(i);
        keyList += ", " + m_keys[i].sql + " AS " + name;
        keys += (i == 0 ? "ORDER BY " : ", ") + name + (m_keys[i].descending ? " DESC" : "");
    }
    const std::string count = std::to_string(*m_select.top);
    const std::string wanted =
        m_select.topPercent ? "(place - 1) * 100 < " + count + " * total" : "place <= " + count;
    return "SELECT " + outer + " FROM (SELECT *, " + (m_keys.empty() ? "row_number" : "rank")
           + "() OVER (" + keys + ") AS place, count(*) OVER () AS total FROM (SELECT "
           + (m_select.distinct ? "DISTINCT " : "") + columnList(true) + keyList + tail()
           + ")) WHERE " + wanted + " ORDER BY place";
}

std::vector<ResultColumn> SelectTranslator::resultColumns() const
{
    std::vector<ResultColumn> result;
    for (const Output& output : m_outputs)
        result.push_back({output.name, asValue(output.fragment).type, output.source, output.field});
    return result;
}

} // namespace jet::sql
