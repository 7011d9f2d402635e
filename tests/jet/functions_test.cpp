#include "jet/sql/collation.h"
#include "jet/sql/functionnames.h"
#include "jet/sql/functions.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <sqlite3.h>

namespace jet::sql {

namespace {

class Functions : public testing::Test
{
protected:
    Functions()
    {
        sqlite3* raw = nullptr;
        sqlite3_open(":memory:", &raw);
        connection.reset(raw);
        registerAllFunctions(raw, errors);
        registerCollation(raw);
    }

    // The first value as text; throws what the functions threw.
    std::string evaluate(const std::string& expression)
    {
        errors.clear();
        sqlite3_stmt* raw = nullptr;
        const std::string sql = "SELECT " + expression;
        if (sqlite3_prepare_v2(connection.get(), sql.c_str(), -1, &raw, nullptr) != SQLITE_OK)
            return sqlite3_errmsg(connection.get());
        const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(
            raw, sqlite3_finalize);
        const int code = sqlite3_step(raw);
        errors.rethrow();
        if (code != SQLITE_ROW)
            return sqlite3_errmsg(connection.get());
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(raw, 0));
        return text ? text : "NULL";
    }

    struct Case
    {
        const char* expression;
        const char* expected;
    };
    template <std::size_t n>
    void expectAll(const Case (&cases)[n])
    {
        for (const Case& c : cases) {
            try {
                EXPECT_EQ(evaluate(c.expression), c.expected) << c.expression;
            } catch (const Error& error) {
                ADD_FAILURE() << c.expression << " threw " << error.what();
            }
        }
    }

    ErrorSlot errors;
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> connection{nullptr, sqlite3_close};
};

TEST_F(Functions, TextsAreCountedInCharacters)
{
    expectAll({
        {"jet_len('Ёжик')", "4"},
        {"jet_left('Щукин', 2)", "Щу"},
        {"jet_left('ab', 9)", "ab"},
        {"jet_right('Щукин', 3)", "кин"},
        {"jet_right('ab', 9)", "ab"},
        {"jet_mid('Щукин', 2, 2)", "ук"},
        {"jet_mid('Щукин', 4)", "ин"},
        {"jet_mid('ab', 9)", ""},
        {"jet_instr('Группа ПО-21', 'по')", "8"},
        {"jet_instr(3, 'абаба', 'а')", "3"},
        {"jet_instr(1, 'Аа', 'а', 0)", "2"},
        {"jet_instr('абв', '')", "1"},
        {"jet_instr('', 'а')", "0"},
        {"jet_ucase('ёлка ъя abc ÿ')", "ЁЛКА ЪЯ ABC Ÿ"},
        {"jet_lcase('ЁЛКА ҐЄ')", "ёлка ґє"},
        {"jet_replace('а-б-в', '-', '/')", "а/б/в"},
        {"jet_replace('а-б-в', '-', '', 1, 1)", "аб-в"},
        {"jet_replace('абв', '', 'x')", "абв"},
        {"jet_string(3, 'ё!')", "ёёё"},
        {"'[' || jet_space(2) || ']'", "[  ]"},
        {"jet_chr(192)", "А"},
        {"jet_chr(184)", "ё"},
        {"jet_asc('ё')", "184"},
        {"jet_asc('я')", "255"},
        {"jet_strcomp('ЁЛКА', 'ёлка')", "0"},
        {"jet_strcomp('a', 'b')", "-1"},
    });
}

TEST_F(Functions, TrimTakesOnlySpaces)
{
    expectAll({
        {"'[' || jet_trim('  а б  ') || ']'", "[а б]"},
        {"'[' || jet_trim(char(9) || 'а' || char(10)) || ']'", "[\tа\n]"},
        {"'[' || jet_ltrim('  а ') || ']'", "[а ]"},
        {"'[' || jet_rtrim(' а  ') || ']'", "[ а]"},
        {"'[' || jet_trim('   ') || ']'", "[]"},
    });
}

TEST_F(Functions, ConcatWritesNumbersAsRussianSettingsDo)
{
    expectAll({
        {"jet_concat('а', NULL, 'б')", "аб"},
        {"jet_concat(NULL, NULL)", "NULL"},
        {"jet_concat('0', NULL)", "0"},
        {"jet_concat(12, ' ')", "12 "},
        {"jet_concat(1.5, '')", "1,5"},
        {"jet_concat(0.1 + 0.2, '')", "0,3"},
        {"jet_concat(3.0, '')", "3"},
        {"jet_concat(jet_datetext(44075), '!')", "01.09.2020!"},
        {"jet_datetext(44075.25)", "01.09.2020 6:00:00"},
        {"jet_datetext(0.5)", "12:00:00"},
    });
}

TEST_F(Functions, ValReadsTheNumberInFront)
{
    expectAll({
        {"jet_val('12abc')", "12.0"},
        {"jet_val(' 1 2')", "12.0"},
        {"jet_val(jet_concat('0', NULL))", "0.0"},
        {"jet_val('1,5')", "1.0"},
        {"jet_val('-1.5e2x')", "-150.0"},
        {"jet_val('&H1F')", "31.0"},
        {"jet_val('abc')", "0.0"},
        {"jet_val('')", "0.0"},
        {"jet_val(7)", "7"},
        {"jet_val(NULL)", "NULL"},
    });
}

TEST_F(Functions, HalvesGoToTheEvenNeighbour)
{
    expectAll({
        {"jet_cint(2.5)", "2"},
        {"jet_cint(3.5)", "4"},
        {"jet_clng('-0,5')", "0"},
        {"jet_round(2.5)", "2.0"},
        {"jet_round(2.675, 2)", "2.68"},
        {"jet_round(2.665, 2)", "2.66"},
        {"jet_round(-1.5)", "-2.0"},
        {"jet_round(7, 1)", "7"},
        {"jet_int(-2.5)", "-3.0"},
        {"jet_fix(-2.5)", "-2.0"},
        {"jet_intdiv(7.5, 2)", "4"},
        {"jet_mod(-7, 3)", "-1"},
        {"jet_mod(5.5, 4)", "2"},
        {"jet_ccur(1.00005)", "1.0"},
        {"jet_round(0.5)", "0.0"},
        {"jet_round(99.995, 2)", "100.0"},
        {"jet_intdiv(-7, 2)", "-3"},
    });
}

TEST_F(Functions, AddJoinsTextsAndSumsNumbers)
{
    expectAll({
        {"jet_add('1', '2')", "12"},
        {"jet_add(1, '2,5')", "3.5"},
        {"jet_add(2, 3)", "5"},
        {"jet_add('a', NULL)", "NULL"},
    });
}

TEST_F(Functions, DatesAreReadAsOnARussianComputer)
{
    expectAll({
        {"jet_cdate('1.09.2020')", "44075.0"},
        {"jet_cdate('01.09.20 12:00')", "44075.5"},
        {"jet_cdate('2020-09-01')", "44075.0"},
        {"jet_cdate('09/13/2020')", "44087.0"}, // no thirteenth month
        {"jet_cdate('6:00')", "0.25"},
        {"jet_cdate(44075)", "44075.0"},
        {"jet_isdate('31.02.2020')", "0"},
        {"jet_isdate('29.02.2020')", "-1"},
        {"jet_isdate('1.2.3.4')", "0"},
        {"jet_isdate('12')", "0"},
        {"jet_isdate('10:60')", "0"},
        {"jet_isdate(NULL)", "0"},
        {"jet_isnumeric('1,5 ')", "-1"},
        {"jet_isnumeric('1x')", "0"},
        {"jet_isnumeric('')", "0"},
        {"jet_isnumeric(NULL)", "0"},
        {"jet_datevalue('01.09.2020 12:00')", "44075.0"},
        {"jet_timevalue('01.09.2020 12:00')", "0.5"},
    });
}

TEST_F(Functions, DatePartsAndSums)
{
    expectAll({
        {"jet_year(44075.99)", "2020"},
        {"jet_month('01.09.2020')", "9"},
        {"jet_day(-1.25)", "29"},
        {"jet_hour(-1.25)", "6"},
        {"jet_weekday(44075)", "3"},    // a Tuesday
        {"jet_weekday(44075, 2)", "2"}, // in a week from Monday
        {"jet_weekday(44075, 0)", "2"},
        {"jet_weekday(-1)", "6"}, // 29 December 1899, a Friday
        {"jet_dateserial(2020, 13, 0)", "44196.0"},
        {"jet_dateserial(20, 9, 1)", "44075.0"},
        {"jet_dateadd('m', 1, 43861)", "43890.0"},     // 31 January to 29 February 2020
        {"jet_dateadd('yyyy', -1, 43890)", "43524.0"}, // 29 to 28 February
        {"jet_dateadd('d', 30, 44075)", "44105.0"},
        {"jet_dateadd('h', -6, 0)", "-1.75"}, // 29 December 1899, 18:00
        {"jet_dateadd('q', 1, NULL)", "NULL"},
        {"jet_datediff('yyyy', 44196, 44197)", "1"},
        {"jet_datediff('m', 44197, 44196)", "-1"},
        {"jet_datediff('d', 44075.9, 44076.1)", "1"},
        {"jet_datediff('n', 0.4999, 0.5)", "1"},
        {"jet_datediff('w', 44075, 44088)", "1"},
        {"jet_datediff('ww', 44078, 44080)", "1"},    // Friday to Sunday
        {"jet_datediff('ww', 44078, 44080, 2)", "0"}, // no Monday between
        {"jet_datepart('ww', 44197, 2, 2)", "53"},    // 1 January 2021 in ISO weeks
        {"jet_datepart('ww', 44197)", "1"},
        {"jet_datepart('q', 44075)", "3"},
        {"jet_datepart('y', 44075)", "245"},
    });
}

TEST_F(Functions, FormatWritesPatterns)
{
    expectAll({
        {"jet_formatdate(44075, 'dd.mm.yyyy')", "01.09.2020"},
        {"jet_formatdate(44075, 'MM\\/dd\\/yyyy')", "09/01/2020"},
        {"jet_formatdate(44075, 'mm/dd/yy')", "09.01.20"}, // "/" is the local separator
        {"jet_formatdate(44075.3472223, 'hh:mm:ss')", "08:20:00"},
        {"jet_formatdate(44075.75, 'h:nn AM/PM')", "6:00 PM"},
        {"jet_formatdate(44075, 'd mmmm yyyy, dddd')", "1 Сентябрь 2020, вторник"},
        {"jet_formatdate(44075, 'ddd dd mmm')", "Вт 01 сен"},
        {"jet_formatdate(44075, 'Long Date')", "1 сентября 2020 г."},
        {"jet_formatdate(44075, '\"день\" d')", "день 1"},
        {"jet_formatdate(NULL, 'dd')", ""},
        {"jet_format(1.5, '0.00')", "1,50"},
        {"jet_format(2.675, '0.00')", "2,68"},
        {"jet_format(0.125, '0.00')", "0,13"}, // away from zero, unlike Round
        {"jet_format(5, '000')", "005"},
        {"jet_format(1234567.891, '#,##0.0')", "1\u00A0234\u00A0567,9"},
        {"jet_format(0.256, '0.0%')", "25,6%"},
        {"jet_format(-3, '0;(0)')", "(3)"},
        {"jet_format(-0.001, '0.0')", "0,0"},
        {"jet_format(0, '0;-0;\"нет\"')", "нет"},
        {"jet_format(0.5, '#.##')", ",5"},
        {"jet_format(12345, '0.00E+00')", "1,23E+04"},
        {"jet_format(9991234567, '(000) 000-00-00')", "(999) 123-45-67"},
        {"jet_format('31.12.2020', 'yyyy')", "2020"},
        {"jet_format('слово', '0.0')", "слово"},
        {"jet_format(NULL, '0')", ""},
        {"jet_format(-1, 'Yes/No')", "Да"},
        {"jet_str(5)", " 5"},
        {"jet_str(-1.5)", "-1.5"},
        {"jet_cstr(1.5)", "1,5"},
    });
}

TEST_F(Functions, LikeKnowsJetsWildcards)
{
    const struct
    {
        const char* text;
        const char* pattern;
        bool matches;
    } cases[] = {
        {"Иванов", "ив*", true},
        {"Иванов", "*ОВ", true},
        {"Иванов", "*в*в", true},
        {"Иванов", "?ванов", true},
        {"Иванов", "?иванов", false},
        {"Семён", "семен", false},
        {"Семён", "СЕМЁН", true},
        {"ПО-21", "по-##", true},
        {"ПО-2а", "по-##", false},
        {"ёж", "[а-я]ж", true},
        {"ёж", "[!а-я]ж", false},
        {"5", "[!a-z]", true},
        {"a*b", "a[*]b", true},
        {"aXb", "a[*]b", false},
        {"", "*", true},
        {"", "?", false},
        {"a", "a[]", true},
        {"!", "[!]", true},
        {"a-", "a[a-]", true},
        {"aaaaaaaaaaaaaaaaaaaab", "*a*a*a*a*a*c", false},
        {"50%", "50%", true},
        {"500", "50_", false},
        // Ranges and equality follow the General order: signs, digits, letters.
        {"Ё", "[е-ж]", true},
        {"ё", "[а-е]", false},
        {"ж", "[ё-ж]", true},
        {"е", "[ё-ж]", false},
        {"Й", "[и-к]", true},
        {"É", "[a-f]", true},
        {"é", "É", true},
        {"_", "[0-я]", false},
        {"_", "[!0-я]", true},
        {"-", "[#-/]", false},
        {"5", "[ -z]", true},
        {"Ә", "Ө", false}, // neither has a place of its own
        {"Ә", "Ә", true},
        {" ", "Ѐ", false},
        {"x", "[Я-а]", false},
        {"[", "[[]", true},
        {"]", "]", true},
        {"?", "[?]", true},
        {"a", "[?]", false},
        {"#", "[#]", true},
        {"5", "[#]", false},
        {"!", "[a!]", true},
        {"Петрова-Водкина", "*-в*", true},
        {"Петрова", "петрова ", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(matchesPattern(c.text, c.pattern), c.matches) << c.text << " LIKE " << c.pattern;
    EXPECT_THROW(matchesPattern("a", "[a"), Error);
}

TEST_F(Functions, RefusesValuesWithoutAResult)
{
    const struct
    {
        const char* expression;
        Fault fault;
    } cases[] = {
        {"jet_clng('12abc')", Fault::Type},
        {"jet_cint(40000)", Fault::Overflow},
        {"jet_cbyte(-1)", Fault::Overflow},
        {"jet_left('a', -1)", Fault::Type},
        {"jet_mid('a', 0)", Fault::Type},
        {"jet_divide(1, 0)", Fault::Overflow},
        {"jet_intdiv(1, 0.4)", Fault::Overflow},
        {"jet_mod(1, 0)", Fault::Overflow},
        {"jet_cdate('завтра')", Fault::Type},
        {"jet_dateadd('x', 1, 1)", Fault::Type},
        {"jet_dateadd('yyyy', 9000, 1)", Fault::Overflow},
        {"jet_sqr(-1)", Fault::Type},
        {"jet_year(1e10)", Fault::Overflow},
        {"jet_space(1e9)", Fault::Overflow},
        {"jet_replace(jet_space(60000), ' ', jet_space(60000))", Fault::Overflow},
        {"jet_power(10, 400)", Fault::Overflow},
        {"jet_dateserial(2147483647, 2147483647, 1)", Fault::Overflow},
        {"jet_asc('')", Fault::Type},
        {"jet_add(1, 'x')", Fault::Type},
    };
    for (const auto& c : cases) {
        try {
            ADD_FAILURE() << c.expression << " gives " << evaluate(c.expression);
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), c.fault) << c.expression << ": " << error.what();
        }
    }
}

TEST_F(Functions, AggregatesOverGroups)
{
    const std::string rows = " FROM (SELECT 2 AS x UNION ALL SELECT NULL UNION ALL SELECT 4)";
    EXPECT_EQ(evaluate("jet_first(x)" + rows), "2");
    EXPECT_EQ(evaluate("jet_last(x)" + rows), "4");
    EXPECT_EQ(evaluate("jet_var(x)" + rows), "2.0");
    EXPECT_EQ(evaluate("jet_varp(x)" + rows), "1.0");
    EXPECT_EQ(evaluate("jet_stdevp(x)" + rows), "1.0");
    EXPECT_EQ(evaluate("jet_stdev(x)" + rows + " WHERE x = 2"), "NULL");
    EXPECT_EQ(evaluate("jet_first(x)" + rows + " WHERE x > 9"), "NULL");
}

TEST_F(Functions, CollationComparesWithoutCase)
{
    expectAll({
        {"'ИВАНОВ' = 'иванов' COLLATE JET", "1"},
        {"'Семён' = 'Семен' COLLATE JET", "0"},
        {"'ёлка' < 'жук' COLLATE JET AND 'елка' < 'ёлка' COLLATE JET", "1"},
        {"'a ' = 'A' COLLATE JET", "1"},
    });
}

// Whatever the translator may write must be there, with as many arguments.
TEST_F(Functions, EveryListedNameIsRegistered)
{
    const auto missing = [&](std::span<const FunctionName> names) {
        for (const FunctionName& function : names) {
            for (const int count : {function.minimum, std::max(function.maximum, 2)}) {
                std::string call = "jet_" + std::string(function.name) + "(";
                for (int i = 0; i < count; ++i)
                    call += i == 0 ? "NULL" : ", NULL";
                const std::string result = evaluate(call + ")");
                EXPECT_EQ(result.find("no such function"), std::string::npos) << call;
                EXPECT_EQ(result.find("wrong number"), std::string::npos) << call;
                if (function.maximum == function.minimum)
                    break;
            }
        }
    };
    missing(functions());
    missing(operatorFunctions());
}

} // namespace

} // namespace jet::sql
