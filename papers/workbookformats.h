#pragma once

#include "papers/paper.h"

#include <xlsxwriter.h>

#include <map>
#include <tuple>

namespace papers {

// The formats of a workbook, each made once. The workbook outlives this.
class WorkbookFormats
{
public:
    explicit WorkbookFormats(lxw_workbook& book)
        : m_book(book)
    {}

    // `hidesZero`: the cell's formula has nothing to show.
    lxw_format* of(const Cell& cell, bool hidesZero);
    // Of a line outside the table.
    lxw_format* line(double points, bool bold, lxw_format_alignments align);
    lxw_format* wrappedLine(double points);
    // Between two papers of a page.
    lxw_format* cutLine();

private:
    using Key = std::tuple<int, int, int, bool, bool, bool, bool>;

    lxw_format* plain(double points);
    lxw_format* make(const Cell& cell, bool hidesZero);

    lxw_workbook& m_book;
    std::map<Key, lxw_format*> m_cells;
    std::map<std::tuple<double, bool, int>, lxw_format*> m_lines;
    std::map<double, lxw_format*> m_wrapped;
    lxw_format* m_cut = nullptr;
};

// The columns' widths are counted in digits of the workbook's own font. Programs that lack
// Calibri, the usual one, take a wider font for it and shrink the page; Arial's widths are known
// everywhere.
void setOwnFont(lxw_workbook& book);

} // namespace papers
