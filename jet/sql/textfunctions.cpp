#include "jet/error.h"
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/storage/sortkey.h"
#include "jet/text.h"

#include <algorithm>

namespace jet::sql {

namespace {

constexpr int kLongestText = 65535; // characters that Space and String may give
constexpr std::size_t kLongestReplaced = std::size_t{16} << 20; // bytes, unless it was longer

// Byte offset behind the first `characters` of a text, which may be longer than it.
std::size_t offsetOf(std::string_view text, std::size_t characters)
{
    std::size_t at = 0;
    for (; characters > 0 && at < text.size(); --characters)
        nextCodePoint(text, at);
    return at;
}

std::size_t characterCount(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count)
        nextCodePoint(text, at);
    return count;
}

// A number of characters or a start position, at least `least`.
std::size_t lengthArgument(const Arguments& arguments, int i, int least)
{
    const int length = arguments.smallInteger(i);
    if (length < least)
        arguments.refuse(i);
    return static_cast<std::size_t>(length);
}

char32_t upperCase(char32_t c)
{
    // Capitals fold to small letters; a small letter's capital is the neighbour that folds to it.
    for (const char32_t distance : {32u, 80u, 1u}) {
        if (c > distance && foldCase(c) == c && foldCase(c - distance) == c)
            return c - distance;
    }
    return c == 0xFF ? 0x178 : c;
}

std::string mapped(std::string_view text, char32_t (*map)(char32_t))
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();)
        appendUtf8(out, map(nextCodePoint(text, at)));
    return out;
}

// Only spaces count, not tabs or line ends.
std::string_view withoutLeadingSpaces(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

std::string_view withoutTrailingSpaces(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// vbBinaryCompare; everything else compares as the database does, without case.
bool isBinaryCompare(const Arguments& arguments, int i)
{
    return i < arguments.count() && arguments.smallInteger(i) == 0;
}

// A text and what is sought in it, without case unless `binary`.
struct Search
{
    std::string text;
    std::string sought;

    Search(std::string_view inText, std::string_view what, bool binary)
        : text(binary ? std::string(inText) : foldName(inText))
        , sought(binary ? std::string(what) : foldName(what))
    {}
    // Byte offset in `text` at or behind `from`, npos if none.
    std::size_t find(std::size_t from) const { return text.find(sought, from); }
};

Value concat(const Arguments& arguments)
{
    std::string out;
    bool any = false;
    for (int i = 0; i < arguments.count(); ++i) {
        if (arguments.isNull(i))
            continue;
        any = true;
        out += arguments.text(i);
    }
    return any ? Value(std::move(out)) : Value();
}

Value trim(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    return withoutLeadingSpaces(withoutTrailingSpaces(text));
}

Value ltrim(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    return withoutLeadingSpaces(text);
}

Value rtrim(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    return withoutTrailingSpaces(text);
}

Value len(const Arguments& arguments)
{
    return static_cast<std::int64_t>(characterCount(arguments.text(0)));
}

Value left(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    return std::string_view(text).substr(0, offsetOf(text, lengthArgument(arguments, 1, 0)));
}

Value right(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    const std::size_t length = lengthArgument(arguments, 1, 0);
    const std::size_t count = characterCount(text);
    return std::string_view(text).substr(offsetOf(text, count > length ? count - length : 0));
}

Value mid(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    const std::string_view rest =
        std::string_view(text).substr(offsetOf(text, lengthArgument(arguments, 1, 1) - 1));
    if (arguments.count() < 3)
        return rest;
    return rest.substr(0, offsetOf(rest, lengthArgument(arguments, 2, 0)));
}

// The first argument is a start position only when there are three or more.
Value instr(const Arguments& arguments)
{
    const int first = arguments.count() > 2 ? 1 : 0;
    const std::size_t start = first == 1 ? lengthArgument(arguments, 0, 1) : 1;
    const Search search(arguments.text(first), arguments.text(first + 1),
                        isBinaryCompare(arguments, 3));
    if (start > characterCount(search.text))
        return 0;
    const std::size_t found = search.find(offsetOf(search.text, start - 1));
    if (found == std::string::npos)
        return 0;
    return static_cast<std::int64_t>(characterCount(std::string_view(search.text).substr(0, found))
                                     + 1);
}

Value ucase(const Arguments& arguments)
{
    return mapped(arguments.text(0), upperCase);
}

Value lcase(const Arguments& arguments)
{
    return mapped(arguments.text(0), foldCase);
}

// What stands before the start position is left out of the result.
Value replace(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    const std::string with = arguments.text(2);
    const std::size_t start = arguments.count() > 3 ? lengthArgument(arguments, 3, 1) : 1;
    int left = arguments.smallInteger(4, -1);
    const Search search(text, arguments.text(1), true);
    std::size_t at = offsetOf(text, start - 1);
    std::string out;
    while (!search.sought.empty() && left != 0) {
        const std::size_t found = search.find(at);
        if (found == std::string::npos)
            break;
        out.append(text, at, found - at).append(with);
        if (out.size() > kLongestReplaced && out.size() > text.size())
            throw Error(Fault::Overflow, "результат замены слишком длинный");
        at = found + search.sought.size();
        --left;
    }
    return out.append(text, at);
}

std::string repeated(std::string_view unit, std::size_t count)
{
    if (count > static_cast<std::size_t>(kLongestText))
        throw Error(Fault::Overflow, "текст длиннее 65535 знаков");
    std::string out;
    while (count-- > 0)
        out += unit;
    return out;
}

Value space(const Arguments& arguments)
{
    return repeated(" ", lengthArgument(arguments, 0, 0));
}

// The second argument is a text, whose first character counts, or a character code.
Value string(const Arguments& arguments)
{
    std::string unit;
    if (arguments.isText(1)) {
        const std::string text = arguments.text(1);
        unit = text.substr(0, offsetOf(text, 1));
    } else {
        appendUtf8(unit, static_cast<char32_t>(lengthArgument(arguments, 1, 0)));
    }
    return repeated(unit, lengthArgument(arguments, 0, 0));
}

// Codes above 127 are those of Windows code page 1251, as on the computers that wrote the
// texts; above 255 they are Unicode (ChrW).
constexpr char32_t kCodePage1251[64] = {
    0x402,  0x403,  0x201A, 0x453,  0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x409,
    0x2039, 0x40A,  0x40C,  0x40B,  0x40F,  0x452,  0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x98,   0x2122, 0x459,  0x203A, 0x45A,  0x45C,  0x45B,  0x45F,  0xA0,
    0x40E,  0x45E,  0x408,  0xA4,   0x490,  0xA6,   0xA7,   0x401,  0xA9,   0x404,  0xAB,
    0xAC,   0xAD,   0xAE,   0x407,  0xB0,   0xB1,   0x406,  0x456,  0x491,  0xB5,   0xB6,
    0xB7,   0x451,  0x2116, 0x454,  0xBB,   0x458,  0x405,  0x455,  0x457};

Value chr(const Arguments& arguments)
{
    const std::size_t code = lengthArgument(arguments, 0, 0);
    if (code > 0xFFFF)
        arguments.refuse(0);
    auto point = static_cast<char32_t>(code);
    if (code >= 0xC0 && code <= 0xFF)
        point = static_cast<char32_t>(0x410 + code - 0xC0);
    else if (code >= 0x80 && code < 0xC0)
        point = kCodePage1251[code - 0x80];
    std::string out;
    appendUtf8(out, point);
    return out;
}

Value asc(const Arguments& arguments)
{
    const std::string text = arguments.text(0);
    if (text.empty())
        arguments.refuse(0);
    std::size_t at = 0;
    const char32_t point = nextCodePoint(text, at);
    if (point >= 0x410 && point <= 0x44F)
        return static_cast<int>(point - 0x410 + 0xC0);
    const auto* found = std::ranges::find(kCodePage1251, point);
    if (found != std::end(kCodePage1251))
        return static_cast<int>(found - std::begin(kCodePage1251)) + 0x80;
    return static_cast<int>(point);
}

Value strcomp(const Arguments& arguments)
{
    const std::string a = arguments.text(0);
    const std::string b = arguments.text(1);
    const int order = isBinaryCompare(arguments, 2) ? a.compare(b) : compareGeneral(a, b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

Value like(const Arguments& arguments)
{
    return matchesPattern(arguments.text(0), arguments.text(1));
}

constexpr Function kFunctions[] = {
    {"concat", 2, -1, concat, Nulls::Take},
    {"trim", 1, 1, trim},
    {"ltrim", 1, 1, ltrim},
    {"rtrim", 1, 1, rtrim},
    {"len", 1, 1, len},
    {"left", 2, 2, left},
    {"right", 2, 2, right},
    {"mid", 2, 3, mid},
    {"instr", 2, 4, instr},
    {"ucase", 1, 1, ucase},
    {"lcase", 1, 1, lcase},
    {"replace", 3, 5, replace},
    {"space", 1, 1, space},
    {"string", 2, 2, string},
    {"chr", 1, 1, chr},
    {"asc", 1, 1, asc},
    {"strcomp", 2, 3, strcomp},
    {"like", 2, 2, like},
};

} // namespace

std::span<const Function> textFunctions()
{
    return kFunctions;
}

} // namespace jet::sql
