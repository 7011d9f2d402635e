#pragma once

#include "papers/paper.h"
#include "reports/request.h"
#include "shell/wording.h"

#include "data/settingsrow.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace jet {
class Database;
}

namespace reports {

// What every statement is made from; it outlives the call.
struct StatementSource
{
    jet::Database& database;
    data::SettingsRow settings;
    shell::Wording wording;
};

// The papers of one group by the request, which takes all else; a card for each student. All
// throw jet::Error. Require that requestProblem() has none.
std::vector<papers::Paper> attendanceStatement(const StatementSource& source,
                                               const ReportRequest& request,
                                               journals::GroupId group);
std::vector<papers::Paper> monthGradesStatement(const StatementSource& source,
                                                const ReportRequest& request,
                                                journals::GroupId group);
std::vector<papers::Paper> subjectStatement(const StatementSource& source,
                                            const ReportRequest& request, journals::GroupId group);
std::vector<papers::Paper> reportCards(const StatementSource& source, const ReportRequest& request,
                                       journals::GroupId group);
std::vector<papers::Paper> finalStatement(const StatementSource& source,
                                          const ReportRequest& request, journals::GroupId group);
// Of the whole institution; nothing when `goesOn`, asked before each group, gave false.
std::vector<papers::Paper>
summaryStatement(const StatementSource& source, const ReportRequest& request,
                 const std::function<bool(std::size_t done, std::size_t all)>& goesOn);

} // namespace reports
