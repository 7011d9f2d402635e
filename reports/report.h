#pragma once

#include "papers/paper.h"
#include "reports/statements.h"

#include <functional>
#include <optional>

namespace reports {

// Makes the document; nothing when `progress`, which gets a number that grows to 100, gave
// false. Groups stand by name. Throws jet::Error. Requires that requestProblem() has none.
std::optional<papers::Document> makeReport(const StatementSource& source,
                                           const ReportRequest& request,
                                           const std::function<bool(int percent)>& progress = {});

// What the user is told when the document stands but its workbook could not be written; `named`
// says whether a file name had been settled.
QString notSavedText(ReportKind kind, bool named);

} // namespace reports
