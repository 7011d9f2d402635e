#include "jet/storage/filekind.h"

#include <algorithm>
#include <string_view>

namespace jet {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kName = 4; // of the engine
constexpr std::size_t kVersion = 0x14;

std::string_view textOf(ByteView bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool hasAt(ByteView bytes, std::size_t at, std::string_view mark)
{
    return at <= bytes.size() && textOf(bytes.subspan(at)).starts_with(mark);
}

bool contains(ByteView bytes, std::string_view part)
{
    return textOf(bytes).find(part) != std::string_view::npos;
}

struct Mark
{
    std::size_t offset;
    std::string_view bytes;
    const char* name;
};

constexpr Mark kMarks[] = {
    {0, "SQLite format 3\0"sv, "база данных SQLite"},
    {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv,
     "документ Office 97-2003 (книга Excel, документ Word или подобный)"},
    {0, "Rar!\x1A\x07"sv, "архив RAR"},
    {0, "7z\xBC\xAF\x27\x1C"sv, "архив 7-Zip"},
    {0, "\x1F\x8B"sv, "архив gzip"},
    {0, "%PDF-"sv, "документ PDF"},
    {0, "{\\rtf"sv, "документ RTF"},
    {0, "\x89PNG\r\n\x1A\n"sv, "изображение PNG"},
    {0, "\xFF\xD8\xFF"sv, "изображение JPEG"},
    {0, "GIF8"sv, "изображение GIF"},
    {0, "1CDBMSV8"sv, "база данных 1С"},
    {0, "MZ"sv, "программа для Windows"},
    {0,
     "\x7F"
     "ELF"sv,
     "программа для Linux"},
    // Behind page headers of 32-bit systems, 64-bit systems, and those with transaction numbers.
    {12, "\xDE\xC0\xEF\xBE"sv, "база данных LMDB"},
    {16, "\xDE\xC0\xEF\xBE"sv, "база данных LMDB"},
    {24, "\xDE\xC0\xEF\xBE"sv, "база данных LMDB"},
};

// Zip is the dress of many kinds; names of the first members tell them apart.
std::string zipName(ByteView start)
{
    constexpr Mark kMembers[] = {
        {0, "opendocument.spreadsheet"sv, "таблица OpenDocument"},
        {0, "opendocument"sv, "документ OpenDocument"},
        {0, "xl/"sv, "книга Excel"},
        {0, "word/"sv, "документ Word"},
        {0, "ppt/"sv, "презентация PowerPoint"},
        {0, "[Content_Types].xml"sv, "документ Office 2007 или новее"},
    };
    for (const Mark& member : kMembers) {
        if (contains(start, member.bytes))
            return member.name;
    }
    return "архив ZIP";
}

//   0  kind and memo flags   1  date: year - 1900, month, day   8  u16 length of the header
//   A  u16 length of a record
bool isDbase(ByteView start)
{
    constexpr std::string_view kKinds =
        "\x02\x03\x04\x05\x30\x31\x32\x43\x63\x83\x8B\xCB\xF5\xFB"sv;
    return start.size() >= 32 && kKinds.find(static_cast<char>(start[0])) != std::string_view::npos
           && start[2] >= 1 && start[2] <= 12 && start[3] >= 1 && start[3] <= 31
           && get16(start, 8) > 32 && get16(start, 10) > 0;
}

//   0  u16 length of a record   2  u16 length of the header, a multiple of 2048
//   4  kind of file, to 8       5  size of a block in 1024 bytes   39  version of the format
bool isParadox(ByteView start)
{
    constexpr std::string_view kBlocks = "\x01\x02\x03\x04\x08\x10\x20"sv;
    return start.size() >= 0x58 && get16(start, 0) > 0 && get16(start, 2) >= 2048
           && get16(start, 2) % 2048 == 0 && start[4] <= 8
           && kBlocks.find(static_cast<char>(start[5])) != std::string_view::npos
           && start[0x39] >= 3 && start[0x39] <= 12;
}

// Nothing below space but white space, and the end mark of old editors.
bool isText(ByteView start)
{
    return std::all_of(start.begin(), start.end(), [](std::uint8_t byte) {
        return (byte >= 0x20 && byte != 0x7F) || (byte >= '\t' && byte <= '\r') || byte == 0x1A;
    });
}

std::string textName(ByteView start)
{
    std::string lower;
    for (const std::uint8_t byte : start.first(std::min<std::size_t>(start.size(), 512)))
        lower += static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte);
    if (lower.find("<html") != std::string::npos
        || lower.find("<!doctype html") != std::string::npos)
        return "страница HTML";
    return lower.find("<?xml") != std::string::npos ? "файл XML" : "текстовый файл";
}

} // namespace

FileKind kindOf(ByteView start)
{
    if (start.size() <= kVersion || !hasAt(start, 0, "\0\1\0\0"sv))
        return FileKind::Foreign;
    if (hasAt(start, kName, "Standard ACE DB"sv))
        return FileKind::Ace;
    if (!hasAt(start, kName, "Standard Jet DB"sv) && !hasAt(start, kName, "Jet System DB"sv))
        return FileKind::Foreign;
    switch (start[kVersion]) {
    case 0:
        return FileKind::Jet3;
    case 1:
        return FileKind::Jet4;
    default:
        return FileKind::Ace;
    }
}

std::string aceProgram(ByteView start)
{
    switch (start[kVersion]) {
    case 2:
        return "Access 2007";
    case 3:
        return "Access 2010";
    case 4:
        return "Access 2013";
    case 5:
        return "Access 2016";
    case 6:
        return "Access 2019";
    default:
        return "Access 2007 или новее (версия формата " + std::to_string(start[kVersion]) + ")";
    }
}

std::string foreignName(ByteView start)
{
    if (start.empty())
        return "пустой файл";
    for (const Mark& mark : kMarks) {
        if (hasAt(start, mark.offset, mark.bytes))
            return mark.name;
    }
    if (hasAt(start, 0, "PK\x03\x04"sv) || hasAt(start, 0, "PK\x05\x06"sv))
        return zipName(start);
    if (std::all_of(start.begin(), start.end(), [](std::uint8_t byte) { return byte == 0; }))
        return "файл, в начале которого одни нули";
    if (isDbase(start))
        return "таблица dBase (dbf)";
    if (isParadox(start))
        return "таблица Paradox";
    if (hasAt(start, 0, "\xFF\xFE"sv) || hasAt(start, 0, "\xFE\xFF"sv) || isText(start))
        return textName(start);
    return "файл неизвестного вида";
}

} // namespace jet
