#include "papers/forms/paperprinting.h"

#include "data/convert.h"
#include "jet/error.h"
#include "papers/forms/paperpainter.h"
#include "shell/settings.h"

#include <QDate>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace papers {
namespace {

constexpr int kDotsPerInch = 600;

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
    printer.setResolution(kDotsPerInch);
    printer.setDocName(document.name);
    printer.setPageLayout(pageLayoutOf(document, settings));
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
    QPrintPreviewDialog preview(&printer, parent, Qt::Window | Qt::WindowMaximizeButtonHint);
    preview.setWindowTitle(u"Печать: "_s + document.name);
    PaperPainter painter(document.papers, QDate::currentDate());
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&painter](QPrinter* device) { painter.paint(*device); });
    constexpr QSize kRoomy(1000, 800);
    preview.resize(kRoomy);
    preview.exec();
    settings.remember(settingOf(document), stored(printer.pageLayout()));
}

void writePdf(const Document& document, const QString& path, const shell::Settings& settings)
{
    QSaveFile file(path);
    const auto refuse = [&] {
        throw jet::Error(jet::Fault::Io, data::toUtf8(u"файл %1 нельзя записать: %2"_s.arg(
                                             path, file.errorString())));
    };
    if (!file.open(QIODevice::WriteOnly))
        refuse();
    {
        QPdfWriter writer(&file);
        writer.setResolution(kDotsPerInch);
        writer.setTitle(document.name);
        writer.setCreator(u"Журнал"_s);
        writer.setPageLayout(pageLayoutOf(document, settings));
        if (!PaperPainter(document.papers, QDate::currentDate()).paint(writer))
            refuse();
    }
    if (!file.commit())
        refuse();
}

} // namespace papers
