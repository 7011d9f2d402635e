#pragma once

#include "reports/ranking.h"

#include <QString>
#include <QStringList>

namespace reports {

// How an item of the ranking is counted, "" where its head says it all.
QString rankingRule(std::size_t item);
// The rules that a reader of the printed ranking needs.
QStringList rankingNotes();
// "01.09.2025 - 31.12.2025, итоговые оценки".
QString rankingPeriodText(const RankingRequest& request);

} // namespace reports
