// Files that are no databases of this engine are refused with what was found.

#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/header.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using namespace jet;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

// The text of the refusal, and its kind in `fault`.
std::string refusal(const std::vector<std::uint8_t>& bytes, Fault& fault)
{
    test::MemoryFiles files;
    files.setContent("file.mdb", bytes);
    std::string texts[2];
    for (const OpenMode mode : {OpenMode::ReadOnly, OpenMode::Exclusive}) {
        try {
            Database::open(files, "file.mdb", mode);
        } catch (const Error& error) {
            fault = error.fault();
            texts[mode == OpenMode::ReadOnly] = error.what();
        }
    }
    EXPECT_EQ(texts[0], texts[1]);
    EXPECT_EQ(files.content("file.mdb"), bytes);
    return texts[0];
}

std::vector<std::uint8_t> bytesOf(std::string_view start, std::size_t size, std::uint8_t fill = 0)
{
    std::vector<std::uint8_t> bytes(start.begin(), start.end());
    bytes.resize(std::max(size, bytes.size()), fill);
    return bytes;
}

TEST(OtherFiles, AreRefusedByWhatTheyAre)
{
    const std::string dbase = "\x03\x7E\x01\x0F\x05\0\0\0\x61\0\x1E\0"s;
    std::string paradox = "\x2A\0\0\x08\0\x02"s;
    paradox.resize(0x39);
    paradox += '\x0C';
    const struct
    {
        std::string start;
        std::size_t size;
        const char* found;
    } cases[] = {
        {"", 0, "пустой файл"},
        {"", 8192, "одни нули"},
        {"SQLite format 3\0"s, 8192, "SQLite"},
        {"PK\x03\x04\x14\0\x06\0[Content_Types].xml....xl/workbook.xml"s, 9000, "Excel"},
        {"PK\x03\x04\x14\0\x06\0[Content_Types].xml....word/document.xml"s, 9000, "Word"},
        {"PK\x03\x04\x0A\0\0\0mimetypeapplication/vnd.oasis.opendocument.spreadsheet"s, 9000,
         "OpenDocument"},
        {"PK\x03\x04\x14\0\x06\0readme.bin"s, 9000, "ZIP"},
        {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"s, 8192, "Office 97"},
        {"Rar!\x1A\x07\x01\0"s, 100, "RAR"},
        {"%PDF-1.4\n"s, 8192, "PDF"},
        {"MZ\x90\0"s, 8192, "программа"},
        {std::string(16, '\0') + "\xDE\xC0\xEF\xBE", 8192, "LMDB"},
        {dbase, 4096, "dBase"},
        {paradox, 4096, "Paradox"},
        {"Фамилия;Имя\r\n", 0, "текстовый"},
        {"\xD4\xE0\xEC\xE8\xEB\xE8\xFF\r\n", 0, "текстовый"},
        {"\xFF\xFE\x24\x04"s, 4, "текстовый"},
        {"<!DOCTYPE HTML>\n<p>", 0, "HTML"},
        {"<?xml version=\"1.0\"?>", 0, "XML"},
        {"\0\1\0\0Nonstandard DB"s, 8192, "неизвестного вида"},
        {"\x01\x02\x03\x7F\x80", 4096, "неизвестного вида"},
    };
    for (const auto& c : cases) {
        Fault fault = Fault::Io;
        const std::string text = refusal(bytesOf(c.start, c.size), fault);
        EXPECT_EQ(fault, Fault::NotADatabase) << c.found;
        EXPECT_NE(text.find("не файл базы данных Access"), std::string::npos) << text;
        EXPECT_NE(text.find(c.found), std::string::npos) << c.found << ": " << text;
    }
}

TEST(OtherFiles, LaterVersionsNameTheirProgram)
{
    const struct
    {
        std::string_view name;
        char version;
        const char* found;
    } cases[] = {
        {"Standard ACE DB"sv, 2, "Access 2007"}, {"Standard ACE DB"sv, 3, "Access 2010"},
        {"Standard ACE DB"sv, 5, "Access 2016"}, {"Standard ACE DB"sv, 6, "Access 2019"},
        {"Standard ACE DB"sv, 99, "формата 99"}, {"Standard ACE DB"sv, 1, "формата 1"},
        {"Standard Jet DB"sv, 2, "Access 2007"},
    };
    for (const auto& c : cases) {
        std::string start = "\0\1\0\0"s + std::string(c.name) + '\0';
        start += c.version;
        Fault fault = Fault::Io;
        const std::string text = refusal(bytesOf(start, 8192), fault);
        EXPECT_EQ(fault, Fault::UnsupportedVersion) << c.found;
        EXPECT_NE(text.find(c.found), std::string::npos) << text;
        EXPECT_NE(text.find("Access 2000-2003"), std::string::npos) << text;
    }
}

TEST(OtherFiles, DatabasesOutOfReachSayWhy)
{
    const std::vector<std::uint8_t> sound = encodeHeader({});
    auto locked = sound;
    locked[0x42] ^= 'x';
    const struct
    {
        const char* what;
        std::vector<std::uint8_t> bytes;
        Fault fault;
        const char* found;
    } cases[] = {
        {"password", locked, Fault::PasswordProtected, "паролем"},
        {"cut in the first page", {sound.begin(), sound.begin() + 4000}, Fault::Damaged, "обрезан"},
        {"cut behind the name", {sound.begin(), sound.begin() + 30}, Fault::Damaged, "обрезан"},
        {"cut in the second page",
         bytesOf({reinterpret_cast<const char*>(sound.data()), sound.size()}, 5000), Fault::Damaged,
         "обрезан"},
    };
    for (const auto& c : cases) {
        Fault fault = Fault::Io;
        const std::string text = refusal(c.bytes, fault);
        EXPECT_EQ(fault, c.fault) << c.what << ": " << text;
        EXPECT_NE(text.find(c.found), std::string::npos) << text;
    }
}

TEST(OtherFiles, FoldersAndMissingFilesAreNamed)
{
    const test::TemporaryFolder folder;
    const auto refused = [](const std::filesystem::path& path, Fault fault, const char* found) {
        try {
            Database::open(path, OpenMode::ReadOnly);
            ADD_FAILURE() << path;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), fault) << error.what();
            EXPECT_NE(std::string(error.what()).find(found), std::string::npos) << error.what();
        }
    };
    refused((folder / "x").parent_path(), Fault::NotADatabase, "папка");
    refused(folder / "none.mdb", Fault::NotFound, "не найден");
}

TEST(OtherFiles, SamplesAreRefusedByWhatTheyAre)
{
    const struct
    {
        const char* name;
        const char* found;
    } cases[] = {{"access2010.accdb", "Access 2010"},
                 {"not-access-lmdb.mdb", "LMDB"},
                 {"with-password-v2003.mdb", "паролем"},
                 {"README.md", "текстовый файл"}};
    for (const auto& c : cases) {
        const auto sample = test::sampleFile(c.name);
        if (!sample)
            GTEST_SKIP();
        Fault fault = Fault::Io;
        const std::string text = refusal(test::bytesOf(*sample), fault);
        EXPECT_NE(text.find(c.found), std::string::npos) << text;
    }
}

} // namespace
