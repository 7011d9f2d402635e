#pragma once

#include "reports/report.h"

#include <optional>

class QWidget;

namespace reports {

// makeReport() behind a box that appears after half a second and can cancel; nothing when it was
// cancelled. The work stays in the thread of the windows, since the journal is open there; the
// box keeps all other windows from being used meanwhile. Throws jet::Error.
std::optional<papers::Document> makeWithProgress(const StatementSource& source,
                                                 const ReportRequest& request, QWidget* parent);

} // namespace reports
