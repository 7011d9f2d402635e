#pragma once

#include <QItemSelection>
#include <QString>

namespace journals {

// The selected cells as tab-separated text that spreadsheets take, cells between them that
// are not selected left empty. Tabs and line ends within a cell become blanks.
QString tableText(const QModelIndexList& selected);

} // namespace journals
