#include "reports/forms/chartfiles.h"

#include "data/convert.h"
#include "jet/error.h"
#include "papers/forms/printpreview.h"

#include <QChart>
#include <QGraphicsScene>
#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPalette>
#include <QPrinter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr int kWidth = 1100, kLeastHeight = 700; // of a picture, pixels

QPalette paperPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(70, 120, 180)); // grey enough on a grey printer
    return palette;
}

QSize pictureSize(const RankingChart& chart)
{
    return {kWidth, std::max(kLeastHeight, leastHeight(chart))};
}

// Fits the chart into the target, as large as it goes.
void paint(QPainter& painter, const QRectF& target, const RankingChart& chart)
{
    QGraphicsScene scene;
    QChart* drawn = drawnChart(chart, paperPalette());
    scene.addItem(drawn);
    drawn->resize(pictureSize(chart));
    scene.render(&painter, target, drawn->rect(), Qt::KeepAspectRatio);
}

// The heading stands above each chart.
bool paintPages(QPagedPaintDevice& device, const std::vector<RankingChart>& charts,
                const QString& heading)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    const QSizeF page = device.pageLayout().paintRectPixels(device.logicalDpiX()).size();
    const double top = 2 * painter.fontMetrics().height();
    bool isFirst = true;
    for (const RankingChart& chart : charts) {
        if (!isFirst && !device.newPage())
            return false;
        isFirst = false;
        painter.setPen(Qt::black);
        painter.drawText(QRectF(0, 0, page.width(), top), Qt::AlignHCenter, heading);
        paint(painter, QRectF(0, top, page.width(), page.height() - top), chart);
    }
    return painter.end();
}

void writeSvg(QIODevice& file, const RankingChart& chart)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(pictureSize(chart));
    generator.setViewBox(QRect(QPoint(), pictureSize(chart)));
    generator.setTitle(chart.title);
    QPainter painter(&generator);
    paint(painter, QRectF(QPointF(), pictureSize(chart)), chart);
}

bool writePng(QIODevice& file, const RankingChart& chart)
{
    constexpr int kSharpness = 2; // picture pixels for one of the screen
    QImage image(pictureSize(chart) * kSharpness, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter, image.rect(), chart);
    painter.end();
    return image.save(&file, "PNG");
}

} // namespace

void printCharts(const std::vector<RankingChart>& charts, const QString& title,
                 const QString& period, QWidget* parent)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(title);
    printer.setPageLayout({QPageSize(QPageSize::A4), QPageLayout::Landscape,
                           QMarginsF(15, 10, 10, 10), QPageLayout::Millimeter});
    const QString heading = title + u", "_s + period;
    papers::showPreview(
        printer, [&](QPagedPaintDevice& device) { return paintPages(device, charts, heading); },
        parent);
}

void writePicture(const RankingChart& chart, const QString& path)
{
    QSaveFile file(path);
    bool written = file.open(QIODevice::WriteOnly);
    if (written && path.endsWith(u".svg"_s, Qt::CaseInsensitive))
        writeSvg(file, chart);
    else if (written)
        written = writePng(file, chart);
    if (!written || !file.commit())
        throw jet::Error(jet::Fault::Io, data::toUtf8(u"файл %1 нельзя записать: %2"_s.arg(
                                             path, file.errorString())));
}

} // namespace reports
