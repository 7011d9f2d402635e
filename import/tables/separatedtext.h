#pragma once

#include "import/tables/texttable.h"

#include <QByteArray>

namespace imports {

// The text of a file: UTF-16 with a byte order mark, UTF-8 when the bytes are valid UTF-8, else
// Windows-1251, in which hardly any Russian text is valid UTF-8: a capital letter after each other
// letter would be needed. Throws jet::Error for bytes that are no text.
QString decodedText(const QByteArray& bytes);

// The sign between the cells: that of ";", tab, "," and "|" which cuts the first rows into the
// most even columns; ";" when none does.
QChar separatorOf(const QString& text);

// Rows as RFC 4180 has them: cells in quotes may hold separators, line breaks and doubled quotes.
// Lines end in CR LF, LF or CR. Throws jet::Error for a quote that is not closed.
std::vector<TextRow> separatedRows(const QString& text, QChar separator);

TextTable readSeparated(const QByteArray& bytes);

} // namespace imports
