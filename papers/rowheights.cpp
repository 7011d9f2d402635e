#include "papers/rowheights.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace papers {
namespace {

constexpr double kLeastHead = 28, kLeastBody = 12.5, kMostRotated = 130;

double rotatedHeight(const Cell& cell)
{
    constexpr double kPointsPerLetter = 4.6, kMargin = 8;
    qsizetype letters = 0;
    for (const QString& line : shownText(cell).split(u'\n'))
        letters = std::max(letters, line.size());
    return std::min(kMostRotated, kPointsPerLetter * static_cast<double>(letters) + kMargin);
}

double heightOf(const Paper& paper, const PlacedCell& place)
{
    if (place.cell->rotated)
        return rotatedHeight(*place.cell);
    const double across = widthOf(paper, place.column, place.column + place.cell->columns);
    return textHeight(shownText(*place.cell), across, kTablePoints);
}

std::vector<double> heights(const Paper& paper, std::span<const Row> rows, double least)
{
    std::vector<double> result(rows.size(), least);
    for (const PlacedCell& place : placed(rows)) {
        // A cell over several rows makes the last of them higher.
        const auto last = result.begin() + place.row + place.cell->rows - 1;
        const double above = std::accumulate(result.begin() + place.row, last, 0.0);
        *last = std::max(*last, heightOf(paper, place) - above);
    }
    return result;
}

} // namespace

RowHeights rowHeights(const Paper& paper)
{
    const double rows = std::max<double>(1, static_cast<double>(paper.head.size()));
    return {heights(paper, paper.head, kLeastHead / rows), heights(paper, paper.body, kLeastBody)};
}

double sheetHeight(const Paper& paper)
{
    constexpr double kUsualRow = 15;
    const RowHeights rows = rowHeights(paper);
    const double across = widthOf(paper, 0, static_cast<int>(paper.widths.size()));
    double height = kUsualRow * static_cast<double>(kFirstBodyRow - 1 - rows.head.size());
    for (const auto* part : {&rows.head, &rows.body})
        height = std::accumulate(part->begin(), part->end(), height);
    for (const QString& note : paper.notes)
        height += textHeight(note, across, kTablePoints);
    const std::size_t linesOfSignatures = 1 + (paper.signatures.size() + 1) / 2 * 2;
    return height + kUsualRow * static_cast<double>(linesOfSignatures);
}

double textHeight(const QString& text, double across, double points)
{
    constexpr double kMmPerPoint = 0.155; // of an average letter
    constexpr double kMargins = 1.5;      // mm
    constexpr double kLine = 1.17;        // of the points
    double lines = 0;
    for (const QString& line : text.split(u'\n')) {
        const double length = static_cast<double>(line.size()) * kMmPerPoint * points;
        lines += std::max(1.0, std::ceil(length / std::max(1.0, across - kMargins)));
    }
    return lines * points * kLine + 2;
}

double widthOf(const Paper& paper, int from, int end)
{
    return std::accumulate(paper.widths.begin() + from, paper.widths.begin() + end, 0.0);
}

} // namespace papers
