#pragma once

#include "reports/ranking.h"

#include <QString>
#include <QStringList>

namespace reports {

// Whether the item is a share of a hundred, with one decimal.
bool isRate(std::size_t item);
// How an item of the ranking is counted, "" where its head says it all.
QString rankingRule(std::size_t item);
// The rules that a reader of the printed ranking needs.
QStringList rankingNotes();
// "01.09.2025 - 31.12.2025, итоговые оценки".
QString rankingPeriodText(const RankingRequest& request);

} // namespace reports
