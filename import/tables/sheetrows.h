#pragma once

#include "import/tables/texttable.h"

#include <QByteArray>

namespace imports {

class CellFormats;

// The texts that the cells of a workbook name by number, from xl/sharedStrings.xml. Throws
// jet::Error.
QStringList sharedTexts(const QByteArray& part);

// The rows of a sheet's part. Throws jet::Error: damaged, too large, or a cell whose formula has
// failed.
std::vector<TextRow> sheetRows(const QByteArray& part, const QStringList& shared,
                               const CellFormats& formats);

} // namespace imports
