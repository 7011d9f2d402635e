#pragma once

#include "reports/statements/pieces.h"

// The views of the statement by subject. Each throws jet::Error.
namespace reports {

papers::Paper currentView(const StatementSource& source, const ReportRequest& request,
                          journals::GroupId group);
papers::Paper periodicView(const StatementSource& source, const ReportRequest& request,
                           journals::GroupId group);
papers::Paper combinedView(const StatementSource& source, const ReportRequest& request,
                           journals::GroupId group);

// The head of a paper about one discipline, with the place for its teacher's signature.
papers::Paper subjectPaper(const StatementSource& source, const ReportRequest& request,
                           journals::GroupId group, const journals::Period& period,
                           const QString& periodText);

} // namespace reports
