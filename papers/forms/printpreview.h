#pragma once

#include <QString>

#include <functional>

class QPagedPaintDevice;
class QPageLayout;
class QPrinter;
class QWidget;

namespace papers {

// Paints every page, beginning on the device's present one; false when the device refuses.
using PaintPages = std::function<bool(QPagedPaintDevice& device)>;

// Shows the preview of a printer that is set up, from which the user changes the page, prints or
// saves a PDF file. The printer's document name is the title.
void showPreview(QPrinter& printer, const PaintPages& paint, QWidget* parent);

// The file is there whole or not at all. Throws jet::Error.
void writePdf(const QString& path, const QString& title, const QPageLayout& page,
              const PaintPages& paint);

} // namespace papers
