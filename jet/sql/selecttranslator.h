#pragma once

#include "jet/sql/translator.h"

#include <optional>
#include <string>
#include <vector>

namespace jet::sql {

// Translates one SELECT with the ORDER BY that belongs to it.
class SelectTranslator
{
public:
    SelectTranslator(Translator& translator, const Select& select,
                     const std::vector<OrderItem>& order, Scope* outer);
    QueryText run();

private:
    struct Output
    {
        const Expression* expression = nullptr; // null for a column that `*` stands for
        std::string alias;
        std::string source, field; // of a plain column
        std::string name;          // in the result
        Fragment fragment;
        std::vector<Scope::Use> loose;
        bool aggregated = false;
        enum class State { Waiting, Open, Done } state = State::Waiting;
    };
    struct OrderKey
    {
        std::string sql;
        bool descending;
    };

    void groupBy();
    void expand(const SelectItem& item);
    void expandSource(const ScopeSource& source);
    void translate(Output& output);
    void describeColumn(Output& output) const;
    std::optional<Fragment> aliased(std::string_view name);
    void having();
    void orderBy();
    Fragment orderExpression(const Expression& expression);
    Fragment outputAt(std::int64_t position) const;
    const Output* outputNamed(std::string_view name) const;
    void checkGrouping() const;
    void nameOutputs();
    bool nameTaken(const Output& output) const;
    std::string rowGroups() const;

    std::string columnList(bool numbered) const;
    std::string tail() const;
    std::string orderText() const;
    std::string plainText() const;
    std::string rankedText() const;
    std::vector<ResultColumn> resultColumns() const;

    Translator& m_translator;
    const Select& m_select;
    const std::vector<OrderItem>& m_order;
    Scope m_scope;
    std::vector<Output> m_outputs;
    std::vector<OrderKey> m_keys;
    std::string m_from, m_where, m_groupBy, m_having;
};

} // namespace jet::sql
