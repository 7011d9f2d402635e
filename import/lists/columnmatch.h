#pragma once

#include "import/tables/texttable.h"
#include "refbooks/recordfields.h"

#include <QHash>

#include <string_view>
#include <vector>

namespace imports {

// What a column can be besides a field's position.
inline constexpr int kNoField = -1;
inline constexpr int kFullName = -2; // of students: surname, name and patronymic in one cell

// Where a table has the names of its columns, and which field of the book each of them fills.
struct ColumnMatch
{
    std::size_t headRow = 0; // in TextTable::rows
    std::vector<int> fields; // for each cell of that row

    friend bool operator==(const ColumnMatch&, const ColumnMatch&) = default;
};

// What stands for a field in ColumnNames: its name in the file, "*" for kFullName, "" for
// kNoField.
QString nameOfField(const std::vector<refbooks::RecordField>& fields, int field);

// Letters and digits only, small: signs and blanks differ from file to file.
QString plainHead(const QString& text);

// Heads by plainHead() and the fields that they stand for; they go before every guess.
using ColumnNames = QHash<QString, QString>;

// Guesses by the fields' captions in either wording, the list's heads, usual other names and the
// fields' names in the file. The names stand in that of the first rows which holds most of them,
// so a title above the table does no harm. No field is filled by two columns.
ColumnMatch matchColumns(refbooks::Book book, const std::vector<refbooks::RecordField>& fields,
                         const TextTable& table, const ColumnNames& known = {});

// The fields that such heads are guessed to stand for, one for each.
std::vector<int> guessedFields(refbooks::Book book,
                               const std::vector<refbooks::RecordField>& fields,
                               const QStringList& heads);

// The position of the field that the name means, kFullName or kNoField.
int fieldNamed(refbooks::Book book, const std::vector<refbooks::RecordField>& fields,
               const QString& name);

} // namespace imports
