// The wildcards of Jet's LIKE.
#include "jet/error.h"
#include "jet/sql/functions.h"
#include "jet/storage/sortkey.h"
#include "jet/storage/sortkeytable.h"
#include "jet/text.h"

namespace jet::sql {

namespace {

// In the General order. Characters that it passes over altogether equal only themselves.
int compareCharacters(char32_t a, char32_t b)
{
    if (a == b)
        return 0;
    std::string left;
    std::string right;
    appendUtf8(left, a);
    appendUtf8(right, b);
    if (const int order = compareGeneral(left, right); order != 0)
        return order;
    const bool ignored = charCode(a).kind == CharKind::Ignored || a == ' ' || b == ' ';
    return !ignored || foldCase(a) == foldCase(b) ? 0 : foldCase(a) < foldCase(b) ? -1 : 1;
}

// The same as compareCharacters() == 0, without building texts for ASCII.
bool isSameCharacter(char32_t a, char32_t b)
{
    if (a < 0x80 && b < 0x80)
        return foldCase(a) == foldCase(b);
    return compareCharacters(a, b) == 0;
}

// One element of a pattern: a character, `?`, `#` or a bracket list. Moves `at` behind it.
class Element
{
public:
    Element(std::string_view pattern, std::size_t& at)
    {
        const char32_t c = nextCodePoint(pattern, at);
        if (c == '[') {
            m_list = true;
            readList(pattern, at);
        } else {
            m_character = c;
        }
    }

    bool matches(char32_t c) const
    {
        if (m_list)
            return contains(c) != m_negated;
        if (m_character == '?')
            return true;
        if (m_character == '#')
            return c >= '0' && c <= '9';
        return isSameCharacter(c, m_character);
    }
    // "[]" stands for no character at all.
    bool isEmpty() const { return m_list && !m_negated && m_body.empty(); }

private:
    void readList(std::string_view pattern, std::size_t& at)
    {
        if (at < pattern.size() && pattern[at] == '!') {
            m_negated = true;
            ++at;
        }
        const std::size_t end = pattern.find(']', at);
        if (end == std::string_view::npos)
            throw Error(Fault::Syntax, "в образце LIKE нет закрывающей скобки «]»");
        m_body = pattern.substr(at, end - at);
        at = end + 1;
        // "[!]" is an exclamation mark.
        if (m_negated && m_body.empty()) {
            m_negated = false;
            m_body = "!";
        }
    }

    bool contains(char32_t c) const
    {
        for (std::size_t at = 0; at < m_body.size();) {
            const char32_t low = nextCodePoint(m_body, at);
            char32_t high = low;
            if (at + 1 < m_body.size() && m_body[at] == '-') {
                ++at;
                high = nextCodePoint(m_body, at);
            }
            if (high == low ? isSameCharacter(c, low)
                            : compareCharacters(c, low) >= 0 && compareCharacters(c, high) <= 0)
                return true;
        }
        return false;
    }

    bool m_list = false;
    bool m_negated = false;
    char32_t m_character = 0;
    std::string_view m_body;
};

} // namespace

// Only the last `*` need ever be retried, so time grows with text times pattern at worst.
bool matchesPattern(std::string_view text, std::string_view pattern)
{
    constexpr std::size_t kNone = std::string_view::npos;
    std::size_t retryPattern = kNone;
    std::size_t retryText = 0;
    std::size_t atPattern = 0;
    std::size_t atText = 0;
    for (;;) {
        if (atPattern < pattern.size() && pattern[atPattern] == '*') {
            retryPattern = ++atPattern;
            retryText = atText;
            continue;
        }
        if (atPattern == pattern.size() && atText == text.size())
            return true;
        if (atPattern < pattern.size()) {
            std::size_t nextPattern = atPattern;
            const Element element(pattern, nextPattern);
            if (element.isEmpty()) {
                atPattern = nextPattern;
                continue;
            }
            std::size_t nextText = atText;
            if (atText < text.size() && element.matches(nextCodePoint(text, nextText))) {
                atPattern = nextPattern;
                atText = nextText;
                continue;
            }
        }
        if (retryPattern == kNone || retryText >= text.size())
            return false;
        nextCodePoint(text, retryText);
        atText = retryText;
        atPattern = retryPattern;
    }
}

} // namespace jet::sql
