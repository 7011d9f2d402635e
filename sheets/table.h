#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace sheets {

// What the texts of a column stand for. One that does not read as its kind stays a text.
enum class Kind { Text, Number, Date };
enum class Alignment { Left, Right, Centre };

struct Column
{
    QString head;
    Kind kind = Kind::Text; // dates are written dd.mm.yyyy
    Alignment alignment = Alignment::Left;
};

// A table as it is shown; the texts are asked for row by row.
struct Table
{
    QString title; // of the sheet and of every printed page
    std::vector<Column> columns;
    int rows = 0;
    std::function<QString(int row, int column)> text;
};

} // namespace sheets
