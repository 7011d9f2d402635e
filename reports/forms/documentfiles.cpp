#include "reports/forms/documentfiles.h"

#include "papers/forms/paperprinting.h"
#include "papers/workbook.h"
#include "sheets/writetable.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/service/programstarter.h"
#include "shell/statusline.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <exception>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

// Without what file systems refuse.
QString baseName(const papers::Document& document)
{
    return QFileInfo(sheets::fileName(document.name)).completeBaseName();
}

} // namespace

QString freePath(const QString& folder, const QString& name, const QString& suffix)
{
    QString path = QDir(folder).filePath(name + u'.' + suffix);
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = QDir(folder).filePath(u"%1 (%2).%3"_s.arg(name, QString::number(number), suffix));
    return path;
}

DocumentFiles::DocumentFiles(DocumentParts parts)
    : m_parts(std::move(parts))
{}

// Gives the path written, "" when the user gave up.
QString DocumentFiles::write(const papers::Document& document, const NotSavedText& notSaved)
{
    QString folder, path;
    auto existing = sheets::Existing::Keep;
    for (;;) {
        try {
            if (path.isEmpty()) {
                folder = m_parts.documentsFolder();
                path = freePath(folder, baseName(document), u"xlsx"_s);
            }
            papers::writeWorkbook(document, path, existing);
            return path;
        } catch (const std::exception& error) {
            const QString reason =
                u"%1 Ошибка: %2"_s.arg(notSaved(!path.isEmpty()), QString::fromUtf8(error.what()));
            if (!m_parts.prompt.offer(reason, u"Сохранить в другом месте..."_s))
                return {};
        }
        path = m_parts.chooser.saveDocument(folder, baseName(document) + u".xlsx"_s);
        if (path.isEmpty())
            return {};
        existing = sheets::Existing::Replace; // the chooser has asked
    }
}

bool DocumentFiles::writeWorkbook(const papers::Document& document, const NotSavedText& notSaved)
{
    const QString path = write(document, notSaved);
    if (!path.isEmpty())
        open(path);
    return !path.isEmpty();
}

void DocumentFiles::open(const QString& path)
{
    const QString file = QDir::toNativeSeparators(path);
    m_parts.status.show(u"Документ сохранен в файле: %1"_s.arg(file));
    if (m_parts.starter.open(QUrl::fromLocalFile(path)))
        return;
    const QString text = u"Документ сохранен в файле: %1\n\nПрограмма, которая открывает такие "
                         "файлы, не найдена. Документ можно напечатать и без нее, кнопкой "
                         "\"Печать...\"."_s.arg(file);
    if (m_parts.prompt.offer(text, u"Открыть папку"_s) && !m_parts.chooser.reveal(path))
        m_parts.prompt.exclamation(u"Папку открыть не удалось: %1"_s.arg(
            QDir::toNativeSeparators(QFileInfo(path).absolutePath())));
}

bool DocumentFiles::writePdf(const papers::Document& document, const NotSavedText& notSaved)
{
    QString path;
    const bool ran = shell::runCommand(m_parts.prompt, notSaved(true), [&] {
        path =
            m_parts.chooser.saveDocument(m_parts.documentsFolder(), baseName(document) + u".pdf"_s);
        if (!path.isEmpty())
            papers::writePdf(document, path, m_parts.settings);
    });
    if (!ran || path.isEmpty())
        return false;
    m_parts.status.show(u"Документ сохранен в файле: %1"_s.arg(QDir::toNativeSeparators(path)));
    return true;
}

void DocumentFiles::print(const papers::Document& document, QWidget* parent)
{
    papers::showPreview(document, m_parts.settings, parent);
}

} // namespace reports
