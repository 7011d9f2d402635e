// The function Format for numbers.
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/text.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace jet::sql {

namespace {

constexpr std::string_view kGroupSeparator = "\u00A0"; // of the Russian settings
constexpr std::string_view kDecimalSeparator = ",";

struct Token
{
    enum class Kind { Literal, Digit, Point, Exponent };
    Kind kind = Kind::Literal;
    char placeholder = 0; // Digit: '0' or '#'; Exponent: '+' or '-'
    bool whole = true;    // Digit: in front of the decimal point
    std::string text;     // Literal
};

// One of the parts of a pattern between semicolons.
struct Section
{
    std::vector<Token> tokens;
    int wholePlaces = 0;
    int leastWhole = 0; // digits that are shown even as leading zeros
    int fractionPlaces = 0;
    int exponentPlaces = 0;
    bool grouped = false;
    double factor = 1;
};

class SectionParser
{
public:
    explicit SectionParser(std::string_view pattern)
        : m_pattern(pattern)
    {}

    Section parse()
    {
        while (m_at < m_pattern.size())
            step();
        if (m_commas > 0)
            scaleByCommas();
        finish();
        return std::move(m_section);
    }

private:
    void step()
    {
        const char c = m_pattern[m_at];
        if (c == '"')
            quoted();
        else if (c == '\\' && m_at + 1 < m_pattern.size())
            character(m_at + 1);
        else if (c == '0' || c == '#')
            digit(c);
        else if (c == '.' && !m_behindPoint)
            point();
        else if (c == ',')
            ++m_commas, ++m_at;
        else if ((c == 'E' || c == 'e') && m_at + 1 < m_pattern.size()
                 && (m_pattern[m_at + 1] == '+' || m_pattern[m_at + 1] == '-'))
            exponent();
        else
            character(m_at);
    }

    void quoted()
    {
        const std::size_t end = std::min(m_pattern.find('"', m_at + 1), m_pattern.size());
        literal(m_pattern.substr(m_at + 1, end - m_at - 1));
        m_at = end + 1;
    }

    void character(std::size_t at)
    {
        std::size_t end = at;
        const char32_t point = nextCodePoint(m_pattern, end);
        if (point == '%' && at == m_at)
            m_section.factor *= 100;
        literal(m_pattern.substr(at, end - at));
        m_at = end;
    }

    void literal(std::string_view text)
    {
        m_section.tokens.push_back({Token::Kind::Literal, 0, true, std::string(text)});
    }

    void digit(char placeholder)
    {
        ++m_at;
        if (m_behindExponent) {
            ++m_section.exponentPlaces;
            return;
        }
        // A comma between placeholders asks for groups of three digits.
        if (m_commas > 0 && m_section.wholePlaces > 0 && !m_behindPoint)
            m_section.grouped = true;
        m_commas = 0;
        m_section.tokens.push_back({Token::Kind::Digit, placeholder, !m_behindPoint, {}});
        ++(m_behindPoint ? m_section.fractionPlaces : m_section.wholePlaces);
    }

    void point()
    {
        scaleByCommas();
        ++m_at;
        m_behindPoint = true;
        m_section.tokens.push_back({Token::Kind::Point, 0, true, {}});
    }

    void exponent()
    {
        m_section.tokens.push_back({Token::Kind::Exponent, m_pattern[m_at + 1], true, {}});
        m_behindExponent = true;
        m_at += 2;
    }

    // Each comma behind the last whole digit divides by a thousand.
    void scaleByCommas()
    {
        for (; m_commas > 0; --m_commas)
            m_section.factor /= 1000;
    }

    void finish()
    {
        int place = m_section.wholePlaces;
        for (const Token& token : m_section.tokens) {
            if (token.kind != Token::Kind::Digit || !token.whole)
                continue;
            if (token.placeholder == '0')
                m_section.leastWhole = std::max(m_section.leastWhole, place);
            --place;
        }
    }

    std::string_view m_pattern;
    std::size_t m_at = 0;
    int m_commas = 0;
    bool m_behindPoint = false;
    bool m_behindExponent = false;
    Section m_section;
};

// Writes the tokens of a section with a number's digits put in.
class SectionWriter
{
public:
    SectionWriter(const Section& section, double magnitude)
        : m_section(section)
        , m_place(section.wholePlaces)
    {
        magnitude *= section.factor;
        if (section.exponentPlaces > 0 && magnitude > 0) {
            m_exponent = static_cast<int>(std::floor(std::log10(magnitude)))
                         - std::max(section.wholePlaces, 1) + 1;
            magnitude /= std::pow(10.0, m_exponent);
        }
        DecimalDigits digits = roundDigits(magnitude, section.fractionPlaces, Halves::Away);
        m_whole = digits.whole == "0" ? "" : digits.whole;
        const auto least = static_cast<std::size_t>(section.leastWhole);
        if (m_whole.size() < least)
            m_whole.insert(0, least - m_whole.size(), '0');
        m_fraction = std::move(digits.fraction);
        // "#" shows no trailing zeros.
        m_shownFraction = m_fraction.find_last_not_of('0') + 1;
    }

    std::string write()
    {
        for (const Token& token : m_section.tokens)
            write(token);
        return std::move(m_out);
    }

private:
    void write(const Token& token)
    {
        switch (token.kind) {
        case Token::Kind::Literal:
            m_out += token.text;
            break;
        case Token::Kind::Digit:
            if (token.whole)
                wholeDigit();
            else
                fractionDigit(token.placeholder);
            break;
        case Token::Kind::Point:
            if (m_section.wholePlaces == 0)
                wholeDigits(m_whole.size(), 0);
            m_out += kDecimalSeparator;
            break;
        case Token::Kind::Exponent:
            exponent(token.placeholder);
            break;
        }
    }

    // Digits at the places `from` - 1 down to `to`, counted from the decimal point.
    void wholeDigits(std::size_t from, std::size_t to)
    {
        for (std::size_t place = from; place > to; --place) {
            m_out += m_whole[m_whole.size() - place];
            if (m_section.grouped && place > 1 && (place - 1) % 3 == 0)
                m_out += kGroupSeparator;
        }
    }

    // The first placeholder takes all digits that have none of their own.
    void wholeDigit()
    {
        const auto place = static_cast<std::size_t>(m_place--);
        const bool first = place == static_cast<std::size_t>(m_section.wholePlaces);
        if (m_whole.size() >= place)
            wholeDigits(first ? m_whole.size() : place, place - 1);
    }

    void fractionDigit(char placeholder)
    {
        const std::size_t at = m_nextFraction++;
        const bool needed = placeholder == '0' || at < m_shownFraction;
        if (needed && at < m_fraction.size())
            m_out += m_fraction[at];
    }

    void exponent(char sign)
    {
        m_out += m_exponent < 0 ? "E-" : sign == '+' ? "E+" : "E";
        const std::string digits = std::to_string(std::abs(m_exponent));
        const auto places = static_cast<std::size_t>(m_section.exponentPlaces);
        m_out.append(places > digits.size() ? places - digits.size() : 0, '0');
        m_out += digits;
    }

    const Section& m_section;
    int m_place;
    int m_exponent = 0;
    std::string m_whole;
    std::string m_fraction;
    std::size_t m_shownFraction = 0;
    std::size_t m_nextFraction = 0;
    std::string m_out;
};

// Sections for positive numbers, negative numbers, zero and NULL.
std::vector<std::string_view> splitSections(std::string_view pattern)
{
    std::vector<std::string_view> sections;
    std::size_t start = 0;
    bool quoted = false;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (pattern[at] == '"')
            quoted = !quoted;
        else if (pattern[at] == '\\' && !quoted)
            ++at;
        else if (pattern[at] == ';' && !quoted) {
            sections.push_back(pattern.substr(start, at - start));
            start = at + 1;
        }
    }
    sections.push_back(pattern.substr(start));
    return sections;
}

struct NamedPattern
{
    std::string_view name, pattern;
};

constexpr NamedPattern kNamedPatterns[] = {
    {"general number", ""},
    {"fixed", "0.00"},
    {"standard", "#,##0.00"},
    {"percent", "0.00%"},
    {"currency", "#,##0.00 ₽;-#,##0.00 ₽"},
    {"scientific", "0.00E+00"},
    {"yes/no", "\"Да\";\"Да\";\"Нет\""},
    {"true/false", "\"Истина\";\"Истина\";\"Ложь\""},
    {"on/off", "\"Вкл\";\"Вкл\";\"Выкл\""},
};

} // namespace

bool isNamedNumberPattern(std::string_view pattern)
{
    return std::ranges::any_of(
        kNamedPatterns, [&](const NamedPattern& named) { return sameName(named.name, pattern); });
}

std::string formatNumber(double value, std::string_view pattern)
{
    if (pattern.empty())
        return numberText(value);
    for (const NamedPattern& named : kNamedPatterns) {
        if (sameName(pattern, named.name))
            return formatNumber(value, named.pattern);
    }
    const auto sections = splitSections(pattern);
    const bool ownNegative = sections.size() > 1 && !sections[1].empty();
    std::string_view chosen = sections[0];
    if (value < 0 && ownNegative)
        chosen = sections[1];
    else if (value == 0 && sections.size() > 2 && !sections[2].empty())
        chosen = sections[2];
    const Section section = SectionParser(chosen).parse();
    const std::string text = SectionWriter(section, std::abs(value)).write();
    const bool visible = text.find_first_of("123456789") != std::string::npos;
    return value < 0 && !ownNegative && visible ? '-' + text : text;
}

} // namespace jet::sql
