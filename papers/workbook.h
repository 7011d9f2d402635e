#pragma once

#include "papers/paper.h"
#include "sheets/wholefile.h"

namespace papers {

// Writes the document as a workbook, a sheet for each paper; half papers of the same name stand
// below one another on one sheet. Bodies begin in row 8, or in the row that the formulas of a
// half paper cannot know: those must have none. Set up for A4, as wide as the page, heads
// repeated. Numbers are numbers, formulas carry their results. Throws jet::Error.
void writeWorkbook(const Document& document, const QString& path,
                   sheets::Existing existing = sheets::Existing::Keep);

// The document's name without what file systems refuse, and ".xlsx".
QString fileName(const Document& document);

} // namespace papers
