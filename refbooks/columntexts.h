#pragma once

#include "jet/value.h"

#include <QString>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace refbooks {

// The cells of one list column. Equal texts are kept once: a list of 150,000 lessons names
// few teachers, groups, disciplines and days.
class ColumnTexts
{
public:
    // Numbers and dates sort by value, texts in Jet's order.
    explicit ColumnTexts(bool numeric)
        : m_numeric(numeric)
    {}

    void append(const jet::Value& value);
    // Call once after the last append: frees what only appending needs.
    void finish();

    const QString& text(std::size_t row) const { return m_texts[m_cells[row]]; }
    std::size_t size() const { return m_cells.size(); }

    // Of every row, its place in the order of the column; equal cells share a place.
    std::vector<std::uint32_t> ranks() const;
    // Of every row, whether its text holds `part`, in capitals or not.
    std::vector<bool> holds(const QString& part) const;

private:
    bool m_numeric;
    std::unordered_map<std::string, std::uint32_t> m_known;
    std::vector<QString> m_texts;
    std::vector<double> m_numbers;      // of m_texts, when numeric
    std::vector<std::uint32_t> m_cells; // a position in m_texts for each row
};

} // namespace refbooks
