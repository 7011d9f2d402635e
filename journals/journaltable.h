#pragma once

#include "journals/journalpaper.h"
#include "sheets/table.h"

namespace journals {

// The journal as its grid stands, for a workbook or a CSV file. Reads the model when texts are
// asked for: it must outlive the table unchanged.
sheets::Table journalTable(const QAbstractItemModel& model, const JournalHeading& about);

} // namespace journals
