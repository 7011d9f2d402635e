#include "jet/storage/sortkey.h"

#include "jet/storage/sortkeytable.h"
#include "jet/text.h"

#include <algorithm>
#include <compare>
#include <cstddef>

namespace jet {
namespace {

constexpr std::size_t kIndexedUnits = 255;     // UTF-16 units that count in an index
constexpr std::uint8_t kUnknownLead = 0xFF;    // above every known code
constexpr std::uint8_t kSmallestExtra = 0x03;  // smaller ones are cut off the end of EXTRA
constexpr std::size_t kHighestPosition = 8190; // 7 + 4n fits 15 bits

// nextCodePoint() without the call for Latin and Cyrillic.
inline char32_t nextCharacter(std::string_view text, std::size_t& at)
{
    const auto lead = static_cast<std::uint8_t>(text[at]);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    if (lead >= 0xC2 && lead < 0xE0 && at + 1 < text.size()) {
        const auto second = static_cast<std::uint8_t>(text[at + 1]);
        if ((second & 0xC0) == 0x80) {
            at += 2;
            return static_cast<char32_t>((lead & 0x1F) << 6 | (second & 0x3F));
        }
    }
    return nextCodePoint(text, at);
}

std::string_view withoutTrailingSpaces(std::string_view text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

std::string_view indexedPart(std::string_view text)
{
    if (text.size() <= kIndexedUnits)
        return text;
    std::size_t at = 0;
    for (std::size_t units = 0; units < kIndexedUnits && at < text.size(); ++units) {
        if (nextCharacter(text, at) >= 0x10000)
            ++units;
    }
    return text.substr(0, at);
}

class KeyBuilder
{
public:
    explicit KeyBuilder(TwoLetterCount twoLetters)
        : m_twoLetters(twoLetters)
    {}

    void reserve(std::size_t textBytes) { m_key.reserve(textBytes * 2 + 8); }

    // False for a character without a known code.
    bool add(char32_t character)
    {
        const CharCode& code = charCode(character);
        switch (code.kind) {
        case CharKind::Inline:
        case CharKind::TwoLetter:
            addWeight(code);
            return true;
        case CharKind::Hidden:
            addHidden(code.code);
            return true;
        case CharKind::Combining:
            addMark(code.extra);
            return true;
        case CharKind::Ignored:
            return true;
        case CharKind::Unknown:
            break;
        }
        return false;
    }

    void addUnknown(char32_t character)
    {
        m_key.push_back(kUnknownLead);
        for (const int shift : {16, 8, 0})
            m_key.push_back(static_cast<std::uint8_t>(character >> shift));
        ++m_weights;
    }

    Bytes finish()
    {
        while (!m_extra.empty() && m_extra.back() < kSmallestExtra)
            m_extra.pop_back();
        m_key.push_back(0x01);
        m_key.insert(m_key.end(), m_extra.begin(), m_extra.end());
        if (!m_hidden.empty()) {
            m_key.insert(m_key.end(), 3, 0x01);
            m_key.insert(m_key.end(), m_hidden.begin(), m_hidden.end());
        }
        m_key.push_back(0x00);
        return std::move(m_key);
    }

private:
    void addWeight(const CharCode& code)
    {
        m_key.push_back(static_cast<std::uint8_t>(code.code >> 8));
        if ((code.code & 0xFF) != 0)
            m_key.push_back(static_cast<std::uint8_t>(code.code));
        if (code.extra != kPlainExtra) {
            m_extra.resize(m_leadingMark + m_weights, kPlainExtra);
            m_extra.push_back(code.extra);
        }
        ++m_weights;
        if (code.kind == CharKind::TwoLetter && m_twoLetters == TwoLetterCount::Two)
            ++m_weights;
    }

    void addMark(std::uint8_t extra)
    {
        m_extra.resize(m_leadingMark + m_weights, kPlainExtra);
        if (m_extra.empty()) {
            m_leadingMark = 1;
            m_extra.push_back(0);
        }
        m_extra.back() = static_cast<std::uint8_t>(m_extra.back() + extra);
    }

    void addHidden(std::uint16_t code)
    {
        const std::size_t position = 0x8007 + 4 * std::min(m_weights, kHighestPosition);
        m_hidden.push_back(static_cast<std::uint8_t>(position >> 8));
        m_hidden.push_back(static_cast<std::uint8_t>(position));
        m_hidden.push_back(0x06);
        m_hidden.push_back(static_cast<std::uint8_t>(code));
    }

    TwoLetterCount m_twoLetters;
    std::size_t m_weights = 0;     // characters with an inline code so far
    std::size_t m_leadingMark = 0; // 1: a mark before all of them has the first place in EXTRA
    Bytes m_key;
    Bytes m_extra;
    Bytes m_hidden;
};

// Steps over what has no place in INLINE. Null at the end of the text; `hidden` becomes true
// when a character of the last part was passed.
const CharCode* nextWeight(std::string_view text, std::size_t& at, bool& hidden)
{
    while (at < text.size()) {
        const CharCode& code = charCode(nextCharacter(text, at));
        if (code.kind == CharKind::Hidden)
            hidden = true;
        else if (code.kind != CharKind::Ignored)
            return &code;
    }
    return nullptr;
}

bool continuesCharacter(std::string_view text, std::size_t at)
{
    return at < text.size() && (static_cast<std::uint8_t>(text[at]) & 0xC0) == 0x80;
}

// Bytes of the characters that both texts begin with.
std::size_t commonStart(std::string_view a, std::string_view b)
{
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t at = 0;
    while (at < shorter && a[at] == b[at])
        ++at;
    while (at > 0 && (continuesCharacter(a, at) || continuesCharacter(b, at)))
        --at;
    return at;
}

int compareKeys(std::string_view a, std::string_view b)
{
    const Bytes first = generalSortKey(a);
    const Bytes second = generalSortKey(b);
    const auto order = std::lexicographical_compare_three_way(first.begin(), first.end(),
                                                              second.begin(), second.end());
    return std::is_lt(order) ? -1 : std::is_gt(order) ? 1 : 0;
}

} // namespace

std::optional<Bytes> generalKey(std::string_view utf8, TwoLetterCount twoLetters)
{
    const std::string_view text = withoutTrailingSpaces(indexedPart(utf8));
    KeyBuilder key(twoLetters);
    key.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (!key.add(nextCharacter(text, at)))
            return std::nullopt;
    }
    return key.finish();
}

Bytes generalSortKey(std::string_view utf8)
{
    const std::string_view text = withoutTrailingSpaces(utf8);
    KeyBuilder key(TwoLetterCount::Two);
    key.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = nextCharacter(text, at);
        if (!key.add(character))
            key.addUnknown(character);
    }
    return key.finish();
}

// Walks both texts weight by weight. The first differing weight decides; else the first
// differing accent, because accents are at least 03 and what follows a shorter EXTRA is 00
// or 01. Hidden signs matter only when all that is equal. An equal start adds the same to
// both keys, so it is passed over.
int compareGeneral(std::string_view a, std::string_view b)
{
    if (a == b)
        return 0;
    a = withoutTrailingSpaces(a);
    b = withoutTrailingSpaces(b);
    int accents = 0;
    bool hidden = false;
    const std::size_t start = commonStart(a, b);
    for (std::size_t i = start, j = start;;) {
        const CharCode* x = nextWeight(a, i, hidden);
        const CharCode* y = nextWeight(b, j, hidden);
        if ((x && x->kind != CharKind::Inline) || (y && y->kind != CharKind::Inline))
            return compareKeys(a, b);
        if (!x || !y) {
            if (x || y)
                return x ? 1 : -1;
            break;
        }
        if (x->code != y->code)
            return x->code < y->code ? -1 : 1;
        if (accents == 0 && x->extra != y->extra)
            accents = x->extra < y->extra ? -1 : 1;
    }
    if (accents != 0)
        return accents;
    return hidden ? compareKeys(a, b) : 0;
}

} // namespace jet
