#pragma once

#include "refbooks/catalogue.h"
#include "shell/access/rights.h"

#include <string_view>
#include <vector>

namespace refbooks {

// A button of the list window's toolbar, or a separator (then without a text).
struct ToolbarButton
{
    std::string_view key;
    QString text; // in the institution's words
};

// The buttons the book has, in order.
std::vector<ToolbarButton> toolbarButtons(Book book, const shell::Wording& wording);

// Whether a button can be pressed: by the book, the role and the number of rows selected.
// Edit stays open to a role that may not change books: it shows the record.
bool isEnabled(std::string_view key, Book book, shell::Role role, int selectedRows);

// Whether the role may add, change and delete rows of the book.
bool mayChange(Book book, shell::Role role);

} // namespace refbooks
