#include "jet/sql/columnstatistics.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <unordered_map>

namespace jet::sql {

namespace {

constexpr int kSampleRows = 2000;
constexpr double kLeastRows = 200;

std::size_t hashOf(const RowView& row, int column, FieldType type, std::string& buffer)
{
    switch (type) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        return std::hash<std::int64_t>()(row.integer(column));
    case FieldType::Text:
        buffer.clear();
        row.text(column, buffer);
        return std::hash<std::string>()(buffer);
    default:
        return std::hash<double>()(row.number(column));
    }
}

// Distinct values of the whole table by the "guaranteed error" estimator: values met once
// in the sample stand for many that it did not meet.
double distinctValues(Table& table, int column, double rows)
{
    const FieldType type = table.definition().columns[static_cast<std::size_t>(column)].type();
    std::unordered_map<std::size_t, int> met;
    std::string buffer;
    int sampled = 0;
    for (TableScan scan = table.scan(); sampled < kSampleRows && scan.next(); ++sampled) {
        if (!scan.row().isNull(column))
            ++met[hashOf(scan.row(), column, type, buffer)];
    }
    const auto once = static_cast<double>(
        std::ranges::count_if(met, [](const auto& entry) { return entry.second == 1; }));
    const auto distinct = static_cast<double>(met.size());
    // Few rows tell little; the plan will outlive them.
    constexpr int kFewRows = 100;
    constexpr double kUsualPart = 0.25;
    if (sampled < kFewRows)
        return std::max(kUsualPart, sampled == 0 ? 0 : distinct / sampled) * rows;
    if (distinct == 0)
        return 1;
    return std::sqrt(std::max(rows / sampled, 1.0)) * once + distinct - once;
}

} // namespace

double ColumnStatistics::rowCount(Table& table)
{
    return std::max<double>(table.definition().rowCount, kLeastRows);
}

double ColumnStatistics::rowsPerValue(Table& table, int column)
{
    const double rows = rowCount(table);
    m_samples.resize(table.definition().columns.size());
    Sample& sample = m_samples[static_cast<std::size_t>(column)];
    if (sample.rowsThen == 0 || rows > 2 * sample.rowsThen || rows < sample.rowsThen / 2)
        sample = {rows, distinctValues(table, column, rows)};
    return std::max(rows / sample.distinctValues, 1.0);
}

} // namespace jet::sql
