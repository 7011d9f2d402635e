#include "jet/storage/indexpage.h"

#include "jet/error.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

namespace jet {
namespace {

constexpr std::size_t kShortestEntry = 1 + kRowPointerBytes;

int compareBytes(ByteView a, ByteView b)
{
    const int order = std::memcmp(a.data(), b.data(), std::min(a.size(), b.size()));
    if (order != 0)
        return order;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

[[noreturn]] void throwDamaged(const char* what, PageNumber number)
{
    throw Error(Fault::Damaged, what, number);
}

std::uint64_t maskWord(ByteView page, std::size_t byte)
{
    std::uint64_t word = 0;
    const std::size_t bytes = std::min<std::size_t>(8, kIndexMaskBytes - byte);
    for (std::size_t i = 0; i < bytes; ++i)
        word |= static_cast<std::uint64_t>(page[kIndexMask + byte + i]) << (8 * i);
    return word;
}

void setMaskBit(ByteSpan page, std::size_t end)
{
    page[kIndexMask + end / 8] |= static_cast<std::uint8_t>(1U << (end % 8));
}

// Clears the bits of all ends above `start`.
void clearMaskAbove(ByteSpan page, std::size_t start)
{
    const std::size_t byte = start / 8;
    page[kIndexMask + byte] &= static_cast<std::uint8_t>((2U << (start % 8)) - 1);
    std::fill(page.begin() + static_cast<std::ptrdiff_t>(kIndexMask + byte + 1),
              page.begin() + static_cast<std::ptrdiff_t>(kIndexEntries), std::uint8_t{0});
}

// 0 if the keys fit whole.
std::size_t neededPrefix(std::span<const Bytes> keys, bool leaf)
{
    std::size_t bytes = leaf ? 0 : keys.size() * kChildBytes;
    for (const Bytes& key : keys)
        bytes += key.size();
    return bytes <= kIndexArea ? 0 : commonPrefix(keys.front(), keys.back());
}

} // namespace

void checkIndexPage(ByteView page, PageNumber number, PageNumber owner)
{
    const auto type = static_cast<PageType>(page[0]);
    if ((type != PageType::IndexNode && type != PageType::IndexLeaf) || page[1] != 1)
        throwDamaged("страница не принадлежит индексу", number);
    if (get32(page, kIndexOwner) != owner)
        throwDamaged("страница принадлежит индексу другой таблицы", number);
}

void IndexPage::load(ByteView page, PageNumber number, PageNumber owner)
{
    checkIndexPage(page, number, owner);
    m_page = page;
    m_number = number;
    m_prefix = get16(page, kIndexPrefix);
    m_childBytes = isLeaf() ? 0 : kChildBytes;
    m_count = 0;
    const std::size_t spared = std::min(m_prefix, kShortestEntry - 1);
    const std::size_t shortestRest = kShortestEntry - spared + m_childBytes;
    std::size_t shortest = kShortestEntry + m_childBytes; // the first entry is whole
    std::size_t begin = 0;
    for (std::size_t byte = 0; byte < kIndexMaskBytes; byte += 8) {
        for (std::uint64_t word = maskWord(page, byte); word != 0; word &= word - 1) {
            const std::size_t end = byte * 8 + static_cast<std::size_t>(std::countr_zero(word));
            if (end > kIndexArea || end - begin < shortest)
                throwDamaged("запись индекса не помещается на странице", number);
            m_ends[m_count++] = static_cast<std::uint16_t>(end);
            begin = end;
            shortest = shortestRest;
        }
    }
    if (m_count == 0)
        m_prefix = 0;
    else if (m_prefix + m_childBytes > m_ends[0])
        throwDamaged("общее начало записей индекса длиннее записи", number);
}

bool IndexPage::isLeaf() const
{
    return static_cast<PageType>(m_page[0]) == PageType::IndexLeaf;
}

ByteView IndexPage::stored(std::size_t i) const
{
    return m_page.subspan(kIndexEntries + start(i), end(i) - start(i));
}

ByteView IndexPage::suffix(std::size_t i) const
{
    const ByteView bytes = stored(i);
    const std::size_t skipped = i == 0 ? m_prefix : 0;
    return bytes.subspan(skipped, bytes.size() - skipped - m_childBytes);
}

void IndexPage::key(std::size_t i, Bytes& out) const
{
    const ByteView prefix = m_page.subspan(kIndexEntries, m_prefix);
    const ByteView rest = suffix(i);
    out.assign(prefix.begin(), prefix.end());
    out.insert(out.end(), rest.begin(), rest.end());
}

bool IndexPage::equals(std::size_t i, ByteView key) const
{
    const ByteView rest = suffix(i);
    return key.size() == m_prefix + rest.size()
           && std::equal(rest.begin(), rest.end(),
                         key.begin() + static_cast<std::ptrdiff_t>(m_prefix))
           && std::memcmp(key.data(), m_page.data() + kIndexEntries, m_prefix) == 0;
}

std::size_t IndexPage::lowerBound(ByteView key, std::size_t limit) const
{
    if (key.empty())
        return 0;
    if (m_prefix > 0) {
        const std::size_t shared = std::min(m_prefix, key.size());
        const int order = std::memcmp(key.data(), m_page.data() + kIndexEntries, shared);
        if (order != 0)
            return order < 0 ? 0 : limit;
        key = key.subspan(shared);
    }
    std::size_t low = 0;
    std::size_t high = limit;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (compareBytes(suffix(middle), key) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

std::size_t IndexPage::separators() const
{
    const bool hasTail = get32(m_page, kIndexTail) != 0;
    return hasTail || m_count == 0 ? m_count : m_count - 1;
}

PageNumber IndexPage::child(std::size_t i) const
{
    if (i == m_count)
        return get32(m_page, kIndexTail);
    const std::size_t at = kIndexEntries + end(i) - kChildBytes;
    return static_cast<PageNumber>(m_page[at]) << 24 | static_cast<PageNumber>(m_page[at + 1]) << 16
           | static_cast<PageNumber>(m_page[at + 2]) << 8 | m_page[at + 3];
}

bool insertInPlace(ByteSpan page, const IndexPage& view, std::size_t at, ByteView entry)
{
    const std::size_t prefix = view.prefix();
    if (prefix > 0) {
        if (at == 0 || entry.size() <= prefix
            || std::memcmp(entry.data(), page.data() + kIndexEntries, prefix) != 0)
            return false;
        entry = entry.subspan(prefix);
    }
    const std::size_t used = view.used();
    const std::size_t length = entry.size();
    if (used + length > kIndexArea)
        return false;
    const std::size_t begin = view.start(at);
    std::uint8_t* place = page.data() + kIndexEntries + begin;
    std::memmove(place + length, place, used - begin);
    std::memcpy(place, entry.data(), length);
    clearMaskAbove(page, begin);
    setMaskBit(page, begin + length);
    for (std::size_t i = at; i < view.count(); ++i)
        setMaskBit(page, view.end(i) + length);
    put16(page, kIndexFree, static_cast<std::uint16_t>(kIndexArea - used - length));
    return true;
}

bool eraseInPlace(ByteSpan page, const IndexPage& view, std::size_t at)
{
    if (at == 0 && view.prefix() > 0)
        return false;
    const std::size_t used = view.used();
    const std::size_t begin = view.start(at);
    const std::size_t length = view.end(at) - begin;
    std::uint8_t* place = page.data() + kIndexEntries + begin;
    std::memmove(place, place + length, used - begin - length);
    clearMaskAbove(page, begin);
    for (std::size_t i = at + 1; i < view.count(); ++i)
        setMaskBit(page, view.end(i) - length);
    put16(page, kIndexFree, static_cast<std::uint16_t>(kIndexArea - used + length));
    return true;
}

IndexPageImage takeApart(const IndexPage& page, std::uint8_t level)
{
    IndexPageImage image;
    image.level = level;
    image.previous = page.previous();
    image.next = page.next();
    const std::size_t keys = page.isLeaf() ? page.count() : page.separators();
    image.keys.resize(keys);
    for (std::size_t i = 0; i < keys; ++i)
        page.key(i, image.keys[i]);
    if (!page.isLeaf()) {
        for (std::size_t i = 0; i <= keys; ++i)
            image.children.push_back(page.child(i));
    }
    return image;
}

PageSizes::PageSizes(std::span<const Bytes> keys, bool leaf)
    : m_keys(keys)
    , m_upTo(keys.size() + 1)
{
    for (std::size_t i = 0; i < keys.size(); ++i)
        m_upTo[i + 1] = m_upTo[i] + keys[i].size() + (leaf ? 0 : kChildBytes);
}

std::size_t PageSizes::bytes(std::size_t first, std::size_t last) const
{
    const std::size_t whole = m_upTo[last] - m_upTo[first];
    if (whole <= kIndexArea)
        return whole;
    return whole - commonPrefix(m_keys[first], m_keys[last - 1]) * (last - first - 1);
}

std::size_t commonPrefix(ByteView a, ByteView b)
{
    const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<std::size_t>(end - a.begin());
}

void writeIndexPage(ByteSpan page, PageNumber owner, const IndexPageImage& image)
{
    const bool leaf = image.isLeaf();
    const std::size_t prefix = neededPrefix(image.keys, leaf);
    std::fill(page.begin(), page.end(), std::uint8_t{0});
    page[0] = static_cast<std::uint8_t>(leaf ? PageType::IndexLeaf : PageType::IndexNode);
    page[1] = 1;
    put32(page, kIndexOwner, owner);
    put32(page, kIndexPrevious, image.previous);
    put32(page, kIndexNext, image.next);
    put32(page, kIndexTail, leaf ? 0 : image.children.back());
    put16(page, kIndexPrefix, static_cast<std::uint16_t>(prefix));
    page[kIndexLevel] = image.level;
    std::size_t used = 0;
    const auto append = [&](std::uint8_t byte) {
        assert(used < kIndexArea);
        page[kIndexEntries + used++] = byte;
    };
    for (std::size_t i = 0; i < image.keys.size(); ++i) {
        const Bytes& key = image.keys[i];
        std::for_each(key.begin() + static_cast<std::ptrdiff_t>(i == 0 ? 0 : prefix), key.end(),
                      append);
        if (!leaf) {
            for (const int shift : {24, 16, 8, 0})
                append(static_cast<std::uint8_t>(image.children[i] >> shift));
        }
        setMaskBit(page, used);
    }
    put16(page, kIndexFree, static_cast<std::uint16_t>(kIndexArea - used));
}

} // namespace jet
