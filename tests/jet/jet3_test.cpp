// Files of Access 95/97, which are read into memory and shown as databases of the present format.

#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/store.h"
#include "jet/text.h"
#include "tests/support/jet3file.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace jet;
using test::Jet3File;

namespace {

using Rows = std::vector<std::vector<Value>>;

// Letters of code page 1251, by rule and not by the table under test.
std::string cp1251(std::string_view utf8)
{
    std::string out;
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t c = nextCodePoint(utf8, at);
        const unsigned byte = c < 0x80    ? c
                              : c == U'Ё' ? 0xA8
                              : c == U'ё' ? 0xB8
                              : c == U'№' ? 0xB9
                                          : c - U'А' + 0xC0;
        out += static_cast<char>(byte);
    }
    return out;
}

Jet3File::Bytes ru(std::string_view utf8)
{
    return Jet3File::text(cp1251(utf8));
}

std::unique_ptr<Database> open(const std::vector<std::uint8_t>& bytes)
{
    static test::MemoryFiles files;
    files.setContent("old.mdb", bytes);
    return Database::open(files, "old.mdb", OpenMode::Exclusive);
}

void save(const std::vector<std::uint8_t>& bytes, const std::filesystem::path& path)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// The database as it stands in memory, as a file that others can check.
void saveCopy(Database& database, const std::filesystem::path& path)
{
    Pager& pager = database.store().pager();
    std::vector<std::uint8_t> bytes;
    for (PageNumber page = 0; page < pager.pageCount(); ++page) {
        const PageRef ref = pager.read(page);
        bytes.insert(bytes.end(), ref.bytes().begin(), ref.bytes().end());
    }
    save(bytes, path);
}

std::string memoOf(std::size_t number)
{
    constexpr std::size_t kLengths[] = {0, 5, 32, 33, 1500, 2034, 2035, 4060, 9000};
    std::string memo;
    for (std::size_t length = 0; length < kLengths[number % std::size(kLengths)]; ++length)
        memo += number % 2 == 0 ? "Ж" : "m";
    return memo;
}

Jet3File::Table people(int rows)
{
    Jet3File::Table table{
        cp1251("Студенты"), {{"ID", 4, 4, 7}, {cp1251("ФИО"), 10, 60, 2}, {"Memo", 12, 0, 2}}, {}};
    for (int i = 1; i <= rows; ++i)
        table.rows.push_back({Jet3File::number(static_cast<unsigned>(i), 4),
                              ru("Ёлкин № " + std::to_string(i)),
                              ru(memoOf(static_cast<std::size_t>(i)))});
    table.indexes = {{"PK", {0}, 9, 1}, {cp1251("Имя"), {1}, 0}};
    table.lastCounter = static_cast<std::uint32_t>(rows + 40);
    return table;
}

Rows peopleRows(int rows)
{
    Rows expected;
    for (int i = 1; i <= rows; ++i)
        expected.push_back(
            {i, "Ёлкин № " + std::to_string(i), memoOf(static_cast<std::size_t>(i))});
    return expected;
}

TEST(Jet3, SampleReadsLikeAnyOther)
{
    const auto sample = test::sampleFile("test-v1997.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto database = Database::open(*sample, OpenMode::Exclusive);
    EXPECT_TRUE(database->readOnly());
    EXPECT_EQ(database->path(), *sample);
    EXPECT_EQ(database->tableNames(),
              (std::vector<std::string>{"Table1", "Table2", "Table3", "Table4"}));
    EXPECT_EQ(database->rows("SELECT * FROM Table1 WHERE D = 222"),
              (Rows{{"abcdefg", "hijklmnop", 2, 222, 333333333, 444.555, DateTime::of(1974, 9, 21),
                     Currency{35000}, true}}));
    EXPECT_EQ(database->tableDef("Table2").fields.size(), 89u);
    EXPECT_EQ(database->tableDef("Table2").fields[88].size, 50);
    EXPECT_EQ(database->tableDef("Table4").fields[1].type, FieldType::Guid);
    ASSERT_NE(database->tableDef("Table1").index("PrimaryKey"), nullptr);
    EXPECT_TRUE(database->tableDef("Table1").index("PrimaryKey")->primary);
    const test::TemporaryFolder folder;
    saveCopy(*database, folder / "now.mdb");
    EXPECT_EQ(test::structuralErrors(folder / "now.mdb").value_or(""), "");
}

TEST(Jet3, EveryPlaceOfRowsAndMemosIsRead)
{
    const struct
    {
        const char* what;
        int rows;
        std::uint32_t key;
        int deleteEvery, moveEvery;
        bool mapOfMaps;
    } cases[] = {
        {"plain", 200, 0, 0, 0, false},
        {"encoded", 200, 0xA7B773E0, 0, 0, false},
        {"deleted and moved rows", 500, 0, 3, 4, false},
        {"map by reference", 100, 0, 0, 0, true},
        {"all at once, beyond the reach of an inline map", 1100, 77, 5, 7, false},
        {"no row", 0, 0, 0, 0, false},
    };
    for (const auto& c : cases) {
        Jet3File file;
        file.key = c.key;
        Jet3File::Table table = people(c.rows);
        table.deleteEvery = c.deleteEvery;
        table.moveEvery = c.moveEvery;
        table.mapOfMaps = c.mapOfMaps;
        file.tables.push_back(table);
        const auto bytes = file.bytes();
        const auto database = open(bytes);
        EXPECT_EQ(database->rows("SELECT * FROM Студенты ORDER BY ID"), peopleRows(c.rows))
            << c.what;
        const test::TemporaryFolder folder;
        saveCopy(*database, folder / "now.mdb");
        EXPECT_EQ(test::structuralErrors(folder / "now.mdb").value_or(""), "") << c.what;
    }
}

// mdbtools reads Jet 3 too, so that the writer and the reader here cannot be wrong together.
TEST(Jet3, OthersReadTheSameInTheFilesOfTheseTests)
{
    Jet3File file;
    Jet3File::Table table = people(150);
    table.deleteEvery = 3;
    table.moveEvery = 4;
    Jet3File::Table wide{"Wide", {{"N", 4, 4, 3}}, {}};
    for (int column = 0; column < 7; ++column)
        wide.columns.push_back({"T" + std::to_string(column), 10, 255, 2});
    for (unsigned row = 0; row < 60; ++row) {
        wide.rows.push_back({Jet3File::number(row, 4)});
        for (unsigned column = 0; column < 7; ++column)
            wide.rows.back().push_back(
                ru(std::string(row * 37 * (column + 1) % 256, static_cast<char>('a' + column))));
    }
    file.tables = {table, wide};
    const auto bytes = file.bytes();
    const test::TemporaryFolder folder;
    save(bytes, folder / "old.mdb");
    const auto database = open(bytes);
    for (const std::string name : {"Студенты", "Wide"}) {
        const auto theirs = test::mdbtools(
            "mdb-export", {"-H", "-Q", "-d", "|", (folder / "old.mdb").string(), name});
        if (!theirs)
            GTEST_SKIP();
        std::multiset<std::string> lines, ours;
        std::istringstream stream(*theirs);
        for (std::string line; std::getline(stream, line);)
            lines.insert(line);
        for (const auto& row : database->rows("SELECT * FROM " + name)) {
            std::string line;
            for (const Value& value : row)
                line += (line.empty() ? "" : "|") + value.toText();
            ours.insert(line);
        }
        EXPECT_EQ(ours, lines) << name;
    }
}

TEST(Jet3, ColumnsOfEveryTypeAreRead)
{
    Jet3File file;
    const Jet3File::Bytes guid = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    file.tables.push_back(
        {"T",
         {{"B", 1, 1, 3},
          {"U", 2, 1, 3},
          {"I", 3, 2, 3},
          {"L", 4, 4, 3},
          {"C", 5, 8, 3},
          {"S", 6, 4, 3},
          {"D", 7, 8, 3},
          {"W", 8, 8, 3},
          {"X", 9, 20, 2},
          {"T", 10, 9, 2},
          {"O", 11, 0, 2},
          {"M", 12, 0, 2},
          {"G", 15, 16, 3},
          {"F", 10, 4, 3},
          {"V", 4, 4, 2},
          {"Z", 0x2A, 6, 2}},
         {{Jet3File::Bytes(), Jet3File::number(200, 1), Jet3File::number(0xFFFE, 2),
           Jet3File::number(0xFFFFFFFD, 4), Jet3File::number(12345, 8),
           Jet3File::number(0x3FC00000, 4), Jet3File::real(-2.5), Jet3File::real(-1.25),
           Jet3File::Bytes{1, 0, 2}, Jet3File::text(""), Jet3File::Bytes(5000, 7),
           Jet3File::text(""), guid, ru("Да  "), Jet3File::number(9, 4), Jet3File::Bytes{9, 8}},
          Jet3File::Row(16)}});
    const auto database = open(file.bytes());
    const Guid printed{{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};
    std::vector<Value> nulls(16);
    nulls[0] = false;
    EXPECT_EQ(database->rows("SELECT * FROM T"),
              (Rows{{true, 200, -2, -3, Currency{12345}, 1.5, -2.5, DateTime{-1.25}, Bytes{1, 0, 2},
                     "", Bytes(5000, 7), "", printed, "Да  ", 9, Bytes{9, 8}},
                    nulls}));
    EXPECT_EQ(database->tableDef("T").field("T")->size, 9);
    EXPECT_EQ(database->tableDef("T").field("Z")->type, FieldType::Binary);
    EXPECT_TRUE(database->tableDef("T").field("V")->attributes & attribute::kVariable);
}

Jet3File withRelationship()
{
    Jet3File file;
    Jet3File::Table groups{"Groups", {{"IDG", 4, 4, 3}, {"Name", 10, 20, 2}}, {}};
    groups.rows = {{Jet3File::number(1, 4), ru("ёж")}, {Jet3File::number(2, 4), ru("Еж")}};
    groups.indexes = {{"PK", {0}, 9, 1}, {".rB", {0}, 9, 2, 1, 1, 1}, {"Unique", {1}, 1}};
    // KKD: names Required and DefaultValue; of column Name the first True, the second "Ы"
    groups.properties = {0x4B, 0x4B, 0x44, 0,   0x1E, 0,   0,   0,   0x80, 0,   8,   0,   'R', 'e',
                         'q',  'u',  'i',  'r', 'e',  'd', 12,  0,   'D',  'e', 'f', 'a', 'u', 'l',
                         't',  'V',  'a',  'l', 'u',  'e', 32,  0,   0,    0,   1,   0,   10,  0,
                         0,    0,    4,    0,   'N',  'a', 'm', 'e', 9,    0,   1,   1,   0,   0,
                         1,    0,    0xFF, 9,   0,    1,   12,  1,   0,    1,   0,   0xDB};
    groups.properties[4] = 6 + 2 + 8 + 2 + 12;
    groups.properties[34] = 6 + 10 + 9 + 9;
    Jet3File::Table students{"Students", {{"ID", 4, 4, 3}, {"IDG", 4, 4, 3}}, {}};
    students.rows = {{Jet3File::number(7, 4), Jet3File::number(1, 4)}};
    students.indexes = {{"PK", {0}, 9, 1}, {"GS", {1}, 0, 2, 2, 1, 0}};
    file.tables = {groups, students};
    file.objects = {{0x80000000, 0x0F000001, cp1251("Запрос"), 5, 0},
                    {0x80000001, 0x0F000003, "GS", 8, 0}};
    file.queries = {{Jet3File::number(0x80000000, 4), Jet3File::number(5, 1), Jet3File::Bytes{0},
                     Jet3File::text("Groups"), std::nullopt, std::nullopt, std::nullopt}};
    file.relationships = {{ru("GS"), Jet3File::number(0, 4), Jet3File::number(1, 4),
                           Jet3File::number(0, 4), ru("Students"), ru("IDG"), ru("Groups"),
                           ru("IDG")}};
    return file;
}

TEST(Jet3, IndexesRelationshipsQueriesAndPropertiesGoOver)
{
    const auto database = open(withRelationship().bytes());
    const TableDef groups = database->tableDef("Groups");
    EXPECT_TRUE(groups.field("Name")->required);
    EXPECT_EQ(groups.field("Name")->defaultValue, "Ы");
    ASSERT_NE(groups.index("PK"), nullptr);
    EXPECT_TRUE(groups.index("PK")->primary);
    EXPECT_EQ(groups.index(".rB"), nullptr);
    EXPECT_TRUE(groups.index("Unique")->unique);
    EXPECT_TRUE(database->tableDef("Students").index("GS")->foreign);
    EXPECT_EQ(database->rows("SELECT S.ID, G.Name FROM Students S INNER JOIN Groups G "
                             "ON S.IDG = G.IDG"),
              (Rows{{7, "ёж"}}));
    EXPECT_EQ(database->rows("SELECT Name1 FROM MSysQueries"), (Rows{{"Groups"}}));
    EXPECT_EQ(database->rows("SELECT Id, Type FROM MSysObjects WHERE Name = 'Запрос'"),
              (Rows{{std::int64_t{-2147483648}, 5}}));
    EXPECT_EQ(database->rows("SELECT szObject, szReferencedObject FROM MSysRelationships"),
              (Rows{{"Students", "Groups"}}));
    const test::TemporaryFolder folder;
    saveCopy(*database, folder / "now.mdb");
    EXPECT_EQ(test::structuralErrors(folder / "now.mdb").value_or(""), "");
}

// The older order told texts apart that the present one holds equal.
TEST(Jet3, AnUniqueIndexThatRowsForbidNowLosesItsUniqueness)
{
    Jet3File file;
    file.tables.push_back(
        {"T", {{"A", 10, 20, 2}}, {{ru("слово")}, {ru("слово ")}}, {{"PK", {0}, 9, 1}}});
    const auto database = open(file.bytes());
    EXPECT_EQ(database->count("SELECT * FROM T WHERE A = 'Слово'"), 2);
    ASSERT_NE(database->tableDef("T").index("PK"), nullptr);
    EXPECT_FALSE(database->tableDef("T").index("PK")->unique);
}

TEST(Jet3, ChangesAreRefusedWithTheReason)
{
    const auto database = open(withRelationship().bytes());
    for (const char* sql : {"DELETE FROM Students", "DROP TABLE Students",
                            "INSERT INTO Students (ID) VALUES (1)", "CREATE TABLE N (A INTEGER)"}) {
        try {
            database->execute(sql);
            ADD_FAILURE() << sql;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::ReadOnly) << sql;
            EXPECT_NE(std::string(error.what()).find("Access 95/97"), std::string::npos);
            EXPECT_NE(std::string(error.what()).find("сожмите"), std::string::npos);
        }
    }
}

TEST(Jet3, OpeningLeavesTheFileAlone)
{
    const auto bytes = withRelationship().bytes();
    const test::TemporaryFolder folder;
    save(bytes, folder / "old.mdb");
    {
        const auto database = Database::open(folder / "old.mdb");
        EXPECT_EQ(database->rowCount("Groups"), 2);
    }
    EXPECT_EQ(test::bytesOf(folder / "old.mdb"), bytes);
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator((folder / "old.mdb").parent_path()))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1u);
}

TEST(Jet3, CodePagesAreThoseOfTheFile)
{
    const struct
    {
        std::uint16_t codePage;
        const char* bytes;
        const char* text;
    } cases[] = {
        {1250, "\xE8\x8A", "čŠ"}, {1251, "\xC0\xB8\x98", "Аё\u0098"}, {1252, "\xE9\x80", "é€"},
        {1253, "\xE1\xDC", "αά"}, {1254, "\xFD\xF0", "ığ"},           {1255, "\xE0", "א"},
        {1256, "\xC7", "ا"},      {1257, "\xE0\xFE", "ąž"},           {1258, "\xD0", "Đ"},
        {874, "\xA1", "ก"},
    };
    for (const auto& c : cases) {
        Jet3File file;
        file.codePage = c.codePage;
        file.tables.push_back({"T", {{"A", 10, 20, 2}}, {{Jet3File::text(c.bytes)}}});
        EXPECT_EQ(open(file.bytes())->rows("SELECT A FROM T"), (Rows{{c.text}})) << c.codePage;
    }
}

TEST(Jet3, FilesThatCannotBeReadAreRefused)
{
    Jet3File file = withRelationship();
    const auto sound = file.bytes();
    file.password = "secret";
    const auto locked = file.bytes();
    file.password.clear();
    file.codePage = 932;
    const auto japanese = file.bytes();
    const struct
    {
        const char* what;
        std::vector<std::uint8_t> bytes;
        Fault fault;
        const char* says;
    } cases[] = {
        {"password", locked, Fault::PasswordProtected, "паролем"},
        {"code page", japanese, Fault::Unsupported, "932"},
        {"cut inside a page", {sound.begin(), sound.end() - 5}, Fault::Damaged, "обрезан"},
        {"cut inside the first", {sound.begin(), sound.begin() + 700}, Fault::Damaged, "обрезан"},
        {"only the first page", {sound.begin(), sound.begin() + 2048}, Fault::Damaged, "страниц"},
    };
    for (const auto& c : cases) {
        try {
            open(c.bytes);
            ADD_FAILURE() << c.what;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), c.fault) << c.what << ": " << error.what();
            EXPECT_NE(std::string(error.what()).find(c.says), std::string::npos) << error.what();
        }
    }
}

// Opens or is refused; sanitizers watch the rest.
TEST(Jet3, DamageGivesErrorsAndNothingWorse)
{
    Jet3File file = withRelationship();
    file.tables.push_back(people(12));
    file.tables.back().mapOfMaps = true;
    file.tables.back().moveEvery = 3;
    const auto sound = file.bytes();
    std::mt19937 random(20);
    int refused = 0;
    constexpr int kRounds = 200;
    for (int round = 0; round < kRounds; ++round) {
        auto bytes = sound;
        for (int change = 0; change <= round % 4; ++change)
            bytes[2048 + random() % (bytes.size() - 2048)] =
                static_cast<std::uint8_t>(round % 3 == 0 ? 0xFF : random());
        if (round % 10 == 0)
            bytes.resize(2048 * (1 + random() % (bytes.size() / 2048)));
        try {
            const auto database = open(bytes);
            for (const std::string& name : database->tableNames())
                database->rows("SELECT * FROM [" + name + "]");
        } catch (const Error&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, kRounds / 20);
    EXPECT_LT(refused, kRounds);
}

} // namespace
