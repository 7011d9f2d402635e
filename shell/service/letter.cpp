#include "shell/service/letter.h"

#include "data/convert.h"
#include "jet/error.h"
#include "shell/files/filetexts.h"
#include "shell/files/longwork.h"
#include "shell/files/zipfile.h"
#include "shell/prompt.h"
#include "shell/service/privatefolder.h"
#include "shell/service/programdetails.h"
#include "shell/service/programstarter.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kSubject = u"Журнал: вопрос в техническую поддержку"_s;
const QString kBodyStart = u"Опишите, что произошло и что вы делали перед этим:\n\n\n\n"_s;

QString body()
{
    return kBodyStart + u"---\n"_s + programDetails() + u'\n';
}

// QUrlQuery would leave "+" as it is, which mail programs read as a space.
QString encoded(const QString& text)
{
    QString lines = text;
    lines.replace(u'\n', u"\r\n"_s);
    return QString::fromLatin1(QUrl::toPercentEncoding(lines));
}

} // namespace

QUrl supportLetter()
{
    return QUrl(u"mailto:?subject=%1&body=%2"_s.arg(encoded(kSubject), encoded(body())),
                QUrl::StrictMode);
}

LetterCopy copyForLetter(const QString& journal, const QString& file, const QString& folder,
                         LongWork& work)
{
    if (!makePrivateFolder(folder)) {
        throw jet::Error(jet::Fault::Io,
                         data::toUtf8(u"папку %1 нельзя создать"_s.arg(quotedPath(folder))));
    }
    QTemporaryDir own(QDir(folder).filePath(u"letter-XXXXXX"_s)); // for the user alone
    if (!own.isValid()) {
        throw jet::Error(jet::Fault::Io,
                         data::toUtf8(u"в папку %1 нельзя писать"_s.arg(quotedPath(folder))));
    }
    const QFileInfo named(journal);
    const QString zip = own.filePath(named.completeBaseName() + u".zip"_s);
    bool whole = false;
    work.run(u"Копирование базы данных для письма..."_s, [&](const Progress& progress) {
        whole = writeZip(file, named.fileName(), zip, progress);
    });
    own.setAutoRemove(!whole);
    return {whole ? zip : QString(), journal};
}

void removeOldLetterCopies(const QString& folder, const QDateTime& now)
{
    const QDir dir(folder);
    const auto found = dir.entryInfoList({u"letter-*"_s}, QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo& copy : found) {
        if (copy.lastModified() < now.addDays(-1)) {
            QDir(copy.filePath()).removeRecursively();
        }
    }
}

void writeLetter(const LetterCopy& copy, ProgramStarter& starter, Prompt& prompt,
                 const std::function<bool(const QString& path)>& showCopy)
{
    const auto byHand = [copy, &prompt, showCopy] {
        const bool shown = showCopy(copy.path);
        prompt.information(
            u"Письмо с вложением не удалось открыть в почтовой программе. Создайте письмо сами и "
            "вложите в него файл %1.%2"_s.arg(quotedPath(copy.path),
                                              shown ? u" Папка с ним открыта."_s : QString()));
    };
    const QString program = starter.find({u"xdg-email"_s});
    if (program.isEmpty()) {
        byHand();
        return;
    }
    starter.startWatched(program,
                         {u"--utf8"_s, u"--subject"_s,
                          u"База данных %1"_s.arg(QFileInfo(copy.journal).fileName()), u"--body"_s,
                          body(), u"--attach"_s, copy.path},
                         byHand);
}

} // namespace shell
