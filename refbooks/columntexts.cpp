#include "refbooks/columntexts.h"

#include "data/convert.h"
#include "jet/storage/sortkey.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace refbooks {
namespace {

// Notes of several lines show on one.
QString onOneLine(const std::string& text)
{
    QString line = data::fromUtf8(text);
    return line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
}

double numberOf(const jet::Value& value)
{
    if (value.isNull())
        return -std::numeric_limits<double>::infinity();
    const auto* date = value.as<jet::DateTime>();
    return date ? date->days : value.toDouble();
}

} // namespace

void ColumnTexts::append(const jet::Value& value)
{
    std::string text = value.toText();
    const auto next = static_cast<std::uint32_t>(m_texts.size());
    const auto [entry, isNew] = m_known.try_emplace(std::move(text), next);
    if (isNew) {
        m_texts.push_back(onOneLine(entry->first));
        if (m_numeric)
            m_numbers.push_back(numberOf(value));
    }
    m_cells.push_back(entry->second);
}

void ColumnTexts::finish()
{
    m_known = {};
    m_texts.shrink_to_fit();
    m_numbers.shrink_to_fit();
    m_cells.shrink_to_fit();
}

std::vector<std::uint32_t> ColumnTexts::ranks() const
{
    std::vector<std::string> keys; // texts in Jet's order
    for (const QString& text : m_texts)
        keys.push_back(m_numeric ? std::string() : data::toUtf8(text));
    const auto compare = [&](std::uint32_t a, std::uint32_t b) {
        if (m_numeric)
            return m_numbers[a] < m_numbers[b] ? -1 : m_numbers[a] > m_numbers[b] ? 1 : 0;
        return jet::compareGeneral(keys[a], keys[b]);
    };
    std::vector<std::uint32_t> order(m_texts.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, [&](auto a, auto b) { return compare(a, b) < 0; });
    std::vector<std::uint32_t> places(m_texts.size());
    std::uint32_t place = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && compare(order[i - 1], order[i]) != 0)
            ++place;
        places[order[i]] = place;
    }
    std::vector<std::uint32_t> ranks(m_cells.size());
    std::ranges::transform(m_cells, ranks.begin(), [&](auto cell) { return places[cell]; });
    return ranks;
}

std::vector<bool> ColumnTexts::holds(const QString& part) const
{
    std::vector<bool> texts(m_texts.size());
    for (std::size_t i = 0; i < m_texts.size(); ++i)
        texts[i] = m_texts[i].contains(part, Qt::CaseInsensitive);
    std::vector<bool> rows(m_cells.size());
    for (std::size_t i = 0; i < m_cells.size(); ++i)
        rows[i] = texts[m_cells[i]];
    return rows;
}

} // namespace refbooks
