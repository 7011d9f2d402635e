#pragma once

#include "journals/journalpaper.h"

#include <QString>

class QAbstractItemModel;
class QWidget;

namespace journals {

struct JournalParts;

// Shows the preview of the journal as its grid stands, from which it is printed. The page setup
// is kept for each `kind` of journal: "attendance", "grades". May throw jet::Error.
void printJournal(const QAbstractItemModel& model, const QString& kind,
                  const JournalHeading& heading, const JournalParts& parts, QWidget* parent);

// Writes the same grid as a workbook or a CSV file. Requires JournalParts::exportTable.
void exportJournal(const QAbstractItemModel& model, const JournalHeading& heading,
                   const JournalParts& parts);

} // namespace journals
