#include "papers/forms/paperprinting.h"

#include "data/convert.h"
#include "jet/error.h"
#include "papers/forms/paperpainter.h"
#include "sheets/writetable.h"
#include "shell/forms/qtprompt.h"
#include "shell/forms/runcommand.h"
#include "shell/settings.h"

#include <QAction>
#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>
#include <QStringList>
#include <QToolBar>

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

void write(const Document& document, const QString& path, const QPageLayout& page)
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
        writer.setPageLayout(page);
        if (!PaperPainter(document.papers, QDate::currentDate()).paint(writer))
            refuse();
    }
    if (!file.commit())
        refuse();
}

void savePdf(const Document& document, const QPageLayout& page, QWidget* parent)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString name = sheets::fileName(document.name);
    name.replace(u".xlsx"_s, u".pdf"_s);
    QString path = QFileDialog::getSaveFileName(
        parent, u"Сохранить как PDF"_s, QDir(folder).filePath(name), u"Документы PDF (*.pdf)"_s);
    if (path.isEmpty())
        return;
    if (!path.endsWith(u".pdf"_s, Qt::CaseInsensitive))
        path += u".pdf"_s;
    shell::QtPrompt prompt;
    shell::runCommand(prompt, u"Файл PDF не записан."_s, [&] { write(document, path, page); });
}

// The preview has no such key of its own: without a printer it would be the only way on.
void addPdfKey(QPrintPreviewDialog& preview, const Document& document, const QPrinter& printer)
{
    auto* bar = preview.findChild<QToolBar*>();
    if (!bar)
        return;
    QAction* key = bar->addAction(u"PDF..."_s);
    key->setObjectName(u"keyPdf"_s);
    key->setToolTip(u"Сохранить как PDF (Ctrl+S)"_s);
    key->setShortcut(QKeySequence::Save);
    QObject::connect(key, &QAction::triggered, &preview,
                     [&] { savePdf(document, printer.pageLayout(), &preview); });
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
    addPdfKey(preview, document, printer);
    constexpr QSize kRoomy(1000, 800);
    preview.resize(kRoomy.boundedTo(preview.screen()->availableSize() * 0.9));
    preview.exec();
    settings.remember(settingOf(document), stored(printer.pageLayout()));
}

void writePdf(const Document& document, const QString& path, const shell::Settings& settings)
{
    write(document, path, pageLayoutOf(document, settings));
}

} // namespace papers
