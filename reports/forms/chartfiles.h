#pragma once

#include "reports/forms/rankingchart.h"

#include <QString>

#include <vector>

class QWidget;

namespace reports {

// Charts outside the window, in the colours of paper whatever the window's are.

// Shows a preview with a chart on each page below title and period, from which they are printed.
void printCharts(const std::vector<RankingChart>& charts, const QString& title,
                 const QString& period, QWidget* parent);
// Writes a picture, drawn (".svg") or painted (".png"). The file is there whole or not at all.
// Throws jet::Error.
void writePicture(const RankingChart& chart, const QString& path);

} // namespace reports
