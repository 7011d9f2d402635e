#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace imports {

struct TextRow
{
    int number = 0; // as a spreadsheet counts rows, from 1
    QStringList cells;
};

// A table as a file holds it: the texts that its user sees. Rows without any text are left out,
// and a row may be shorter than others.
struct TextTable
{
    QStringList sheets; // what the file offers: sheets or tables; empty for a text file
    QString sheet;      // the one read
    std::vector<TextRow> rows;
};

// What is more than that is no list that a person made.
inline constexpr int kMostRows = 200'000;
inline constexpr int kMostColumns = 256;
inline constexpr int kMostCells = 4'000'000;

} // namespace imports
