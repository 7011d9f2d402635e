#include "jet/error.h"
#include "jet/sql/dateliteral.h"
#include "jet/sqltext.h"
#include "journalconnection.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace jet::sql {

namespace {

std::string shown(std::string_view literal)
{
    const auto date = parseDateLiteral(literal);
    return date ? sql::date(*date) : "none";
}

TEST(SqlText, TextsComeBackAsTheyWere)
{
    JournalConnection connection;
    const std::string texts[] = {
        "",
        "Иванов",
        "О'Нил \"Б\"",
        "\"",
        "\"\"",
        "'; DROP TABLE SPSTUD; --",
        "[a].[b] & c # 1/2/2022 # d",
        "строка\r\nвторая\tс табуляцией",
        "Ё 中 😀 \xC2\xA0",
        " пробелы по краям ",
        "a%b_c*d?e",
    };
    for (const std::string& each : texts)
        EXPECT_EQ(connection.value(text(each)), each);
    EXPECT_EQ(connection.value("len(" + text(std::string("a\0b", 3)) + ")"), "3");
}

TEST(SqlText, TextsStayWhereTheyArePut)
{
    JournalConnection connection;
    const std::string surname = "Ю\"); DELETE * FROM SPSTUD; '#]";
    connection.rows("INSERT INTO SPSTUD (ID, FAM) VALUES (1, " + text(surname) + ");");
    EXPECT_EQ(connection.rows("SELECT FAM FROM SPSTUD WHERE ((FAM)=" + text(surname) + ");"),
              std::vector<std::string>{surname});
    connection.rows("UPDATE SPSTUD SET FAM = " + text(surname + surname) + " WHERE ID = 1");
    EXPECT_EQ(connection.rows("SELECT FAM FROM SPSTUD"),
              std::vector<std::string>{surname + surname});
}

// A date in a condition must equal the stored one to the last bit, or no row is found.
TEST(SqlText, TimesComeBackToTheLastBit)
{
    JournalConnection connection;
    const DateTime days[] = {DateTime::of(2022, 9, 1), DateTime::of(1899, 12, 30),
                             DateTime::of(1890, 3, 1)};
    for (const DateTime& day : days) {
        const DateTime::Parts p = day.parts();
        for (int second = 0; second < 86400; second += 61) {
            const DateTime moment =
                DateTime::of(p.year, p.month, p.day, second / 3600, second / 60 % 60, second % 60);
            ASSERT_EQ(connection.number(date(moment)), moment.days) << date(moment);
        }
    }
}

TEST(SqlText, DatesAreMonthFirst)
{
    EXPECT_EQ(date(DateTime::of(2022, 9, 1)), "#09/01/2022#");
    EXPECT_EQ(date(DateTime::of(2022, 9, 1, 8, 5, 0)), "#09/01/2022 08:05:00#");
    EXPECT_EQ(date(DateTime::of(999, 12, 31)), "#12/31/0999#");
}

TEST(SqlText, NumbersAreReadBackExactly)
{
    JournalConnection connection;
    const double numbers[] = {0, 0.1, -2.5, 1.0 / 3, 1e300, 5e-324, 123456789.125, -1e-7};
    for (const double each : numbers)
        EXPECT_EQ(connection.number(number(each)), each);
    EXPECT_EQ(connection.value(number(std::numeric_limits<std::int64_t>::max())),
              "9223372036854775807");
    EXPECT_EQ(connection.value(number(-7)), "-7");
}

TEST(SqlText, NamesThatJetForbidsAreRefused)
{
    EXPECT_EQ(name("Count-ID"), "[Count-ID]");
    EXPECT_EQ(name("Имя поля"), "[Имя поля]");
    for (const char* each : {"", " a", "a.b", "a!b", "a]b", "a[b", "a`b", "a\nb"})
        EXPECT_THROW(name(each), Error) << each;
    EXPECT_NO_THROW(name(std::string(64, 'x')));
    EXPECT_THROW(name(std::string(65, 'x')), Error);
}

TEST(DateLiteral, ReadsAllSpellings)
{
    const struct
    {
        const char* literal;
        const char* meaning;
    } cases[] = {
        {"09/01/2022", "#09/01/2022#"},
        {"9/1/22", "#09/01/2022#"},
        {" 09/01/22 ", "#09/01/2022#"},
        {"1/2/29", "#01/02/2029#"},
        {"1/2/30", "#01/02/1930#"},
        {"1/2/99", "#01/02/1999#"},
        {"2022-09-01", "#09/01/2022#"},
        {"2022/9/1", "#09/01/2022#"},
        {"6.30.2023", "#06/30/2023#"},
        {"01.09.2022", "#01/09/2022#"},
        {"13.09.2022", "#09/13/2022#"},
        {"30/06/2023", "#06/30/2023#"},
        {"9-1-2022", "#09/01/2022#"},
        {"02/29/2024", "#02/29/2024#"},
        {"09/01/2022 8:05", "#09/01/2022 08:05:00#"},
        {"09/01/2022 23:59:59", "#09/01/2022 23:59:59#"},
        {"09/01/2022 12:00 AM", "#09/01/2022#"},
        {"09/01/2022 1:30:00 pm", "#09/01/2022 13:30:00#"},
        {"8:30", "#12/30/1899 08:30:00#"},
        {"01/01/1890 06:00", "#01/01/1890 06:00:00#"},
        {"1/1/100", "#01/01/0100#"},
        {"12/31/9999", "#12/31/9999#"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(shown(each.literal), each.meaning) << each.literal;
}

TEST(DateLiteral, RefusesWhatIsNoDate)
{
    for (const char* each : {"",
                             " ",
                             "1",
                             "1/2",
                             "1/2/",
                             "13/13/2022",
                             "02/29/2023",
                             "4/31/2022",
                             "0/1/2022",
                             "1/0/2022",
                             "1/1/10000",
                             "1/1/99999999999",
                             "2022-13-01",
                             "09/01/2022 24:00",
                             "09/01/2022 8",
                             "09/01/2022 8:60",
                             "09/01/2022 13:00 PM",
                             "09/01/2022x",
                             "a/b/c",
                             "1/2/2022 3:4:5:6",
                             "-1/2/2022",
                             "1//2022"})
        EXPECT_EQ(shown(each), "none") << each;
}

} // namespace

} // namespace jet::sql
