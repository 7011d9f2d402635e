#include "papers/forms/paperprinting.h"

#include "papers/forms/paperpainter.h"
#include "papers/forms/printpreview.h"
#include "shell/settings.h"

#include <QDate>
#include <QPrinter>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace papers {
namespace {

QString settingOf(const Document& document)
{
    return u"print/"_s + document.kind;
}

// "page size;landscape;left;top;right;bottom", millimetres.
QByteArray stored(const QPageLayout& page)
{
    const QMarginsF margins = page.margins(QPageLayout::Millimeter);
    QStringList parts{QString::number(static_cast<int>(page.pageSize().id())),
                      QString::number(page.orientation() == QPageLayout::Landscape ? 1 : 0)};
    for (const double margin : {margins.left(), margins.top(), margins.right(), margins.bottom()})
        parts << QString::number(margin, 'f', 1);
    return parts.join(u';').toLatin1();
}

QPageLayout usual(const Document& document)
{
    return {QPageSize(QPageSize::A4),
            document.papers.front().landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
            QMarginsF(20, 10, 10, 10), QPageLayout::Millimeter};
}

// The name of the file may hold anything; the printer's queue shows it.
void setUp(QPrinter& printer, const Document& document, const shell::Settings& settings)
{
    constexpr int kDotsPerInch = 600;
    printer.setResolution(kDotsPerInch);
    printer.setDocName(document.name);
    printer.setPageLayout(pageLayoutOf(document, settings));
}

PaintPages painterOf(const Document& document)
{
    return [&papers = document.papers](QPagedPaintDevice& device) {
        return PaperPainter(papers, QDate::currentDate()).paint(device);
    };
}

} // namespace

QPageLayout pageLayoutOf(const Document& document, const shell::Settings& settings)
{
    const QPageLayout page = usual(document);
    const auto parts = QString::fromLatin1(settings.remembered(settingOf(document))).split(u';');
    constexpr qsizetype kParts = 6;
    const int size = parts.front().toInt();
    if (parts.size() != kParts || size < 0 || size > QPageSize::LastPageSize)
        return page;
    const auto margin = [&](qsizetype i) { return parts[i].toDouble(); };
    return {QPageSize(static_cast<QPageSize::PageSizeId>(size)),
            parts[1] == u"1" ? QPageLayout::Landscape : QPageLayout::Portrait,
            QMarginsF(margin(2), margin(3), margin(4), margin(5)), QPageLayout::Millimeter};
}

void showPreview(const Document& document, shell::Settings& settings, QWidget* parent)
{
    QPrinter printer(QPrinter::HighResolution);
    setUp(printer, document, settings);
    showPreview(printer, painterOf(document), parent);
    settings.remember(settingOf(document), stored(printer.pageLayout()));
}

void writePdf(const Document& document, const QString& path, const shell::Settings& settings)
{
    writePdf(path, document.name, pageLayoutOf(document, settings), painterOf(document));
}

} // namespace papers
