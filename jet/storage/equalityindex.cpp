#include "jet/storage/equalityindex.h"

#include "jet/error.h"
#include "jet/storage/decimaltext.h"
#include "jet/storage/sortkey.h"
#include "jet/storage/valueconversion.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace jet {

namespace {

constexpr std::uint64_t kFnvStart = 0xCBF29CE484222325;
constexpr std::uint64_t kFnvPrime = 0x100000001B3;

// A bijection that spreads keys evenly over their top bits (the finisher of SplitMix64).
std::uint64_t mixed(std::uint64_t x)
{
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EB;
    return x ^ (x >> 31);
}

std::uint64_t hashed(ByteView bytes)
{
    std::uint64_t hash = kFnvStart;
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * kFnvPrime;
    return mixed(hash);
}

// A value's number; nothing for NULL, other texts, GUIDs and bytes.
std::optional<double> numberOf(const Value& value)
{
    if (value.isNull() || value.as<Bytes>() || value.as<Guid>())
        return std::nullopt;
    const auto* text = value.as<std::string>();
    if (!text)
        return value.toDouble();
    const auto digits = parseDecimal(*text);
    return digits ? std::optional(digits->toDouble()) : std::nullopt;
}

std::optional<std::uint64_t> integerKey(const Value& value)
{
    constexpr double kLimit = 9007199254740992.0; // integers are exact below 2^53
    if (const auto* integer = value.as<std::int64_t>())
        return EqualityKey::ofInteger(*integer);
    const auto number = numberOf(value);
    if (!number || std::trunc(*number) != *number || std::abs(*number) > kLimit)
        return std::nullopt;
    return EqualityKey::ofInteger(static_cast<std::int64_t>(*number));
}

std::optional<std::uint64_t> currencyKey(const Value& value)
{
    if (const auto* amount = value.as<Currency>())
        return EqualityKey::ofInteger(amount->tenThousandths);
    const auto number = numberOf(value);
    if (!number || !std::isfinite(*number))
        return std::nullopt;
    const auto amount = toCurrency(decimalDigits(*number));
    if (!amount || Value(*amount).toDouble() != *number)
        return std::nullopt;
    return EqualityKey::ofInteger(amount->tenThousandths);
}

std::optional<std::uint64_t> numberKey(const ColumnDefinition& column, const Value& value)
{
    if (const auto* text = value.as<std::string>(); text && column.type() == FieldType::Date) {
        if (const auto date = DateTime::parse(*text))
            return EqualityKey::ofNumber(date->days);
    }
    const auto number = numberOf(value);
    if (!number || std::isnan(*number))
        return std::nullopt;
    return EqualityKey::ofNumber(*number);
}

std::optional<std::uint64_t> guidKey(const ColumnDefinition& column, const Value& value)
{
    try {
        return hashed(convertValue(value, column).as<Guid>()->bytes);
    } catch (const Error&) {
        return std::nullopt; // no GUID
    }
}

} // namespace

bool EqualityKey::isExact(const ColumnDefinition& column)
{
    switch (column.type()) {
    case FieldType::Text:
    case FieldType::Binary:
    case FieldType::Guid:
    case FieldType::Block:
        return false;
    default:
        return true;
    }
}

std::optional<std::uint64_t> EqualityKey::of(const ColumnDefinition& column, const Value& value)
{
    if (value.isNull())
        return std::nullopt;
    switch (column.type()) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        return integerKey(value);
    case FieldType::Currency:
        return currencyKey(value);
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
    case FieldType::Decimal:
        return numberKey(column, value);
    case FieldType::Text:
        return value.as<Bytes>() ? std::nullopt : std::optional(ofText(value.toText()));
    case FieldType::Guid:
        return guidKey(column, value);
    default:
        break;
    }
    const Bytes* bytes = value.as<Bytes>();
    return bytes ? std::optional(hashed(*bytes)) : std::nullopt;
}

std::uint64_t EqualityKey::ofInteger(std::int64_t value)
{
    return mixed(static_cast<std::uint64_t>(value));
}

std::uint64_t EqualityKey::ofNumber(double value)
{
    return mixed(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); // -0 equals 0
}

std::uint64_t EqualityKey::ofText(const std::string& text)
{
    return hashed(generalSortKey(text));
}

// Distributes the entries over buckets by the top bits of their keys, which are spread
// evenly, and orders the few buckets that hold several keys.
std::uint64_t EqualityKey::joined(std::uint64_t first, std::uint64_t next)
{
    return mixed(first * kFnvPrime ^ next);
}

void EqualityIndex::finish()
{
    const std::size_t count = m_entries.size();
    const int bits = std::max(1, static_cast<int>(std::bit_width(count)) - 1);
    m_shift = 64 - bits;
    m_buckets.assign((std::size_t{1} << bits) + 1, 0);
    for (const Entry& entry : m_entries)
        ++m_buckets[(entry.key >> m_shift) + 1];
    for (std::size_t i = 1; i < m_buckets.size(); ++i)
        m_buckets[i] += m_buckets[i - 1];
    m_keys.resize(count);
    m_rows.resize(count);
    std::vector<std::uint32_t> next(m_buckets.begin(), m_buckets.end() - 1);
    for (const Entry& entry : m_entries) {
        const std::size_t at = next[entry.key >> m_shift]++;
        m_keys[at] = entry.key;
        m_rows[at] = entry.row;
    }
    for (std::size_t i = 0; i + 1 < m_buckets.size(); ++i)
        sortBucket(m_buckets[i], m_buckets[i + 1]);
    std::vector<Entry>().swap(m_entries);
}

// Rows of one key are ascending already when the entries came in row order.
void EqualityIndex::sortBucket(std::size_t from, std::size_t to)
{
    bool sorted = true;
    for (std::size_t i = from + 1; i < to && sorted; ++i)
        sorted = Entry{m_keys[i - 1], m_rows[i - 1]} < Entry{m_keys[i], m_rows[i]};
    if (sorted)
        return;
    std::vector<Entry> entries;
    for (std::size_t i = from; i < to; ++i)
        entries.push_back({m_keys[i], m_rows[i]});
    std::sort(entries.begin(), entries.end());
    for (const Entry& entry : entries) {
        m_keys[from] = entry.key;
        m_rows[from++] = entry.row;
    }
}

void EqualityIndex::insert(std::uint64_t key, RowPointer row)
{
    const Entry entry{key, row};
    if (m_removed.erase(entry) == 0)
        m_added.insert(entry);
    mergeWhenLarge();
}

void EqualityIndex::erase(std::uint64_t key, RowPointer row)
{
    const Entry entry{key, row};
    if (m_added.erase(entry) == 0)
        m_removed.insert(entry);
    mergeWhenLarge();
}

std::pair<std::size_t, std::size_t> EqualityIndex::sortedRange(std::uint64_t key) const
{
    const std::size_t bucket = key >> m_shift;
    const auto first = m_keys.begin() + m_buckets[bucket];
    const auto last = m_keys.begin() + m_buckets[bucket + 1];
    const auto [from, to] = std::equal_range(first, last, key);
    return {static_cast<std::size_t>(from - m_keys.begin()),
            static_cast<std::size_t>(to - m_keys.begin())};
}

std::span<const RowPointer> EqualityIndex::find(std::uint64_t key)
{
    const auto [from, to] = sortedRange(key);
    const auto sorted = std::span(m_rows).subspan(from, to - from);
    if (m_added.empty() && m_removed.empty())
        return sorted;
    m_result.clear();
    for (const RowPointer row : sorted) {
        if (m_removed.empty() || !m_removed.contains({key, row}))
            m_result.push_back(row);
    }
    const auto middle = static_cast<std::ptrdiff_t>(m_result.size());
    for (auto at = m_added.lower_bound({key, {}}); at != m_added.end() && at->key == key; ++at)
        m_result.push_back(at->row);
    std::inplace_merge(m_result.begin(), m_result.begin() + middle, m_result.end());
    return m_result;
}

void EqualityIndex::mergeWhenLarge()
{
    constexpr std::size_t kLeast = 1024;
    if (m_added.size() + m_removed.size() > kLeast + m_keys.size() / 8)
        sortIn();
}

void EqualityIndex::sortIn()
{
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        const Entry entry{m_keys[i], m_rows[i]};
        if (!m_removed.contains(entry))
            m_entries.push_back(entry);
    }
    m_entries.insert(m_entries.end(), m_added.begin(), m_added.end());
    m_added.clear();
    m_removed.clear();
    finish();
}

std::size_t EqualityIndex::memoryBytes() const
{
    constexpr std::size_t kNode = 64; // of std::set, with its pointers
    return m_keys.capacity() * sizeof(std::uint64_t) + m_rows.capacity() * sizeof(RowPointer)
           + m_buckets.capacity() * sizeof(std::uint32_t)
           + (m_added.size() + m_removed.size()) * kNode;
}

} // namespace jet
