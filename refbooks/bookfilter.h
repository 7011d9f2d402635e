#pragma once

#include "refbooks/listquery.h"
#include "refbooks/lookups.h"
#include "shell/wording.h"

namespace shell {
class Settings;
}

namespace refbooks {

// The two boxes above the list. Workload: whose (teacher, group, room), then which one.
// Students: the group, then the subgroup. Other books have none.
class BookFilter
{
public:
    BookFilter(Book book, const shell::Wording& wording);

    bool isShown() const { return hasFilter(m_book); }

    // Fills the boxes from the journal; what was chosen stays chosen while it exists.
    // Throws jet::Error.
    void fill(jet::Database& database);

    const Choices& first() const { return m_first; }
    const Choices& second() const { return m_second; }
    int firstPosition() const { return m_firstPosition; } // -1 = nothing chosen
    int secondPosition() const { return m_secondPosition; }

    // Another kind of workload empties the second box and fills it anew. Throws jet::Error.
    void chooseFirst(int position, jet::Database& database);
    void chooseSecond(int position);

    ListFilter listFilter() const;
    // The list window's caption: of the workload, whose it is.
    QString caption() const;

    // The positions as the list was left, and keeping them. restore() fills the boxes;
    // throws jet::Error. A position that is no longer there is not taken.
    void restore(const shell::Settings& settings, jet::Database& database);
    void save(shell::Settings& settings) const;

private:
    WorkloadKind kind() const { return static_cast<WorkloadKind>(m_firstPosition); }
    Choices secondChoices(jet::Database& database) const;

    Book m_book;
    shell::Wording m_wording;
    Choices m_first, m_second;
    int m_firstPosition = -1;
    int m_secondPosition = -1;
};

} // namespace refbooks
