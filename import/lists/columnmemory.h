#pragma once

#include "import/lists/columnmatch.h"

#include <QByteArray>

namespace imports {

// The heads whose columns the user sent elsewhere than the guess did, with the field that they
// go to: what is kept of one import for the next one into the same book.
class ColumnMemory
{
public:
    ColumnMemory() = default;
    // What toJson() gave; nothing is known when that cannot be read.
    static ColumnMemory fromJson(const QByteArray& json);
    QByteArray toJson() const;

    // Takes in what was chosen; a head that went where it is guessed to go is forgotten.
    void learn(refbooks::Book book, const std::vector<refbooks::RecordField>& fields,
               const TextTable& table, const ColumnMatch& chosen);

    const ColumnNames& names() const { return m_names; }

private:
    ColumnNames m_names;
};

} // namespace imports
