#include "tests/cli/jurnalctl.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

using jet::test::bytesOf;

namespace {

class Files : public testing::Test
{
protected:
    std::string file() const { return (m_folder / "журнал 1.mdb").string(); }
    void create() const { ASSERT_EQ(jurnalctl({"create", file()}).status, 0); }
    void write(const std::vector<std::uint8_t>& bytes) const
    {
        std::ofstream(file(), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    // The command must fail with one line on standard error and nothing else.
    static void expectRefused(const std::vector<std::string>& arguments, const std::string& part)
    {
        const auto result = jurnalctl(arguments);
        EXPECT_EQ(result.status, 1) << arguments.front();
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        EXPECT_NE(result.err.find(part), std::string::npos) << result.err;
    }

private:
    jet::test::TemporaryFolder m_folder;
};

} // namespace

TEST(Usage, WrongCommandLinesEndWithTwo)
{
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"nonsense"},
        {"create"},
        {"create", "a.mdb", "b.mdb"},
        {"tables", "a.mdb", "--nonsense"},
        {"sql", "a.mdb"},
        {"sql", "a.mdb", "SELECT 1", "--json", "--csv"},
        {"attendance", "a.mdb", "--group", "1", "--year", "2024"},
        {"attendance", "a.mdb", "--group", "1", "--month", "13", "--year", "2024"},
        {"attendance", "a.mdb", "--group", "1", "--month", "1", "--year", "2024", "--mode", "week"},
        {"mark", "a.mdb", "--student", "x", "--discipline", "1", "--date", "2024-01-01", "--lesson",
         "1"},
    };
    for (const auto& arguments : wrong) {
        const auto result = jurnalctl(arguments);
        EXPECT_EQ(result.status, 2) << (arguments.empty() ? "nothing" : arguments.front());
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err, "");
    }
}

TEST(Usage, HelpAndVersionAreNoErrors)
{
    EXPECT_EQ(jurnalctl({"--help"}).status, 0);
    EXPECT_EQ(jurnalctl({"sql", "--help"}).status, 0);
    EXPECT_EQ(jurnalctl({"--version"}).out, "1.0.0\n");
}

TEST_F(Files, CreateMakesAFileOnce)
{
    const auto result = jurnalctl({"create", file()});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const auto before = bytesOf(file());
    expectRefused({"create", file()}, "не создан");
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(jurnalctl({"check", file()}).status, 0);
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(Files, CheckTellsWhatTheDesktopProgramWould)
{
    expectRefused({"check", file()}, "Файл базы данных " + file() + " не найден!");
    create();
    ASSERT_EQ(jurnalctl({"sql", file(), "UPDATE RASP SET appMajor = 9"}).status, 0);
    const auto newer = jurnalctl({"check", file()});
    EXPECT_EQ(newer.status, 0);
    EXPECT_NE(newer.out.find("Версия базы данных новее, чем версия программы."), std::string::npos);
    ASSERT_EQ(jurnalctl({"sql", file(), "ALTER TABLE SPSTUD DROP COLUMN FAM"}).status, 0);
    expectRefused({"check", file()}, "В таблице: SPSTUD отсутствует поле: FAM.");
}

TEST_F(Files, DeepCheckEndsWithItsTotals)
{
    create();
    const auto result = jurnalctl({"check", file(), "--deep"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(result.out.starts_with("Проверено: таблиц 28, строк ")) << result.out;
    EXPECT_TRUE(result.out.ends_with("Ошибок: 0, замечаний: 0.\nФайл в порядке.\n")) << result.out;
    const auto json = jurnalctl({"check", file(), "--deep", "--json"}).json();
    ASSERT_TRUE(json.is_object());
    EXPECT_EQ(json["tables"], 28);
    EXPECT_EQ(json["harmful"], 0);
    EXPECT_EQ(json["findings"], nlohmann::json::array());
    const auto alone = jurnalctl({"check", file(), "--json"});
    EXPECT_EQ(alone.status, 2);
    EXPECT_NE(alone.err.find("--json указывают только вместе с параметром --deep"),
              std::string::npos)
        << alone.err;
}

// The free field of page 3, the definition of MSysACEs, and the mark of page 2, without
// which there is no catalogue. Encoded pages are XORed, so a flipped bit stays one.
TEST_F(Files, DeepCheckReportsDamageAndLeavesTheFileAsItIs)
{
    create();
    const auto sound = bytesOf(file());
    struct Case
    {
        std::size_t at;
        const char* line;
        const char* table;
        int page;
    };
    const Case cases[] = {
        {3 * 4096 + 2, "Ошибка: таблица MSysACEs: страница 3: ", "MSysACEs", 3},
        {2 * 4096 + 12, "Ошибка: таблица MSysObjects: страница 2: ", "MSysObjects", 2},
    };
    for (const Case& c : cases) {
        auto damaged = sound;
        damaged[c.at] ^= 1;
        write(damaged);
        const auto result = jurnalctl({"check", file(), "--deep"});
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.out.find(c.line), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("\nПроверено: таблиц "), std::string::npos) << result.out;
        EXPECT_TRUE(result.err.starts_with("Файл поврежден, найдено ошибок: ")) << result.err;
        EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
        const auto json = jurnalctl({"check", file(), "--deep", "--json"});
        EXPECT_EQ(json.status, 1);
        const auto document = json.json();
        ASSERT_TRUE(document.is_object()) << json.out;
        EXPECT_GT(document["harmful"], 0);
        EXPECT_EQ(document["findings"][0]["severity"], "harmful");
        EXPECT_EQ(document["findings"][0]["table"], c.table);
        EXPECT_EQ(document["findings"][0]["page"], c.page);
        EXPECT_TRUE(bytesOf(file()) == damaged);
    }
}

TEST_F(Files, DeepCheckEndsWhateverIsDamaged)
{
    create();
    const auto sound = bytesOf(file());
    constexpr std::size_t kPage = 4096;
    for (std::size_t page = 1; page < sound.size() / kPage; page += 7) {
        auto damaged = sound;
        for (std::size_t at = 40; at < 60; ++at)
            damaged[page * kPage + at] ^= 0xFF;
        write(damaged);
        const auto result = jurnalctl({"check", file(), "--deep"});
        EXPECT_TRUE(result.status == 0 || result.status == 1)
            << "page " << page << ", status " << result.status << ": " << result.err;
    }
}

TEST_F(Files, TablesCountsRows)
{
    create();
    const auto tables = jurnalctl({"tables", file(), "--json"}).json();
    ASSERT_TRUE(tables.is_array());
    EXPECT_EQ(tables.size(), 24U);
    EXPECT_NE(std::ranges::find(tables, nlohmann::json({{"name", "MONTH"}, {"rows", 12}})),
              tables.end());
    EXPECT_NE(jurnalctl({"tables", file()}).out.find("MONTH    12"), std::string::npos);
    expectRefused({"tables", file() + "x"}, "");
}

TEST_F(Files, SchemaIsDaosView)
{
    create();
    const auto schema = jurnalctl({"schema", file(), "month", "--json"}).json();
    const auto expected = nlohmann::json::parse(R"([{"name": "MONTH",
        "fields": [{"name": "MN", "type": 2, "size": 1, "attributes": 1},
                   {"name": "NAIM", "type": 10, "size": 15, "attributes": 2}],
        "indexes": [{"name": "PrimaryKey", "fields": "+MN", "primary": true, "unique": true}]}])");
    EXPECT_EQ(schema, expected);
    EXPECT_EQ(jurnalctl({"schema", file(), "--json"}).json().size(), 24U);
    EXPECT_NE(jurnalctl({"schema", file(), "EXAM"}).out.find("IDE   COUNTER  4       17"),
              std::string::npos);
    expectRefused({"schema", file(), "NOSUCH"}, "NOSUCH");
}

TEST_F(Files, SqlPrintsRowsAndCountsChanges)
{
    create();
    const auto changed =
        jurnalctl({"sql", file(),
                   "INSERT INTO SPSTUD (FAM, IM, D_R, POL) VALUES (\"Ли, \"\"Бо\"\"\", \"a\", "
                   "#02/29/2004#, True)"});
    EXPECT_EQ(changed.status, 0) << changed.err;
    EXPECT_EQ(changed.out, "1\n");
    ASSERT_EQ(jurnalctl({"sql", file(), "INSERT INTO SPSTUD (FAM) VALUES (\"Ю\")"}).status, 0);
    const auto before = bytesOf(file());
    const std::string select = "SELECT ID, FAM, D_R, POL, ID / 4 AS Q FROM SPSTUD ORDER BY ID";
    EXPECT_EQ(jurnalctl({"sql", file(), select, "--json"}).json(), nlohmann::json::parse(R"({
        "columns": ["ID", "FAM", "D_R", "POL", "Q"],
        "rows": [[1, "Ли, \"Бо\"", "2004-02-29", true, 0.25], [2, "Ю", null, false, 0.5]]})"));
    EXPECT_EQ(jurnalctl({"sql", file(), select, "--csv"}).out,
              "ID,FAM,D_R,POL,Q\r\n1,\"Ли, \"\"Бо\"\"\",2004-02-29,-1,0.25\r\n2,Ю,,0,0.5\r\n");
    EXPECT_EQ(jurnalctl({"sql", file(), "SELECT ID, FAM FROM SPSTUD ORDER BY ID"}).out,
              "ID  FAM\n--  --------\n1   Ли, \"Бо\"\n2   Ю\n");
    EXPECT_TRUE(bytesOf(file()) == before) << "a SELECT changed the file";
    EXPECT_EQ(jurnalctl({"sql", file(), "DELETE * FROM SPSTUD"}).out, "2\n");
    EXPECT_EQ(
        jurnalctl({"sql", file(), "select * from spstud where id=0", "--json"}).json()["rows"],
        nlohmann::json::array());
}

TEST_F(Files, SqlErrorsAreToldInOneLine)
{
    create();
    const auto before = bytesOf(file());
    expectRefused({"sql", file(), "SELECT FROM"}, "");
    expectRefused({"sql", file(), "SELECT NOSUCH FROM SPSTUD"}, "NOSUCH");
    expectRefused({"sql", file(), "UPDATE RASP SET MNJ = 1000"}, "");
    expectRefused({"sql", file(), "DROP TABLE NOSUCH"}, "NOSUCH");
    EXPECT_TRUE(bytesOf(file()) == before);
}
