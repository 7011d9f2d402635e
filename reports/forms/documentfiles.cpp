#include "reports/forms/documentfiles.h"

#include "data/convert.h"
#include "jet/error.h"
#include "papers/forms/paperprinting.h"
#include "papers/workbook.h"
#include "reports/report.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/workprogress.h"
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
    return QFileInfo(papers::fileName(document)).completeBaseName();
}

QString newFolder(const QString& parent, const QString& name)
{
    QString path = freePath(parent, name, {});
    if (!QDir().mkpath(path))
        throw jet::Error(jet::Fault::Io, "папку нельзя создать: " + data::toUtf8(path));
    return path;
}

} // namespace

QString freePath(const QString& folder, const QString& name, const QString& suffix)
{
    const QString ending = suffix.isEmpty() ? QString() : u'.' + suffix;
    QString path = QDir(folder).filePath(name + ending);
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = QDir(folder).filePath(u"%1 (%2)%3"_s.arg(name, QString::number(number), ending));
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

bool DocumentFiles::writeEach(FileKind kind, const papers::Document& whole,
                              const NotSavedText& notSaved, QWidget* parent)
{
    const std::vector<papers::Document> documents = onePerPerson(whole);
    QString folder, path;
    std::size_t written = 0;
    const bool ran = shell::runCommand(m_parts.prompt, notSaved(true), [&] {
        folder = newFolder(m_parts.documentsFolder(), baseName(whole));
        shell::WorkProgress progress(u"filesProgress"_s, u"Документы сохраняются..."_s, parent);
        for (const papers::Document& document : documents) {
            if (!progress(static_cast<int>(written * 100 / documents.size())))
                return;
            path = QDir(folder).filePath(baseName(document)
                                         + (kind == FileKind::Pdf ? u".pdf"_s : u".xlsx"_s));
            kind == FileKind::Pdf ? papers::writePdf(document, path, m_parts.settings)
                                  : papers::writeWorkbook(document, path);
            ++written;
        }
    });
    if (written > 0) {
        const QString text = u"Сохранено файлов: %1 из %2, в папке: %3"_s.arg(
            QString::number(written), QString::number(documents.size()),
            QDir::toNativeSeparators(folder));
        m_parts.status.show(text);
        if (!m_parts.chooser.reveal(path))
            m_parts.prompt.information(text);
    }
    return ran && written == documents.size();
}

void DocumentFiles::print(const papers::Document& document, QWidget* parent)
{
    papers::showPreview(document, m_parts.settings, parent);
}

} // namespace reports
