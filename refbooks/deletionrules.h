#pragma once

#include "refbooks/catalogue.h"
#include "refbooks/phrase.h"

#include <span>
#include <string_view>

// Which rows of a reference book may not be deleted, as one table. The file itself holds no
// references between the books and their users.
namespace refbooks {

// A place where a row may be in use: rows of `table` whose `field` holds its key.
struct UseCheck
{
    std::string_view table;
    std::string_view counted; // the field of `table` that is counted
    std::string_view field;
    Phrase refusal; // %1, %2, ... are the columns of DeletionRule::names
};

struct DeletionRule
{
    Book book{};
    std::string_view names;           // SELECT without WHERE: what messages call the row
    std::span<const UseCheck> uses{}; // in the order in which they are checked
};

// Null for a book whose rows are not deleted by hand: the lessons.
const DeletionRule* deletionRule(Book book);

} // namespace refbooks
