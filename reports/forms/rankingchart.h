#pragma once

#include <QString>

#include <optional>
#include <vector>

class QChart;
class QPalette;

namespace reports {

// One indicator of a list of the ranking, a bar for each row.
struct RankingChart
{
    struct Bar
    {
        QString name;
        std::optional<double> value;
    };

    QString title;
    std::vector<Bar> bars; // from above
    bool isRate = false;   // the axis goes to 100
};

// The chart in the colours of the palette. The caller owns it.
QChart* drawnChart(const RankingChart& chart, const QPalette& palette);
// Puts the palette's colours on a chart.
void setColors(QChart& chart, const QPalette& palette);
// The height that its bars need to be read, in pixels.
int leastHeight(const RankingChart& chart);

} // namespace reports
