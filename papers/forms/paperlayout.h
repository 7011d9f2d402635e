#pragma once

#include "papers/paper.h"

#include <QFont>
#include <QFontMetricsF>
#include <QRectF>

#include <vector>

class QPaintDevice;

namespace papers {

// The sizes of the page in device units.
struct PageFrame
{
    QPaintDevice* device = nullptr; // for the sizes of letters
    QRectF area;                    // inside the margins
    double perMm = 1;               // device units
    // What is painted is made smaller by this; the area is larger by as much, and tables widen.
    double squeeze = 1;

    PageFrame squeezed(double by) const;
};

// A run of columns that fits the width of a page, the lead columns first.
using ColumnSet = std::vector<int>;

// One page's share of a paper.
struct PageShare
{
    std::size_t columnSet = 0;
    bool top = false; // institution, title
    int firstRow = 0; // of the body
    int rowCount = 0;
    bool notes = false; // and signatures
};

// How a paper lies on pages: fonts, widths, heights and where pages end. A table that is too
// wide is set smaller, down to kLeastPoints; beyond that its columns are spread over pages.
class PaperLayout
{
public:
    static constexpr double kTablePoints = 9, kTextPoints = 10, kTitlePoints = 12;
    static constexpr double kLeastPoints = 6.5;
    static constexpr double kFooterMm = 5, kSignatureGapMm = 4;

    PaperLayout(const Paper& paper, const PageFrame& frame);

    const Paper& paper() const { return m_paper; }
    const std::vector<PageShare>& pages() const { return m_pages; }
    const ColumnSet& columns(const PageShare& share) const { return m_sets[share.columnSet]; }
    double width(int column) const;
    double headHeight(std::size_t row) const { return m_headHeights[row]; }
    double rowHeight(std::size_t row) const { return m_rowHeights[row]; }
    double headHeight() const;
    double topHeight() const;
    // Of the title or subtitle, which may wrap.
    double titleHeight(const QString& text, double points, bool bold) const;
    double notesHeight() const;
    // Two signatures stand side by side; a last one that is left alone has the whole width.
    double signatureWidth(std::size_t signature) const;
    double signatureHeight(std::size_t row) const;
    // Of the whole share, without the footer.
    double height(const PageShare& share) const;
    // What the frame must be squeezed by for one page, when two are but a little too many; else 1.
    double squeezeToOnePage() const;

    QFont tableFont(const Cell& cell) const;
    QFont textFont(double points, bool bold = false) const;
    double lineHeight(double points) const;
    double mm(double millimetres) const { return millimetres * m_frame.perMm; }
    double padding() const { return mm(0.7) * m_scale; }
    const PageFrame& frame() const { return m_frame; }

private:
    void chooseColumns();
    std::vector<double> heights(const std::vector<Row>& rows, double least) const;
    double cellHeight(const PlacedCell& place) const;
    void breakPages();
    void addPages(std::size_t columnSet);

    const Paper& m_paper;
    PageFrame m_frame;
    double m_scale = 1;      // of the table's letters
    double m_widthScale = 1; // of its columns
    std::vector<ColumnSet> m_sets;
    std::vector<double> m_headHeights, m_rowHeights;
    std::vector<PageShare> m_pages;
};

} // namespace papers
