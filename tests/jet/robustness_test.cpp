#include "jet/error.h"
#include "journalconnection.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace jet::sql {

namespace {

std::string repeated(const std::string& part, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += part;
    return result;
}

// Error, or a text that SQLite accepts; anything else is a fault. False: refused.
bool survives(JournalConnection& connection, const std::string& sql)
{
    try {
        const Translation translation = connection.translate(sql);
        const std::string message = connection.prepareError(translation.sqlite);
        // SQLite has limits of its own, and refuses a misplaced aggregate in its own words.
        const bool limit = message.find("too many") != std::string::npos
                           || message.find("misuse of aggregate") != std::string::npos
                           || message.find("ORDER BY term out of range") != std::string::npos;
        EXPECT_TRUE(message.empty() || limit) << sql << "\n"
                                              << translation.sqlite << "\n"
                                              << message;
        return true;
    } catch (const Error&) {
        return false;
    }
}

std::vector<std::string> statements()
{
    std::ifstream file(std::string(JET_TEST_DATA) + "/queries.txt");
    std::vector<std::string> result;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#' && line[0] != '=')
            result.push_back(line);
    return result;
}

TEST(Robustness, EveryTruncationIsRefusedOrMeansSomething)
{
    JournalConnection connection;
    int refused = 0;
    const std::vector<std::string> all = statements();
    for (std::size_t i = 0; i < all.size(); i += 9)
        for (std::size_t length = 0; length < all[i].size(); ++length)
            refused += !survives(connection, all[i].substr(0, length));
    EXPECT_GT(refused, 1000);
}

TEST(Robustness, RandomWordsNeverCrash)
{
    const std::vector<std::string> words = {"SELECT",      "FROM",       "WHERE",
                                            "GROUP BY",    "ORDER BY",   "HAVING",
                                            "UNION",       "ALL",        "DISTINCT",
                                            "TOP 2",       "INNER JOIN", "LEFT JOIN",
                                            "ON",          "AS",         "AND",
                                            "OR",          "NOT",        "IN",
                                            "LIKE",        "IS",         "NULL",
                                            "BETWEEN",     "EXISTS",     "(",
                                            ")",           "(",          ")",
                                            ",",           ".",          "!",
                                            ";",           "*",          "/",
                                            "\\",          "^",          "+",
                                            "-",           "&",          "=",
                                            "<>",          "<",          "POS",
                                            "SPSTUD",      "[POS]",      "ID",
                                            "uv",          "FAM",        "dat",
                                            "X",           "1",          "2.5",
                                            "\"a\"",       "'b'",        "#1/2/2022#",
                                            "&HF",         "Sum",        "Count",
                                            "trim",        "iif",        "isnull",
                                            "True",        "POS.ID",     "SPSTUD.ID",
                                            "INSERT INTO", "VALUES",     "UPDATE",
                                            "SET",         "DELETE",     "CREATE TABLE",
                                            "INTEGER",     "DROP",       "ALTER TABLE",
                                            "ADD",         "MOD",        "XOR"};
    std::mt19937 random(20220901);
    const auto pick = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    JournalConnection connection;
    for (int round = 0; round < 20000; ++round) {
        std::string sql = round % 2 == 0 ? "SELECT " : "";
        for (std::size_t count = 1 + pick(14); count > 0; --count)
            sql += words[pick(words.size())] + " ";
        survives(connection, sql);
    }
}

TEST(Robustness, ExchangedWordsNeverCrash)
{
    const std::vector<std::string> all = statements();
    std::mt19937 random(77);
    JournalConnection connection;
    int understood = 0;
    for (int round = 0; round < 5000; ++round) {
        std::string sql = all[random() % all.size()];
        const std::string& other = all[random() % all.size()];
        const std::size_t from = random() % sql.size(), into = random() % other.size();
        sql.replace(from, random() % 12, other.substr(into, random() % 20));
        understood += survives(connection, sql);
    }
    EXPECT_GT(understood, 100);
}

TEST(Robustness, RandomBytesNeverCrash)
{
    std::mt19937 random(5);
    JournalConnection connection;
    for (int round = 0; round < 2000; ++round) {
        std::string sql = "SELECT ";
        for (std::size_t count = random() % 30; count > 0; --count)
            sql += static_cast<char>(random());
        survives(connection, sql);
    }
}

TEST(Robustness, DeepNestingIsAcceptedToALimitAndThenRefused)
{
    JournalConnection connection;
    const auto nested = [](const char* open, const char* close, int count) {
        return "SELECT " + repeated(open, count) + "1" + repeated(close, count);
    };
    const struct
    {
        const char* open;
        const char* close;
        int accepted;
    } cases[] = {
        {"(", ")", 30},
        {"trim(", ")", 18},
        {"NOT ", "", 30},
        {"-", "", 18},
        {"iif(1,", ",2)", 18},
        {"(SELECT ", ")", 18},
        {"abs(1+(2*(", ")))", 9},
        {"1 + (", ")", 18},
        {"1 IN (2,", ")", 9},
        {"EXISTS (SELECT ", ")", 9},
        {"(1=1) AND (", "=1)", 17},
        {"'a' & (", ")", 18},
        {"(SELECT * FROM (SELECT ", " AS A))", 8},
    };
    for (const auto& each : cases) {
        EXPECT_TRUE(survives(connection, nested(each.open, each.close, each.accepted)))
            << each.open;
        for (const int count : {31, 5000})
            EXPECT_FALSE(survives(connection, nested(each.open, each.close, count))) << each.open;
    }
}

TEST(Robustness, LongChainsAreAcceptedToALimitAndThenRefused)
{
    JournalConnection connection;
    for (const char* sign : {" + ", " OR ", " AND ", " & ", " * ", " = ", " MOD ", " ^ "}) {
        const auto chain = [sign](int count) {
            return "SELECT 1" + repeated(sign + std::string("1"), count);
        };
        // These nest in SQLite's text, the others do not.
        const bool nests = std::string(" MOD  ^  = ").find(sign) != std::string::npos;
        EXPECT_TRUE(survives(connection, chain(nests ? 15 : 400))) << sign;
        EXPECT_FALSE(survives(connection, chain(5000))) << sign;
    }
    EXPECT_TRUE(survives(connection, "SELECT 1 IN (1" + repeated(",1", 5000) + ")"));
    EXPECT_TRUE(survives(connection, "SELECT 1" + repeated(" UNION SELECT 1", 400)));
    EXPECT_FALSE(survives(connection, "SELECT 1" + repeated(" UNION SELECT 1", 1000)));
    EXPECT_FALSE(survives(connection, "SELECT 1" + repeated(",1", 5000)));
    EXPECT_FALSE(survives(connection, "SELECT 1 FROM POS" + repeated(", POS", 100)));
}

// Each alias doubles the one before: text of exponential length must be cut off.
TEST(Robustness, AliasesCannotExplode)
{
    JournalConnection connection;
    std::string sql = "SELECT ID AS a0";
    for (int i = 1; i < 60; ++i)
        sql += ", a" + std::to_string(i - 1) + " + a" + std::to_string(i - 1) + " AS a"
               + std::to_string(i);
    EXPECT_FALSE(survives(connection, sql + " FROM POS"));
}

} // namespace

} // namespace jet::sql
