#include "papers/forms/paperlayout.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace papers {
namespace {

constexpr double kLeastRowMm = 4.6;
constexpr double kMostRotatedMm = 42; // longer headings wrap
constexpr double kAnyLength = 1e6;

double sum(const std::vector<double>& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0);
}

} // namespace

PageFrame PageFrame::squeezed(double by) const
{
    PageFrame frame = *this;
    frame.area = QRectF(0, 0, area.width() / by, area.height() / by);
    frame.squeeze = by;
    return frame;
}

PaperLayout::PaperLayout(const Paper& paper, const PageFrame& frame)
    : m_paper(paper)
    , m_frame(frame)
{
    chooseColumns();
    m_headHeights = heights(paper.head, mm(kLeastRowMm) * m_scale);
    m_rowHeights = heights(paper.body, mm(kLeastRowMm) * m_scale);
    breakPages();
}

double PaperLayout::width(int column) const
{
    return mm(m_paper.widths[static_cast<std::size_t>(column)]) * m_widthScale;
}

void PaperLayout::chooseColumns()
{
    const double room = m_frame.area.width();
    const double fitting = room / mm(sum(m_paper.widths));
    m_scale = std::min(1.0, fitting);
    m_widthScale = std::min(1 / m_frame.squeeze, fitting);
    const int count = static_cast<int>(m_paper.widths.size());
    if (m_scale * kTablePoints >= kLeastPoints) {
        ColumnSet all(static_cast<std::size_t>(count));
        std::iota(all.begin(), all.end(), 0);
        m_sets = {std::move(all)};
        return;
    }
    m_scale = m_widthScale = kLeastPoints / kTablePoints;
    ColumnSet lead(static_cast<std::size_t>(m_paper.leadColumns));
    std::iota(lead.begin(), lead.end(), 0);
    const auto widthOf = [this](double sum, int column) { return sum + width(column); };
    const double leadWidth = std::accumulate(lead.begin(), lead.end(), 0.0, widthOf);
    double used = room; // so that the first column begins a set
    for (int column = m_paper.leadColumns; column < count; ++column) {
        if (used + width(column) > room) {
            m_sets.push_back(lead);
            used = leadWidth;
        }
        m_sets.back().push_back(column);
        used += width(column);
    }
}

QFont PaperLayout::textFont(double points, bool bold) const
{
    QFont font(u"Liberation Serif"_s);
    font.setStyleHint(QFont::Serif);
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

QFont PaperLayout::tableFont(const Cell& cell) const
{
    QFont font = textFont(kTablePoints * m_scale, cell.bold || cell.ink == Ink::Unexcused);
    font.setItalic(cell.ink == Ink::Excused);
    return font;
}

double PaperLayout::lineHeight(double points) const
{
    return QFontMetricsF(textFont(points), m_frame.device).lineSpacing();
}

double PaperLayout::cellHeight(const PlacedCell& place) const
{
    const Cell& cell = *place.cell;
    double across = 0;
    for (int column = place.column; column < place.column + cell.columns; ++column)
        across += width(column);
    const QFontMetricsF metrics(tableFont(cell), m_frame.device);
    const QString shown = shownText(cell);
    if (cell.rotated) {
        const QRectF room(0, 0, kAnyLength, kAnyLength);
        const double length = metrics.boundingRect(room, 0, shown).width() + 4 * padding();
        return std::min(length, mm(kMostRotatedMm) * m_scale);
    }
    const QRectF room(0, 0, across - 2 * padding(), kAnyLength);
    return metrics.boundingRect(room, Qt::TextWordWrap, shown).height() + 2 * padding();
}

std::vector<double> PaperLayout::heights(const std::vector<Row>& rows, double least) const
{
    std::vector<double> result(rows.size(), least);
    const auto cells = placed(rows);
    for (const PlacedCell& place : cells)
        if (place.cell->rows == 1) {
            double& height = result[static_cast<std::size_t>(place.row)];
            height = std::max(height, cellHeight(place));
        }
    for (const PlacedCell& place : cells) { // a tall one makes its last row higher
        const auto first = result.begin() + place.row;
        const auto last = first + place.cell->rows - 1;
        const double lacks = cellHeight(place) - std::accumulate(first, last + 1, 0.0);
        if (lacks > 0)
            *last += lacks;
    }
    return result;
}

double PaperLayout::headHeight() const
{
    return sum(m_headHeights);
}

double PaperLayout::topHeight() const
{
    const auto frameLines = std::max(m_paper.institution.size(), m_paper.approval.size());
    double height = static_cast<double>(frameLines) * lineHeight(10);
    height += titleHeight(m_paper.title, kTitlePoints, true) + mm(1);
    if (!m_paper.subtitle.isEmpty())
        height += titleHeight(m_paper.subtitle, kTextPoints, false);
    return height + mm(2);
}

double PaperLayout::titleHeight(const QString& text, double points, bool bold) const
{
    const QFontMetricsF metrics(textFont(points, bold), m_frame.device);
    const QRectF room(0, 0, m_frame.area.width(), kAnyLength);
    return std::max(lineHeight(points),
                    metrics.boundingRect(room, Qt::TextWordWrap, text).height());
}

double PaperLayout::notesHeight() const
{
    double height = mm(1.5);
    const QFontMetricsF metrics(textFont(kTablePoints), m_frame.device);
    const QRectF room(0, 0, m_frame.area.width(), kAnyLength);
    for (const QString& note : m_paper.notes)
        height += metrics.boundingRect(room, Qt::TextWordWrap, note).height();
    for (std::size_t row = 0; row < (m_paper.signatures.size() + 1) / 2; ++row)
        height += signatureHeight(row);
    return height;
}

double PaperLayout::signatureWidth(std::size_t signature) const
{
    const bool isAlone = signature % 2 == 0 && signature + 1 == m_paper.signatures.size();
    return isAlone ? m_frame.area.width() : m_frame.area.width() / 2 - mm(kSignatureGapMm);
}

double PaperLayout::signatureHeight(std::size_t row) const
{
    const QFontMetricsF metrics(textFont(kTextPoints), m_frame.device);
    double height = lineHeight(kTextPoints);
    for (std::size_t i = 2 * row; i < std::min(2 * row + 2, m_paper.signatures.size()); ++i) {
        const QRectF room(0, 0, signatureWidth(i), kAnyLength);
        const QString text = signatureText(m_paper.signatures[i]);
        height = std::max(height, metrics.boundingRect(room, Qt::TextWordWrap, text).height());
    }
    return height + mm(4);
}

double PaperLayout::squeezeToOnePage() const
{
    constexpr double kLeastSqueeze = 1 / 1.2;
    if (m_paper.half || m_sets.size() > 1 || m_pages.size() != 2)
        return 1;
    const PageShare whole{0, true, 0, static_cast<int>(m_paper.body.size()), true};
    const double squeeze = (m_frame.area.height() - mm(kFooterMm)) / height(whole);
    return squeeze < kLeastSqueeze ? 1 : squeeze;
}

double PaperLayout::height(const PageShare& share) const
{
    double height = (share.top ? topHeight() : 0) + headHeight();
    for (int row = share.firstRow; row < share.firstRow + share.rowCount; ++row)
        height += rowHeight(static_cast<std::size_t>(row));
    return height + (share.notes ? notesHeight() : 0);
}

void PaperLayout::breakPages()
{
    for (std::size_t set = 0; set < m_sets.size(); ++set)
        addPages(set);
}

void PaperLayout::addPages(std::size_t columnSet)
{
    const double room = m_frame.area.height() - mm(kFooterMm);
    const int rows = static_cast<int>(m_paper.body.size());
    PageShare share;
    share.columnSet = columnSet;
    share.top = true;
    for (int row = 0; row < rows; ++row) {
        ++share.rowCount;
        if (share.rowCount > 1 && height(share) > room) {
            --share.rowCount;
            m_pages.push_back(share);
            share = {columnSet, false, row, 1, false};
        }
    }
    share.notes = columnSet + 1 == m_sets.size(); // they stand once, under the last columns
    if (share.notes && height(share) > room && share.rowCount > 1) {
        // The last row goes over with them, so that signatures never stand alone.
        share.notes = false;
        --share.rowCount;
        m_pages.push_back(share);
        share = {columnSet, false, rows - 1, 1, true};
    }
    m_pages.push_back(share);
}

} // namespace papers
