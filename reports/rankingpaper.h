#pragma once

#include "papers/paper.h"
#include "reports/ranking.h"
#include "shell/wording.h"

#include <span>

namespace data {
struct SettingsRow;
}

namespace reports {

// The lists of the ranking as they are shown.
struct RankingShown
{
    RankingRequest request;
    std::span<const RankingRow> specialities;
    QString speciality; // of the groups
    std::span<const RankingRow> groups;
};

// A paper for the specialities and, when there are any, one for the groups.
papers::Document rankingDocument(const RankingShown& shown, const data::SettingsRow& settings,
                                 const shell::Wording& wording);

} // namespace reports
