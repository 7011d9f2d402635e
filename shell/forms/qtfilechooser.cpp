#include "shell/forms/qtfilechooser.h"

#include "shell/forms/frmarchive.h"
#include "shell/forms/frmdrive.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#ifdef JURNAL_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#endif

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kFilter = u"Базы данных Access (*.mdb);;Все файлы (*)"_s;

} // namespace

QString QtFileChooser::openJournal(const QString& folder)
{
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), u"Открыть файл базы данных"_s,
                                        folder, kFilter);
}

QString QtFileChooser::openSource(const QString& title, const QString& filter, const QString& last)
{
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, last, filter);
}

// An existing file is refused later, by name: a journal is never overwritten by a new one.
QString QtFileChooser::newJournal(const QString& folder)
{
    QFileDialog dialog(QApplication::activeWindow(), u"Создать файл базы данных"_s, folder,
                       kFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"mdb"_s);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.selectFile(u"Журнал.mdb"_s);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

QString QtFileChooser::saveJournal(const QString& folder, const QString& name)
{
    QFileDialog dialog(QApplication::activeWindow(), u"Сохранить базу данных в файле"_s, folder,
                       kFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"mdb"_s);
    dialog.selectFile(name);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

QString QtFileChooser::saveTable(const QString& folder, const QString& name)
{
    const QString csv = u"Текст с разделителями (*.csv)"_s;
    QFileDialog dialog(QApplication::activeWindow(), u"Экспорт списка"_s, folder);
    dialog.setNameFilters({u"Книга Excel (*.xlsx)"_s, csv});
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"xlsx"_s);
    dialog.selectFile(name);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        const QString suffix = filter == csv ? u"csv"_s : u"xlsx"_s;
        dialog.setDefaultSuffix(suffix);
        const QStringList typed = dialog.selectedFiles();
        if (!typed.isEmpty() && !QFileInfo(typed.constFirst()).isDir()) {
            dialog.selectFile(QFileInfo(typed.constFirst()).completeBaseName() + u'.' + suffix);
        }
    });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

QString QtFileChooser::saveDocument(const QString& folder, const QString& name)
{
    const QString suffix = QFileInfo(name).suffix();
    const QString kind = suffix == u"xlsx"  ? u"Книга Excel"_s
                         : suffix == u"pdf" ? u"Документ PDF"_s
                                            : u"Рисунок"_s;
    QFileDialog dialog(QApplication::activeWindow(), u"Сохранение документа"_s, folder,
                       u"%1 (*.%2)"_s.arg(kind, suffix));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    dialog.selectFile(name);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

QString QtFileChooser::fileOnDrive(const DriveRequest& request)
{
    frmDrive dialog(request, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted ? dialog.path() : QString();
}

std::optional<ArchivedCopy> QtFileChooser::archivedCopy(const Archive& archive,
                                                        const QString& journal, Prompt& prompt)
{
    frmArchive dialog(archive, journal, prompt, *this, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted ? dialog.chosen() : std::nullopt;
}

bool QtFileChooser::reveal(const QString& path)
{
#ifdef Q_OS_WIN
    return QProcess::startDetached(u"explorer.exe"_s,
                                   {u"/select,"_s + QDir::toNativeSeparators(path)});
#else
#ifdef JURNAL_DBUS
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s,
                                               u"/org/freedesktop/FileManager1"_s,
                                               u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const auto bus = QDBusConnection::sessionBus();
    if (bus.isConnected()
        && bus.call(call, QDBus::Block, 3000).type() == QDBusMessage::ReplyMessage) {
        return true;
    }
#endif
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
#endif
}

} // namespace shell
