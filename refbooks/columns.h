#pragma once

#include "refbooks/catalogue.h"

#include <string_view>
#include <vector>

namespace refbooks {

enum class Alignment { Left, Right, Centre };

// A column of a book's list. `field` is the name of the list query's column that fills it.
struct Column
{
    QString header; // in the institution's words
    std::string_view field;
    Alignment alignment = Alignment::Left;
    int width = 100; // relative to the other columns of the book
};

std::vector<Column> listColumns(Book book, const shell::Wording& wording);

// The column whose text names the row: what messages call it and typing searches in.
int nameColumn(Book book, const std::vector<Column>& columns);

} // namespace refbooks
