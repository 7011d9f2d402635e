#pragma once

#include "papers/paper.h"
#include "reports/truancy.h"
#include "shell/wording.h"

namespace data {
struct SettingsRow;
}

namespace reports {

// The report as a paper: under each date or group the hours missed for good reasons and
// without, totals as formulas, below and at the right.
papers::Document truancyDocument(const TruancyReport& report, const data::SettingsRow& settings,
                                 const shell::Wording& wording);

} // namespace reports
