#pragma once

#include "papers/paper.h"

#include <vector>

// How high the rows of a workbook must be, in points. Spreadsheet programs fit rows neither to
// merged cells nor to texts that read upwards, so the height is estimated by the letters.
namespace papers {

inline constexpr double kTablePoints = 9; // of the letters in tables and notes

struct RowHeights
{
    std::vector<double> head, body;
};

RowHeights rowHeights(const Paper& paper);

// Of the paper from its first line to the signatures.
double sheetHeight(const Paper& paper);

// Of a text across so many millimetres, which wraps.
double textHeight(const QString& text, double across, double points);

// Of the columns, from one to another; the last is not included.
double widthOf(const Paper& paper, int from, int end);

} // namespace papers
