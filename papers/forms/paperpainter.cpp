#include "papers/forms/paperpainter.h"

#include <QPagedPaintDevice>
#include <QPainter>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <utility>

using namespace Qt::StringLiterals;

namespace papers {
namespace {

// On paper, whatever the palette of the screen is.
const QColor kShade(0xE4, 0xE4, 0xE4);
const QColor kUnexcused(0xB0, 0x00, 0x00);
const QColor kExcused(0x00, 0x30, 0xA0);
constexpr double kLineMm = 0.12;
constexpr double kFooterPoints = 8;

struct PagePiece
{
    const PaperLayout* layout;
    PageShare share;
    bool lower = false; // in the lower half of a page that has begun
};

PageFrame frameOf(QPagedPaintDevice& device)
{
    constexpr double kMmPerInch = 25.4;
    PageFrame frame;
    frame.device = &device;
    frame.perMm = device.logicalDpiX() / kMmPerInch;
    const QRect area = device.pageLayout().paintRectPixels(device.logicalDpiX());
    frame.area = QRectF(0, 0, area.width(), area.height()); // the painter begins inside
    return frame;
}

double halfHeight(const PageFrame& frame)
{
    return frame.area.height() / 2;
}

std::unique_ptr<PaperLayout> layOut(const Paper& paper, const PageFrame& frame)
{
    auto layout = std::make_unique<PaperLayout>(paper, frame);
    const double squeeze = layout->squeezeToOnePage();
    return squeeze == 1 ? std::move(layout)
                        : std::make_unique<PaperLayout>(paper, frame.squeezed(squeeze));
}

// Two half papers share a page when both fit.
std::vector<PagePiece> pieces(const std::vector<std::unique_ptr<PaperLayout>>& layouts,
                              const PageFrame& frame)
{
    std::vector<PagePiece> result;
    bool upperFree = false;
    for (const auto& layout : layouts) {
        const auto& shares = layout->pages();
        const bool fits = layout->paper().half && shares.size() == 1
                          && layout->height(shares.front()) <= halfHeight(frame);
        for (const PageShare& share : shares)
            result.push_back({layout.get(), share, fits && upperFree});
        upperFree = fits && !upperFree;
    }
    return result;
}

QColor inkColor(Ink ink)
{
    switch (ink) {
    case Ink::Unexcused:
        return kUnexcused;
    case Ink::Excused:
        return kExcused;
    case Ink::Plain:
        break;
    }
    return Qt::black;
}

int alignment(Align align)
{
    switch (align) {
    case Align::Left:
        return Qt::AlignLeft;
    case Align::Right:
        return Qt::AlignRight;
    case Align::Centre:
        break;
    }
    return Qt::AlignHCenter;
}

} // namespace

PaperPainter::PaperPainter(const std::vector<Paper>& papers, QDate printed)
    : m_papers(papers)
    , m_printed(printed)
{}

bool PaperPainter::paint(QPagedPaintDevice& device)
{
    const PageFrame frame = frameOf(device);
    std::vector<std::unique_ptr<PaperLayout>> layouts;
    for (const Paper& paper : m_papers)
        layouts.push_back(layOut(paper, frame));
    const auto parts = pieces(layouts, frame);
    const int pages = static_cast<int>(
        std::ranges::count(parts, false, [](const PagePiece& piece) { return piece.lower; }));

    QPainter painter;
    if (!painter.begin(&device))
        return false;
    int page = 0;
    for (const PagePiece& piece : parts) {
        if (!piece.lower && page++ > 0 && !device.newPage())
            return false;
        if (!piece.lower)
            paintFooter(painter, frame, page, pages);
        const double half = halfHeight(frame);
        if (piece.lower) {
            painter.setPen(QPen(Qt::gray, frame.perMm * kLineMm, Qt::DashLine));
            painter.drawLine(QPointF(0, half), QPointF(frame.area.width(), half));
        }
        paintShare(painter, *piece.layout, piece.share, piece.lower ? half + frame.perMm * 3 : 0);
    }
    return painter.end();
}

void PaperPainter::paintShare(QPainter& painter, const PaperLayout& layout, const PageShare& share,
                              double top) const
{
    painter.save();
    painter.scale(layout.frame().squeeze, layout.frame().squeeze);
    double y = share.top ? paintTop(painter, layout, top) : top;
    y = paintRows(painter, layout, share, true, y);
    y = paintRows(painter, layout, share, false, y);
    if (share.notes)
        paintNotes(painter, layout, y);
    painter.restore();
}

double PaperPainter::paintTop(QPainter& painter, const PaperLayout& layout, double y) const
{
    const Paper& paper = layout.paper();
    const double across = layout.frame().area.width();
    const double line = layout.lineHeight(10);
    const auto put = [&](const QStringList& lines, const QRectF& column) {
        for (qsizetype i = 0; i < lines.size(); ++i)
            painter.drawText(column.translated(0, line * static_cast<double>(i)),
                             Qt::AlignLeft | Qt::TextSingleLine, lines[i]);
    };
    painter.setPen(Qt::black);
    painter.setFont(layout.textFont(10));
    put(paper.institution, QRectF(0, y, paper.approval.isEmpty() ? across : across * 0.6, line));
    put(paper.approval, QRectF(across * 0.62, y, across * 0.38, line));
    y += line * static_cast<double>(std::max(paper.institution.size(), paper.approval.size()));

    y += layout.mm(1);
    const auto putCentred = [&](const QString& text, double points, bool bold) {
        const double height = layout.titleHeight(text, points, bold);
        painter.setFont(layout.textFont(points, bold));
        painter.drawText(QRectF(0, y, across, height), Qt::AlignHCenter | Qt::TextWordWrap, text);
        y += height;
    };
    putCentred(paper.title, PaperLayout::kTitlePoints, true);
    if (!paper.subtitle.isEmpty())
        putCentred(paper.subtitle, PaperLayout::kTextPoints, false);
    return y + layout.mm(2);
}

double PaperPainter::paintRows(QPainter& painter, const PaperLayout& layout, const PageShare& share,
                               bool head, double y) const
{
    const Paper& paper = layout.paper();
    const auto rows = head ? std::span<const Row>(paper.head)
                           : std::span<const Row>(paper.body)
                                 .subspan(static_cast<std::size_t>(share.firstRow),
                                          static_cast<std::size_t>(share.rowCount));
    std::vector<double> tops{y};
    for (std::size_t row = 0; row < rows.size(); ++row)
        tops.push_back(tops.back()
                       + (head ? layout.headHeight(row)
                               : layout.rowHeight(row + static_cast<std::size_t>(share.firstRow))));
    const auto across = [&](int column, int count) { // of the columns on this page
        double left = 0, width = 0;
        for (const int shown : layout.columns(share)) {
            if (shown < column)
                left += layout.width(shown);
            else if (shown < column + count)
                width += layout.width(shown);
        }
        return std::pair(left, width);
    };
    for (const PlacedCell& place : placed(rows)) {
        const auto [left, width] = across(place.column, place.cell->columns);
        if (width <= 0)
            continue;
        const auto first = static_cast<std::size_t>(place.row);
        const auto last =
            std::min(first + static_cast<std::size_t>(place.cell->rows), tops.size() - 1);
        paintCell(painter, layout, *place.cell,
                  QRectF(left, tops[first], width, tops[last] - tops[first]));
    }
    return tops.back();
}

void PaperPainter::paintCell(QPainter& painter, const PaperLayout& layout, const Cell& cell,
                             const QRectF& box) const
{
    painter.setPen(QPen(Qt::black, layout.mm(kLineMm)));
    painter.setBrush(cell.shaded ? QBrush(kShade) : QBrush(Qt::NoBrush));
    painter.drawRect(box);
    const QString shown = shownText(cell);
    if (shown.isEmpty())
        return;
    painter.setFont(layout.tableFont(cell));
    painter.setPen(inkColor(cell.ink));
    const double gap = layout.padding();
    const int flags = Qt::AlignVCenter | Qt::TextWordWrap;
    if (!cell.rotated) {
        painter.drawText(box.adjusted(gap, gap / 2, -gap, -gap / 2), flags | alignment(cell.align),
                         shown);
        return;
    }
    painter.save();
    painter.translate(box.bottomLeft());
    painter.rotate(-90);
    painter.drawText(QRectF(gap, 0, box.height() - 2 * gap, box.width()), flags | Qt::AlignHCenter,
                     shown);
    painter.restore();
}

void PaperPainter::paintNotes(QPainter& painter, const PaperLayout& layout, double y) const
{
    const Paper& paper = layout.paper();
    const double across = layout.frame().area.width();
    y += layout.mm(1.5);
    painter.setPen(Qt::black);
    painter.setFont(layout.textFont(PaperLayout::kTablePoints));
    for (const QString& note : paper.notes) {
        QRectF used;
        painter.drawText(QRectF(0, y, across, layout.frame().area.height()), Qt::TextWordWrap, note,
                         &used);
        y += used.height();
    }
    painter.setFont(layout.textFont(PaperLayout::kTextPoints));
    for (std::size_t i = 0; i < paper.signatures.size(); ++i) {
        const double height = layout.signatureHeight(i / 2);
        painter.drawText(QRectF(i % 2 == 0 ? 0 : across / 2, y, layout.signatureWidth(i), height),
                         Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap,
                         signatureText(paper.signatures[i]));
        if (i % 2 == 1)
            y += height;
    }
}

void PaperPainter::paintFooter(QPainter& painter, const PageFrame& frame, int page, int pages) const
{
    QFont font(u"Liberation Serif"_s);
    font.setPointSizeF(kFooterPoints);
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QRectF line(0, frame.area.height() - frame.perMm * 4, frame.area.width(),
                      frame.perMm * 4);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignBottom,
                     u"Отпечатано "_s + m_printed.toString(u"dd.MM.yyyy"_s));
    painter.drawText(line, Qt::AlignRight | Qt::AlignBottom,
                     u"Лист %1 из %2"_s.arg(page).arg(pages));
}

} // namespace papers
