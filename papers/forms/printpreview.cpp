#include "papers/forms/printpreview.h"

#include "data/convert.h"
#include "jet/error.h"
#include "sheets/writetable.h"
#include "shell/forms/qtprompt.h"
#include "shell/forms/runcommand.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace papers {
namespace {

void savePdf(const QPrinter& printer, const PaintPages& paint, QWidget* parent)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString name = sheets::fileName(printer.docName());
    name.replace(u".xlsx"_s, u".pdf"_s);
    QString path = QFileDialog::getSaveFileName(
        parent, u"Сохранить как PDF"_s, QDir(folder).filePath(name), u"Документы PDF (*.pdf)"_s);
    if (path.isEmpty())
        return;
    if (!path.endsWith(u".pdf"_s, Qt::CaseInsensitive))
        path += u".pdf"_s;
    shell::QtPrompt prompt;
    shell::runCommand(prompt, u"Файл PDF не записан."_s,
                      [&] { writePdf(path, printer.docName(), printer.pageLayout(), paint); });
}

// The preview has no such key of its own: without a printer it would be the only way on.
void addPdfKey(QPrintPreviewDialog& preview, const QPrinter& printer, const PaintPages& paint)
{
    auto* bar = preview.findChild<QToolBar*>();
    if (!bar)
        return;
    QAction* key = bar->addAction(u"PDF..."_s);
    key->setObjectName(u"keyPdf"_s);
    key->setToolTip(u"Сохранить как PDF (Ctrl+S)"_s);
    key->setShortcut(QKeySequence::Save);
    QObject::connect(key, &QAction::triggered, &preview,
                     [&] { savePdf(printer, paint, &preview); });
}

} // namespace

void showPreview(QPrinter& printer, const PaintPages& paint, QWidget* parent)
{
    QPrintPreviewDialog preview(&printer, parent, Qt::Window | Qt::WindowMaximizeButtonHint);
    preview.setWindowTitle(u"Печать: "_s + printer.docName());
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&paint](QPrinter* device) { paint(*device); });
    addPdfKey(preview, printer, paint);
    constexpr QSize kRoomy(1000, 800);
    preview.resize(kRoomy.boundedTo(preview.screen()->availableSize() * 0.9));
    preview.exec();
}

void writePdf(const QString& path, const QString& title, const QPageLayout& page,
              const PaintPages& paint)
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
        constexpr int kDotsPerInch = 600;
        writer.setResolution(kDotsPerInch);
        writer.setTitle(title);
        writer.setCreator(u"Журнал"_s);
        writer.setPageLayout(page);
        if (!paint(writer))
            refuse();
    }
    if (!file.commit())
        refuse();
}

} // namespace papers
