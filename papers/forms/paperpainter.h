#pragma once

#include "papers/forms/paperlayout.h"

#include <QDate>

#include <vector>

class QPagedPaintDevice;
class QPainter;

namespace papers {

// Paints papers on the pages of a printer or a PDF file, whose page layout is set already.
class PaperPainter
{
public:
    // The papers must outlive the painter.
    PaperPainter(const std::vector<Paper>& papers, QDate printed);

    // Begins on the device's present page. False when the device refuses.
    bool paint(QPagedPaintDevice& device);

private:
    void paintShare(QPainter& painter, const PaperLayout& layout, const PageShare& share,
                    double top) const;
    double paintTop(QPainter& painter, const PaperLayout& layout, double y) const;
    double paintRows(QPainter& painter, const PaperLayout& layout, const PageShare& share,
                     bool head, double y) const;
    void paintCell(QPainter& painter, const PaperLayout& layout, const Cell& cell,
                   const QRectF& box) const;
    void paintNotes(QPainter& painter, const PaperLayout& layout, double y) const;
    void paintFooter(QPainter& painter, const PageFrame& frame, int page, int pages) const;

    const std::vector<Paper>& m_papers;
    QDate m_printed;
};

} // namespace papers
