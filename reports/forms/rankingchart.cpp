#include "reports/forms/rankingchart.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QGraphicsLayout>
#include <QHorizontalBarSeries>
#include <QLocale>
#include <QPalette>
#include <QValueAxis>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

// Steps of 1, 2 or 5 times a power of ten, about five of them.
double stepFor(double most)
{
    constexpr double kSteps = 5;
    const double rough = std::max(most, 1.0) / kSteps;
    const double power = std::pow(10, std::floor(std::log10(std::max(rough, 1.0))));
    for (const double times : {1.0, 2.0, 5.0})
        if (rough <= times * power)
            return times * power;
    return 10 * power;
}

// The axis knows its rows by their names and takes each name once; a sign without width keeps
// equal ones apart.
void addName(QBarCategoryAxis& axis, QString name)
{
    const QStringList taken = axis.categories();
    while (name.isEmpty() || taken.contains(name))
        name += QChar(0x200B);
    axis.append(name);
}

QValueAxis* valueAxis(const RankingChart& chart)
{
    constexpr double kHundred = 100, kRoomForLabels = 1.12;
    double most = chart.isRate ? kHundred : 0;
    for (const auto& bar : chart.bars)
        most = std::max(most, bar.value.value_or(0));
    auto* axis = new QValueAxis;
    axis->setRange(0, std::max(most, 1.0) * kRoomForLabels);
    axis->setTickType(QValueAxis::TicksDynamic);
    axis->setTickAnchor(0);
    axis->setTickInterval(stepFor(most));
    axis->setLabelFormat(u"%.0f"_s);
    return axis;
}

} // namespace

QChart* drawnChart(const RankingChart& chart, const QPalette& palette)
{
    auto* drawn = new QChart;
    auto* series = new QHorizontalBarSeries;
    auto* values = new QBarSet(chart.title);
    auto* names = new QBarCategoryAxis;
    // The axis goes upwards.
    std::for_each(chart.bars.rbegin(), chart.bars.rend(), [&](const auto& bar) {
        *values << bar.value.value_or(0);
        addName(*names, bar.value ? bar.name : bar.name + u" (нет данных)"_s);
    });
    constexpr double kBarShare = 0.7; // of the room of a row
    constexpr int kDigits = 6;
    series->setBarWidth(kBarShare);
    series->append(values);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
    series->setLabelsPrecision(kDigits);
    drawn->setLocale(QLocale(QLocale::Russian));
    drawn->setLocalizeNumbers(true);
    drawn->addSeries(series);
    auto* axis = valueAxis(chart);
    drawn->addAxis(names, Qt::AlignLeft);
    drawn->addAxis(axis, Qt::AlignBottom);
    series->attachAxis(names);
    series->attachAxis(axis);
    constexpr int kMargin = 4;
    drawn->legend()->hide();
    drawn->setMargins(QMargins(kMargin, kMargin, kMargin, kMargin));
    drawn->layout()->setContentsMargins(0, 0, 0, 0);
    drawn->setTitle(chart.title);
    QFont bold = drawn->titleFont();
    bold.setBold(true);
    drawn->setTitleFont(bold);
    drawn->setAnimationOptions(QChart::NoAnimation);
    setColors(*drawn, palette);
    return drawn;
}

void setColors(QChart& chart, const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Text);
    QColor line = text;
    constexpr float kFaint = 0.25F;
    line.setAlphaF(kFaint);
    chart.setBackgroundBrush(palette.color(QPalette::Base));
    chart.setBackgroundRoundness(0);
    chart.setTitleBrush(text);
    for (QAbstractAxis* axis : chart.axes()) {
        axis->setLabelsBrush(text);
        axis->setLinePen(QPen(text));
        axis->setGridLinePen(QPen(line));
    }
    for (QAbstractSeries* series : chart.series())
        for (QBarSet* set : qobject_cast<QAbstractBarSeries*>(series)->barSets()) {
            set->setBrush(palette.color(QPalette::Highlight));
            set->setPen(QPen(text));
            set->setLabelBrush(text);
        }
}

int leastHeight(const RankingChart& chart)
{
    constexpr int kFrame = 70, kBar = 26; // title and axis; a bar with its label
    return kFrame + kBar * static_cast<int>(chart.bars.size());
}

} // namespace reports
