#pragma once

#include "refbooks/catalogue.h"

#include <optional>
#include <string>

namespace refbooks {

// Whose workload is listed. The numbers are kept in settings.
enum class WorkloadKind { ByTeacher = 0, ByGroup = 1, ByRoom = 2 };

// What a list is narrowed to. Only the workload and the students have a filter; their lists
// are empty until a key is chosen.
struct ListFilter
{
    WorkloadKind kind = WorkloadKind::ByTeacher;
    std::optional<int> key;      // of the teacher, group or room; for students of the group
    std::optional<int> subgroup; // students only; nothing for all
};

// Whether the list waits for a choice in the boxes above it.
inline bool hasFilter(Book book)
{
    return book == Book::Workload || book == Book::Students;
}

// The Jet SQL of a book's list. Its columns are those of listColumns() and the key field.
std::string listQuery(Book book, const ListFilter& filter, const shell::Wording& wording);

} // namespace refbooks
