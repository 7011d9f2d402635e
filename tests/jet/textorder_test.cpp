// Every way of comparing texts must agree: SQL over indexed, unindexed and memo columns, over
// expressions and literals, hash lookups, index trees. The bytes of the index keys judge.
#include "jet/storage/sortkey.h"
#include "jet/storage/store.h"
#include "tests/jet/queryfixture.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

namespace jet::test {

namespace {

using Pairs = std::set<std::pair<std::int64_t, std::int64_t>>;

std::string times(std::string_view unit, int count)
{
    std::string out;
    while (count-- > 0)
        out += unit;
    return out;
}

using namespace std::string_view_literals;

constexpr std::string_view kShortTexts[] = {"",
                                            " ",
                                            "   ",
                                            "-",
                                            "--",
                                            "'",
                                            "\xC2\xAD",
                                            "a",
                                            "A",
                                            "a ",
                                            "a  ",
                                            " a",
                                            "á",
                                            "Á",
                                            "a\u0301",
                                            "ä",
                                            "aa",
                                            "a-a",
                                            "a'a",
                                            "-aa",
                                            "aa-",
                                            "a a",
                                            "b",
                                            "co-op",
                                            "coop",
                                            "CO-OP",
                                            "ss",
                                            "ß",
                                            "SS",
                                            "sß",
                                            "æ",
                                            "Æ",
                                            "ae",
                                            "aé",
                                            "æ-",
                                            "ae-",
                                            "œ",
                                            "oe",
                                            "þ",
                                            "th",
                                            "ñ",
                                            "n",
                                            "ø",
                                            "o",
                                            "z",
                                            "1",
                                            "2",
                                            "10",
                                            "01",
                                            "²",
                                            "1.5",
                                            "1,5",
                                            "½",
                                            "_",
                                            "#",
                                            "[",
                                            "]",
                                            "*",
                                            "?",
                                            "%",
                                            "!",
                                            "~",
                                            "«а»",
                                            "\"а\"",
                                            "е",
                                            "Е",
                                            "ё",
                                            "Ё",
                                            "е\u0308",
                                            "еж",
                                            "ёж",
                                            "ежа",
                                            "ёжа",
                                            "Ежё",
                                            "и",
                                            "й",
                                            "Й",
                                            "и\u0306",
                                            "і",
                                            "ї",
                                            "й ",
                                            "я",
                                            "Я",
                                            "ь",
                                            "ъ",
                                            "э",
                                            "семенов",
                                            "Семёнов",
                                            "СЕМЕНОВ ",
                                            "ко-от",
                                            "коот",
                                            "Петрова-Водкина",
                                            "Петрова Водкина",
                                            "ПетроваВодкина",
                                            "№ 1",
                                            "№1",
                                            "Ѐ",
                                            "Ә",
                                            "ӘЛ",
                                            "л",
                                            "\t",
                                            "\n",
                                            "\r\n",
                                            "\x01",
                                            "a\x01",
                                            "\x7F",
                                            "\xC2\xA0",
                                            "a\xC2\xA0",
                                            "–",
                                            "—",
                                            "…",
                                            "€",
                                            "α",
                                            "Ά",
                                            "ς",
                                            "σ",
                                            "\0"sv,
                                            "a\0b"sv,
                                            "ab"};

// Texts that an index can hold.
const std::vector<std::string>& indexedTexts()
{
    static const std::vector<std::string> all = [] {
        std::vector<std::string> texts(std::begin(kShortTexts), std::end(kShortTexts));
        texts.insert(texts.end(), {times("ж", 255), times("Ж", 254) + "з", times("Ж", 254),
                                   times("-", 255), times("ё", 255)});
        return texts;
    }();
    return all;
}

// And texts with characters that have no place in the order.
std::vector<std::string> allTexts()
{
    std::vector<std::string> all = indexedTexts();
    all.insert(all.end(), {"中", "中 ", "a中", "\U0001F600", "я中", "ぁ", "\uFFFD"});
    return all;
}

bool isLiteral(const std::string& text)
{
    return text.find('\0') == std::string::npos;
}

std::string quoted(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text)
        out += c == '"' ? "\"\"" : std::string(1, c);
    return out + '"';
}

int byKeys(const std::string& a, const std::string& b)
{
    const Bytes first = generalSortKey(a);
    const Bytes second = generalSortKey(b);
    return first < second ? -1 : second < first ? 1 : 0;
}

struct Way
{
    const char* condition; // of X and Y, the two texts
    std::function<bool(int)> holds;
};

const Way kWays[] = {
    {"X = Y", [](int order) { return order == 0; }},
    {"X <> Y", [](int order) { return order != 0; }},
    {"X < Y", [](int order) { return order < 0; }},
    {"X <= Y", [](int order) { return order <= 0; }},
    {"X > Y", [](int order) { return order > 0; }},
    {"X >= Y", [](int order) { return order >= 0; }},
    {"X BETWEEN Y AND Y", [](int order) { return order == 0; }},
    {"X NOT BETWEEN Y AND Y", [](int order) { return order != 0; }},
    {"X IN (Y)", [](int order) { return order == 0; }},
    {"X IN (Y, NULL)", [](int order) { return order == 0; }},
    {"StrComp(X, Y) = 0", [](int order) { return order == 0; }},
    {"StrComp(X, Y, 1) < 0", [](int order) { return order < 0; }},
    {"IIf(X = Y, 1, 0) = 1", [](int order) { return order == 0; }},
    {"NOT (X <= Y)", [](int order) { return order > 0; }},
};

std::string replaced(std::string text, char mark, const std::string& by)
{
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += by.size())
        text.replace(at, 1, by);
    return text;
}

// Names the first pair in which two sets differ.
testing::AssertionResult samePairs(const Pairs& actual, const Pairs& wanted)
{
    if (actual == wanted)
        return testing::AssertionSuccess();
    Pairs difference;
    std::ranges::set_symmetric_difference(actual, wanted,
                                          std::inserter(difference, difference.begin()));
    const auto texts = allTexts();
    auto result = testing::AssertionFailure() << difference.size() << " pairs differ:";
    int shown = 0;
    for (const auto& [i, k] : difference) {
        if (++shown > 8 || i < 0 || k < 0)
            break;
        result << " [" << texts[static_cast<std::size_t>(i)] << "|"
               << texts[static_cast<std::size_t>(k)] << "] "
               << (wanted.contains({i, k}) ? "missing" : "too many");
    }
    return result;
}

class TextOrder : public testing::Test
{
protected:
    TextOrder()
        : db(Database::create(files, "t.mdb", {}))
    {
        db->execute("CREATE TABLE A (K LONG, T TEXT(255))");
        db->execute("CREATE INDEX byT ON A (T)");
        db->execute("CREATE TABLE D (K LONG, T TEXT(255))");
        db->execute("CREATE INDEX byT ON D (T DESC, K)");
        db->execute("CREATE TABLE B (K LONG, T TEXT(255))");
        db->execute("CREATE TABLE M (K LONG, T MEMO)");
        Transaction whole(*db);
        for (const char* table : {"A", "D"})
            fill(table, indexedTexts());
        for (const char* table : {"B", "M"})
            fill(table, allTexts());
        whole.commit();
    }

    // K is the position of the text; a row of NULL follows.
    void fill(const char* table, const std::vector<std::string>& texts)
    {
        const std::string names[] = {"K", "T"};
        Appender rows(*db, table, names);
        for (std::size_t i = 0; i < texts.size(); ++i)
            rows.append(std::vector<Value>{static_cast<std::int64_t>(i), texts[i]});
        rows.append(std::vector<Value>{-1, Value()});
    }

    Pairs pairs(const std::string& sql)
    {
        Pairs out;
        for (const auto& row : db->rows(sql))
            out.emplace(row[0].toInteger(), row[1].toInteger());
        return out;
    }
    std::vector<std::int64_t> numbers(const std::string& sql)
    {
        std::vector<std::int64_t> out;
        for (const auto& row : db->rows(sql))
            out.push_back(row[0].toInteger());
        return out;
    }
    static const std::vector<std::string>& textsOf(const std::string& table)
    {
        static const std::vector<std::string> all = allTexts();
        return table == "A" || table == "D" ? indexedTexts() : all;
    }
    static Pairs expected(const std::string& first, const std::string& second, const Way& way)
    {
        const std::vector<Bytes> a = keysOf(textsOf(first));
        const std::vector<Bytes> b = keysOf(textsOf(second));
        Pairs out;
        for (std::size_t i = 0; i < a.size(); ++i) {
            for (std::size_t k = 0; k < b.size(); ++k) {
                if (way.holds(a[i] < b[k] ? -1 : b[k] < a[i] ? 1 : 0))
                    out.emplace(i, k);
            }
        }
        return out;
    }
    static std::vector<Bytes> keysOf(const std::vector<std::string>& texts)
    {
        std::vector<Bytes> keys;
        keys.reserve(texts.size());
        for (const std::string& text : texts)
            keys.push_back(generalSortKey(text));
        return keys;
    }
    // Runs every way of comparing X of one table with Y of another.
    void expectAllWays(const char* first, const char* x, const char* second, const char* y)
    {
        for (const Way& way : kWays) {
            const std::string condition = replaced(replaced(way.condition, 'X', x), 'Y', y);
            const std::string sql = std::string("SELECT P.K, Q.K FROM ") + first + " AS P, "
                                    + second + " AS Q WHERE P.K >= 0 AND Q.K >= 0 AND " + condition;
            EXPECT_TRUE(samePairs(pairs(sql), expected(first, second, way))) << sql;
        }
    }
    static std::size_t classes(const std::vector<std::string>& texts)
    {
        std::set<Bytes> keys;
        for (const std::string& text : texts)
            keys.insert(generalSortKey(text));
        return keys.size();
    }

    MemoryFiles files;
    std::unique_ptr<Database> db;
};

TEST_F(TextOrder, ColumnsCompareAsTheKeys)
{
    expectAllWays("A", "P.T", "B", "Q.T");
    expectAllWays("B", "P.T", "A", "Q.T");
    expectAllWays("D", "P.T", "D", "Q.T");
    expectAllWays("M", "P.T", "B", "Q.T");
}

TEST_F(TextOrder, ExpressionsCompareAsTheKeys)
{
    expectAllWays("B", "P.T & \"\"", "B", "Q.T");
    expectAllWays("A", "P.T", "B", "Q.T & \"\"");
    expectAllWays("B", "Left(P.T, 300)", "M", "Nz(Q.T & \"\", \"\")");
}

TEST_F(TextOrder, JoinsAndSubqueriesFindEqualTexts)
{
    const Way& equal = kWays[0];
    const char* const sides[][2] = {{"A", "A"}, {"A", "B"}, {"B", "A"}, {"B", "M"}, {"M", "B"}};
    for (const auto& [first, second] : sides) {
        const Pairs wanted = expected(first, second, equal);
        for (
            const char* form : {
                "^ AS P INNER JOIN ~ AS Q ON P.T = Q.T",
                "^ AS P LEFT JOIN ~ AS Q ON P.T = Q.T WHERE Q.K IS NOT NULL",
                "^ AS P INNER JOIN (SELECT DISTINCT K, T FROM ~) AS Q ON P.T = Q.T",
                "(SELECT K, T & \"\" AS T FROM ^ WHERE K >= 0) AS P INNER JOIN ~ AS Q ON P.T = Q.T",
                "^ AS P, ~ AS Q WHERE P.T IN (SELECT R.T FROM ~ AS R WHERE R.K = Q.K)",
                "^ AS P, ~ AS Q WHERE P.K >= 0 AND P.T & \"\" IN (SELECT R.T FROM ~ AS R WHERE R.K "
                "= Q.K AND R.K >= 0)",
                "^ AS P, ~ AS Q WHERE EXISTS (SELECT R.K FROM ^ AS R WHERE R.K = P.K AND R.T = "
                "Q.T)",
            }) {
            const std::string sql =
                "SELECT P.K, Q.K FROM " + replaced(replaced(form, '^', first), '~', second);
            EXPECT_TRUE(samePairs(pairs(sql), wanted)) << sql;
        }
    }
}

TEST_F(TextOrder, LiteralsCompareAsTheKeys)
{
    for (const std::string table : {"A", "M"}) {
        const auto& texts = textsOf(table);
        for (const std::string& text : texts) {
            if (!isLiteral(text))
                continue;
            for (const Way& way : std::span(kWays).first(9)) {
                const std::string condition =
                    replaced(replaced(way.condition, 'Y', quoted(text)), 'X', "T");
                std::vector<std::int64_t> wanted;
                wanted.reserve(texts.size());
                for (std::size_t i = 0; i < texts.size(); ++i) {
                    if (way.holds(byKeys(texts[i], text)))
                        wanted.push_back(static_cast<std::int64_t>(i));
                }
                const std::string sql = replaced(
                    replaced("SELECT K FROM ^ WHERE K >= 0 AND (~) ORDER BY K", '^', table), '~',
                    condition);
                EXPECT_EQ(numbers(sql), wanted) << sql;
            }
        }
    }
}

TEST_F(TextOrder, SortingGroupingAndExtremesFollowTheKeys)
{
    for (const std::string table : {"A", "B", "D", "M"}) {
        const auto& texts = textsOf(table);
        for (const char* key : {"T", "T & \"\"", "Mid(T, 1)", "IIf(K >= 0, T, \"\")"}) {
            for (const bool descending : {false, true}) {
                const std::string sql = "SELECT K FROM " + table + " WHERE K >= 0 ORDER BY " + key
                                        + (descending ? " DESC" : "");
                const auto order = numbers(sql);
                ASSERT_EQ(order.size(), texts.size());
                for (std::size_t i = 1; i < order.size(); ++i) {
                    const auto& before = texts[static_cast<std::size_t>(order[i - 1])];
                    const auto& after = texts[static_cast<std::size_t>(order[i])];
                    EXPECT_TRUE(descending ? byKeys(before, after) >= 0
                                           : byKeys(before, after) <= 0)
                        << sql << ": " << before << " / " << after;
                }
            }
            const auto distinct = static_cast<std::int64_t>(classes(texts));
            for (const char* form : {
                     "SELECT DISTINCT ~ FROM ^ WHERE K >= 0",
                     "SELECT Count(*) FROM ^ WHERE K >= 0 GROUP BY ~",
                     "SELECT ~ AS V FROM ^ WHERE K >= 0 UNION SELECT ~ AS V FROM ^ WHERE K >= 0",
                     "SELECT ~ AS V FROM ^ WHERE K >= 0 UNION SELECT T & '' FROM ^ WHERE K >= 0",
                     "SELECT DISTINCT V FROM (SELECT ~ AS V FROM ^ WHERE K >= 0) AS S",
                 }) {
                const std::string sql = replaced(replaced(form, '~', key), '^', table);
                EXPECT_EQ(db->count(sql), distinct) << sql;
            }
        }
    }
}

TEST_F(TextOrder, MinimumAndMaximumOfEveryPair)
{
    const auto texts = allTexts();
    const auto check = [&](const std::string& sql, int sign) {
        const auto rows = db->rows(sql);
        EXPECT_EQ(rows.size(), texts.size() * (texts.size() - 1) / 2);
        for (const auto& row : rows) {
            const std::string& a = texts[static_cast<std::size_t>(row[0].toInteger())];
            const std::string& b = texts[static_cast<std::size_t>(row[1].toInteger())];
            const std::string& wanted = byKeys(a, b) * sign > 0 ? b : a;
            EXPECT_EQ(byKeys(row[2].toText(), wanted), 0) << sql << ": " << a << " / " << b;
        }
    };
    const std::string tail =
        "(R.T) FROM B AS P, B AS Q, B AS R WHERE P.K >= 0 AND Q.K > P.K AND (R.K = P.K OR R.K = "
        "Q.K) GROUP BY P.K, Q.K";
    check("SELECT P.K, Q.K, Min" + tail, 1);
    check("SELECT P.K, Q.K, Max" + tail, -1);
}

TEST_F(TextOrder, TreesAndHashIndexesFindTheSameRows)
{
    const auto& texts = indexedTexts();
    for (const char* name : {"A", "D"}) {
        Table& table = db->store().table(name);
        const int column = table.definition().columnPosition("T");
        const int index = table.indexLedBy(column);
        ASSERT_GE(index, 0);
        for (const std::string& text : texts) {
            std::set<RowPointer> wanted;
            for (TableScan rows = table.scan(); rows.next();) {
                const Value value = rows.row().value(column);
                if (!value.isNull() && byKeys(value.toText(), text) == 0)
                    wanted.insert(rows.row().pointer());
            }
            const Value sought(text);
            const auto hashed = table.lookup(column, sought);
            EXPECT_EQ(std::set<RowPointer>(hashed.begin(), hashed.end()), wanted) << text;
            const auto found = table.seek(index, {&sought, 1});
            EXPECT_EQ(std::set<RowPointer>(found.begin(), found.end()), wanted) << text;
        }
    }
}

TEST_F(TextOrder, AUniqueIndexTakesOneOfEqualTexts)
{
    db->execute("CREATE TABLE U (T TEXT(255), M MEMO)");
    db->execute("CREATE UNIQUE INDEX byT ON U (T)");
    std::set<Bytes> seen;
    for (const std::string& text : indexedTexts()) {
        const std::pair<std::string, Value> row[] = {{"T", text}};
        if (seen.insert(generalSortKey(text)).second)
            EXPECT_NO_THROW(db->insert("U", row)) << text;
        else
            EXPECT_THROW(db->insert("U", row), Error) << text;
    }
    EXPECT_EQ(db->rowCount("U"), static_cast<std::int64_t>(seen.size()));
}

// Index keys see 255 characters, comparisons see all.
TEST_F(TextOrder, LongMemosDifferBehindTheirKeys)
{
    db->execute("CREATE TABLE L (K LONG, M MEMO)");
    db->execute("CREATE INDEX byM ON L (M)");
    const std::string start = times("ж", 255);
    const std::string texts[] = {start + "а", start + "б", start + "Б ", start,
                                 start + times("ы", 3000)};
    for (std::size_t i = 0; i < std::size(texts); ++i) {
        const std::pair<std::string, Value> row[] = {{"K", static_cast<int>(i)}, {"M", texts[i]}};
        db->insert("L", row);
    }
    EXPECT_EQ(numbers("SELECT K FROM L ORDER BY M, K"), (std::vector<std::int64_t>{3, 0, 1, 2, 4}));
    EXPECT_EQ(numbers("SELECT K FROM L WHERE M = \"" + texts[1] + "\" ORDER BY K"),
              (std::vector<std::int64_t>{1, 2}));
    EXPECT_EQ(db->count("SELECT DISTINCT M FROM L"), 4);
    EXPECT_THROW(db->execute("CREATE UNIQUE INDEX uM ON L (M)"), Error);
    EXPECT_EQ(db->tableDef("L").indexes.size(), 1U);
}

} // namespace

} // namespace jet::test
