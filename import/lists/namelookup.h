#pragma once

#include "refbooks/recordfields.h"

#include <QHash>

namespace jet {
class Database;
}

namespace imports {

// Finds rows of a drop-down list by what a file calls them: case and blanks around do not count,
// nor, where no row has that very name, blanks behind the points of initials. A name that several
// rows have means none of them.
class NameLookup
{
public:
    NameLookup() = default;
    // Also knows full names and codes of specialities, numbers of months and subgroups, words for
    // the sexes. Throws jet::Error.
    NameLookup(refbooks::Lookup lookup, const refbooks::Choices& choices, jet::Database& database);

    struct Found
    {
        std::optional<int> key;
        bool isAmbiguous = false;
    };
    Found find(const QString& name) const;
    void add(int key, const QString& name);

private:
    using Names = QHash<QString, Found>;
    static void insert(Names& names, int key, const QString& text);
    void addOthers(refbooks::Lookup lookup, jet::Database& database);

    Names m_names;  // as the list shows them
    Names m_others; // looser, and other names; asked when the list shows no such name
};

} // namespace imports
