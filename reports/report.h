#pragma once

#include "papers/paper.h"
#include "reports/statements.h"

#include <functional>
#include <optional>
#include <vector>

namespace reports {

// Makes the document; nothing when `progress`, which gets a number that grows to 100, gave
// false. Groups stand by name. Throws jet::Error. Requires that requestProblem() has none.
std::optional<papers::Document> makeReport(const StatementSource& source,
                                           const ReportRequest& request,
                                           const std::function<bool(int percent)>& progress = {});

// A document for each paper, named after whom the paper is about: for cards that go to one
// person each.
std::vector<papers::Document> onePerPerson(const papers::Document& document);

// What the user is told when the document stands but its workbook could not be written; `named`
// says whether a file name had been settled.
QString notSavedText(ReportKind kind, bool named);

} // namespace reports
