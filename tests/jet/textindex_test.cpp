// Tables with text indexes beside a model in memory that compares texts letter by letter from
// a table of its own, not by the engine's keys.
#include "jet/error.h"
#include "jet/storage/checker.h"
#include "tests/jet/smalltable.h"
#include "tests/jet/treeverifier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <tuple>
#include <unordered_map>

namespace jet {
namespace {

using test::field;
using test::index;
using test::SmallTable;
using Row = std::vector<Value>;

// A sign of the tested alphabet. Weight: the bytes that order it first, "" for none.
struct Letter
{
    std::string_view text;
    std::string_view weight;
    int accent = 2;
    int hidden = 0; // code of a sign that counts last
    int places = 1; // letters that it stands for
};

constexpr std::array kLetters = {
    Letter{"а", "\x79\x2F"},     Letter{"А", "\x79\x2F"},     Letter{"е", "\x79\x36"},
    Letter{"ё", "\x79\x36", 19}, Letter{"Ё", "\x79\x36", 19}, Letter{"Е", "\x79\x36"},
    Letter{"ж", "\x79\x38"},     Letter{"и", "\x79\x3B"},     Letter{"й", "\x79\x3E"},
    Letter{"Й", "\x79\x3E"},     Letter{"я", "\x79\x5C"},     Letter{" ", "\x07"},
    Letter{"-", "", 2, 0x82},    Letter{"'", "", 2, 0x80},    Letter{"Ѐ", ""},
    Letter{"a", "\x4A"},         Letter{"A", "\x4A"},         Letter{"á", "\x4A", 14},
    Letter{"ä", "\x4A", 19},     Letter{"e", "\x51"},         Letter{"s", "\x6B"},
    Letter{"ß", "kk", 2, 0, 2},  Letter{"æ", "JQ", 2, 0, 2},  Letter{"1", "\x38"},
    Letter{"9", "\x48"},         Letter{".", "\x1C"},         Letter{"№", "\x63\x02"},
    Letter{"_", "\x2B\x03"},
};
// The first ones are enough for texts that shall clash.
constexpr int kFewLetters = 6;

// Parts of a text's order: letters, accents, hidden signs; each decides when those before it
// are equal, and the shorter one is the lesser.
using TextParts =
    std::tuple<std::vector<unsigned char>, std::vector<int>, std::vector<std::pair<int, int>>>;

const Letter& letterAt(std::string_view text)
{
    const auto* found = std::ranges::find_if(
        kLetters, [&](const Letter& letter) { return text.starts_with(letter.text); });
    if (found == kLetters.end())
        throw std::logic_error("no letter of the model");
    return *found;
}

TextParts splitText(std::string_view text)
{
    while (text.ends_with(' '))
        text.remove_suffix(1);
    TextParts parts;
    auto& [weights, accents, hidden] = parts;
    int place = 0;
    for (int count = 0; !text.empty() && count < 255; ++count) {
        const Letter& letter = letterAt(text);
        text.remove_prefix(letter.text.size());
        weights.insert(weights.end(), letter.weight.begin(), letter.weight.end());
        if (letter.hidden != 0)
            hidden.emplace_back(place, letter.hidden);
        if (letter.weight.empty())
            continue;
        if (letter.accent != 2) {
            accents.resize(static_cast<std::size_t>(place), 2);
            accents.push_back(letter.accent);
        }
        place += letter.places;
    }
    return parts;
}

const TextParts& partsOf(const Value& text)
{
    static std::unordered_map<std::string, TextParts> known;
    const auto& key = *text.as<std::string>();
    const auto found = known.find(key);
    return found != known.end() ? found->second : known.emplace(key, splitText(key)).first->second;
}

// NULL before everything.
int compare(const Value& a, const Value& b)
{
    const auto sign = [](auto less, auto greater) { return less ? -1 : greater ? 1 : 0; };
    if (a.isNull() || b.isNull())
        return sign(a.isNull() && !b.isNull(), !a.isNull());
    if (!a.as<std::string>())
        return sign(a.toInteger() < b.toInteger(), a.toInteger() > b.toInteger());
    const TextParts& x = partsOf(a);
    const TextParts& y = partsOf(b);
    return sign(x < y, y < x);
}

class IndexModel
{
public:
    using Values = std::function<Row(std::mt19937&)>;

    IndexModel(const TableDef& definition, Values values, unsigned seed)
        : m_definition(definition)
        , m_values(std::move(values))
        , m_random(seed)
        , m_data(definition)
    {}

    // One random change; grows or shrinks the table by the share of insertions in percent.
    void step(int insertions)
    {
        if (m_rows.empty() || below(100) < insertions)
            insert();
        else if (below(2) == 0)
            update(anyRow());
        else
            erase(anyRow());
    }

    void run(int steps, int insertions)
    {
        for (int i = 0; i < steps; ++i) {
            step(insertions);
            if (i % 250 == 249)
                m_data.reopen();
            if (i % 500 == 499)
                verify();
        }
        m_data.reopen();
        verify();
    }

    void eraseAll()
    {
        std::vector<RowPointer> rows;
        for (const auto& [row, values] : m_rows)
            rows.push_back(row);
        std::ranges::shuffle(rows, m_random);
        for (const RowPointer row : rows)
            erase(row);
        m_data.reopen();
        verify();
    }

    // Every tree has the model's rows in the model's order, and nothing contradicts itself.
    void verify()
    {
        m_height = 0;
        m_compressed = 0;
        const Definition& d = m_data.definition();
        for (std::size_t i = 0; i < m_definition.indexes.size(); ++i) {
            const Index& index = m_definition.indexes[i];
            const test::TreeVerifier tree(m_data.store().pager(), d.page, d.realIndexes[i].root);
            ASSERT_EQ(tree.problems(), "") << index.name;
            m_height = std::max(m_height, tree.height());
            m_compressed += tree.compressedPages();
            std::vector<RowPointer> stored;
            for (const Bytes& entry : tree.entries()) {
                std::uint32_t pointer = 0;
                for (std::size_t k = entry.size() - 4; k < entry.size(); ++k)
                    pointer = pointer << 8 | entry[k];
                stored.push_back(RowPointer::unpack(pointer));
            }
            ASSERT_EQ(stored, expectedOrder(index)) << index.name;
        }
        for (const Finding& finding : checkDatabase(m_data.store()))
            ADD_FAILURE() << finding.text << ", page " << finding.page;
    }

    std::string structuralErrors() { return m_data.structuralErrors(); }
    std::size_t rows() const { return m_rows.size(); }
    int refusals(Fault fault) { return m_refusals[fault]; }
    int height() const { return m_height; }
    std::size_t compressedPages() const { return m_compressed; }
    int changes() const { return m_changes; }

private:
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    RowPointer anyRow()
    {
        return std::next(m_rows.begin(), below(static_cast<int>(m_rows.size())))->first;
    }
    std::size_t position(const std::string& name) const
    {
        const auto found = std::ranges::find(m_definition.fields, name, &Field::name);
        return static_cast<std::size_t>(found - m_definition.fields.begin());
    }
    int compareIn(const Index& index, const Row& a, const Row& b) const
    {
        for (const IndexField& part : index.fields) {
            const std::size_t column = position(part.name);
            if (const int order = compare(a[column], b[column]); order != 0)
                return part.descending ? -order : order;
        }
        return 0;
    }
    bool isNull(const Index& index, const Row& row) const
    {
        return std::ranges::all_of(index.fields, [&](const IndexField& part) {
            return row[position(part.name)].isNull();
        });
    }
    std::vector<RowPointer> expectedOrder(const Index& index) const
    {
        std::vector<RowPointer> order;
        for (const auto& [row, values] : m_rows) {
            if (!index.ignoreNulls || !isNull(index, values))
                order.push_back(row);
        }
        std::ranges::stable_sort(order, [&](RowPointer a, RowPointer b) {
            return compareIn(index, m_rows.at(a), m_rows.at(b)) < 0;
        });
        return order;
    }
    // Why the row must be refused, if it must. A row beside `self` has its keys.
    std::optional<Fault> refusal(const Row& row, RowPointer self) const
    {
        for (const Index& index : m_definition.indexes) {
            const bool hole = std::ranges::any_of(index.fields, [&](const IndexField& part) {
                return row[position(part.name)].isNull();
            });
            if (index.required && hole)
                return Fault::NullValue;
            if (!index.unique || isNull(index, row))
                continue;
            for (const auto& [other, values] : m_rows) {
                if (other != self && compareIn(index, row, values) == 0)
                    return Fault::Duplicate;
            }
        }
        return std::nullopt;
    }
    // False when the change was refused, as it had to be.
    template <class Change>
    bool attempt(std::optional<Fault> wanted, Change change)
    {
        ++m_changes;
        try {
            m_data.change(change);
            EXPECT_FALSE(wanted) << "was accepted";
            return true;
        } catch (const Error& error) {
            EXPECT_TRUE(wanted && *wanted == error.fault()) << error.what();
            ++m_refusals[error.fault()];
            return false;
        }
    }
    void insert()
    {
        const Row row = m_values(m_random);
        RowPointer pointer;
        if (attempt(refusal(row, {}), [&](Table* t) { pointer = t->insert(row); }))
            m_rows[pointer] = row;
    }
    void update(RowPointer pointer)
    {
        Row row = m_rows[pointer];
        const Row fresh = m_values(m_random);
        for (int i = 1 + below(3); i > 0; --i) {
            const auto column = static_cast<std::size_t>(below(static_cast<int>(row.size())));
            row[column] = fresh[column];
        }
        if (attempt(refusal(row, pointer), [&](Table* t) { t->update(pointer, row); }))
            m_rows[pointer] = row;
    }
    void erase(RowPointer pointer)
    {
        attempt({}, [&](Table* t) { t->erase(pointer); });
        m_rows.erase(pointer);
    }

    TableDef m_definition;
    Values m_values;
    std::mt19937 m_random;
    SmallTable m_data;
    std::map<RowPointer, Row> m_rows;
    std::map<Fault, int> m_refusals;
    int m_height = 0;
    std::size_t m_compressed = 0;
    int m_changes = 0;
};

int below(std::mt19937& random, int n)
{
    return std::uniform_int_distribution<int>(0, n - 1)(random);
}

std::string text(std::mt19937& random, int least, int most, int letters)
{
    std::string out;
    for (int i = least + below(random, most - least + 1); i > 0; --i)
        out += kLetters[static_cast<std::size_t>(below(random, letters))].text;
    return out;
}

Value orNull(std::mt19937& random, int oneIn, const Value& value)
{
    return below(random, oneIn) == 0 ? Value() : value;
}

constexpr int kAllLetters = static_cast<int>(kLetters.size());

// Indexes of every kind over texts of few and of many letters.
TableDef kinds()
{
    TableDef table;
    table.name = "ВИДЫ";
    table.fields = {field("КОД", FieldType::Long),   field("T", FieldType::Text, 40),
                    field("U", FieldType::Text, 12), field("C", FieldType::Text, 8),
                    field("N", FieldType::Integer),  field("X", FieldType::Text, 10),
                    field("R", FieldType::Text, 10), field("M", FieldType::Memo)};
    table.indexes = {index("PK", {{"КОД"}}),
                     index("byT", {{"T"}}),
                     index("backT", {{"T", true}, {"N"}}),
                     index("oneU", {{"U"}}),
                     index("oneCN", {{"C"}, {"N", true}}),
                     index("someX", {{"X"}}),
                     index("someOneXC", {{"X", true}, {"C"}}),
                     index("mustR", {{"R", true}}),
                     index("byM", {{"M"}, {"T", true}})};
    table.indexes[0].primary = true;
    for (const std::size_t i : {0u, 3u, 4u, 6u})
        table.indexes[i].unique = true;
    table.indexes[5].ignoreNulls = table.indexes[6].ignoreNulls = true;
    table.indexes[0].required = table.indexes[7].required = true;
    return table;
}

Row kindsRow(std::mt19937& random)
{
    return {orNull(random, 60, below(random, 100'000)),
            orNull(random, 8, text(random, 0, 20, kAllLetters)),
            orNull(random, 3, text(random, 0, 6, kFewLetters)),
            orNull(random, 4, text(random, 0, 2, kAllLetters)),
            orNull(random, 4, below(random, 40) - 20),
            orNull(random, 3, text(random, 0, 5, kAllLetters)),
            orNull(random, 40, text(random, 0, 5, kAllLetters)),
            orNull(random, 4, text(random, 0, 300, kAllLetters))};
}

TEST(TextIndexes, OfEveryKindFollowAModel)
{
    for (const unsigned seed : {1u, 2u}) {
        SCOPED_TRACE(seed);
        IndexModel model(kinds(), kindsRow, seed);
        model.run(1500, 70);
        EXPECT_GT(model.rows(), 150u);
        EXPECT_GT(model.refusals(Fault::Duplicate), 100);
        EXPECT_GT(model.refusals(Fault::NullValue), 20);
        model.run(500, 20);
        EXPECT_EQ(model.structuralErrors(), "");
        model.eraseAll();
        EXPECT_EQ(model.height(), 0);
        EXPECT_EQ(model.structuralErrors(), "");
    }
}

// Keys of up to 1500 bytes: two or three fit on a page, so a few hundred rows make deep trees.
TableDef tenColumns(bool descending)
{
    TableDef table;
    table.name = "ДЕСЯТЬ";
    Index& wide = table.indexes.emplace_back(index("wide", {}));
    for (int i = 0; i < 10; ++i) {
        const std::string name = "F" + std::to_string(i);
        table.fields.push_back(field(name.c_str(), FieldType::Text, 40));
        wide.fields.push_back({name, descending && i % 2 == 0});
    }
    return table;
}

Row tenColumnsRow(std::mt19937& random)
{
    Row row;
    for (int i = 0; i < 10; ++i)
        row.push_back(i < 5 && below(random, 3) != 0
                          ? Value("жжжжжжжжжжжжжжжжжжжж")
                          : orNull(random, 9, text(random, 0, 40, kAllLetters)));
    return row;
}

// Long texts with a long common start, which pages leave out when they grow full.
TableDef longTexts(bool descending)
{
    TableDef table;
    table.name = "ДЛИННЫЕ";
    table.fields = {field("T", FieldType::Text, 255), field("M", FieldType::Memo)};
    table.indexes = {index("T", {{"T", descending}}), index("M", {{"M", !descending}})};
    table.indexes[0].unique = true;
    return table;
}

Row longTextsRow(std::mt19937& random)
{
    std::string start;
    for (int i = 60 * below(random, 4); i > 0; --i)
        start += "я";
    return {start + text(random, 1, 70, kAllLetters), start + text(random, 0, 200, kAllLetters)};
}

TEST(TextIndexes, OfLongKeysGrowDeepAndShrinkToTheRoot)
{
    for (const bool descending : {false, true}) {
        for (const bool wide : {true, false}) {
            SCOPED_TRACE(wide);
            IndexModel model(wide ? tenColumns(descending) : longTexts(descending),
                             wide ? tenColumnsRow : longTextsRow, descending ? 8 : 7);
            model.run(600, 85);
            EXPECT_GE(model.height(), wide ? 3 : 2);
            EXPECT_TRUE(wide || model.compressedPages() > 0);
            EXPECT_EQ(model.structuralErrors(), "");
            model.run(300, 25);
            model.eraseAll();
            EXPECT_EQ(model.height(), 0);
            model.run(100, 90);
            EXPECT_EQ(model.structuralErrors(), "");
        }
    }
}

} // namespace
} // namespace jet
