#include "shell/forms/copycommands.h"

#include "data/convert.h"
#include "data/journal.h"
#include "data/messages.h"
#include "jet/error.h"
#include "jet/storage/file.h"
#include "shell/files/copyfile.h"
#include "shell/files/copypreview.h"
#include "shell/files/drives.h"
#include "shell/files/filetexts.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/filecommands.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kNotSaved = u"Сохранение базы данных в другом файле не выполнено."_s;
const QString kNotCopied = u"Копирование базы данных на съемный диск не было выполнено."_s;
const QString kNotBroughtBack =
    u"Восстановление базы данных со съемного диска не было выполнено."_s;
const QString kNotArchived = u"Архивная копия базы данных не была создана."_s;
const QString kNotRestored = u"Восстановление базы данных из архива не было выполнено."_s;
const QString kBeforeRestoring = u"перед восстановлением"_s;

// Throws Error (Locked) when a program has the file open that would be replaced.
void requireFree(const QString& path)
{
    if (QFileInfo::exists(path)) {
        jet::FileSystem::system().open(data::toPath(path), jet::FileMode::ReadWrite);
    }
}

QString fileText(const QString& path)
{
    const QFileInfo file(path);
    return u"%1 (%2, %3)"_s.arg(quotedPath(path),
                                file.lastModified().toString(u"dd.MM.yyyy HH:mm"_s),
                                sizeText(file.size()));
}

// Removes what is left under the name when the command ends.
class Leftover final
{
public:
    explicit Leftover(QString path)
        : m_path(std::move(path))
    {
        QFile::remove(m_path);
    }
    ~Leftover() { QFile::remove(m_path); }
    Leftover(const Leftover&) = delete;
    Leftover& operator=(const Leftover&) = delete;

private:
    QString m_path;
};

// Keeps the refusal, which is told with the command's own message.
class FirstRefusal final : public data::Messages
{
public:
    void critical(const QString& said) override
    {
        if (text.isEmpty()) {
            text = said;
        }
    }
    void information(const QString&) override {}

    QString text;
};

} // namespace

CopyCommands::CopyCommands(const CopyParts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
{}

bool CopyCommands::inBackground(const QString& title, const Fetch& fetch, const QString& part)
{
    m_parts.status.show(title);
    bool whole = false;
    m_parts.work.run(title, [&](const Progress& progress) { whole = fetch(part, progress); });
    m_parts.status.show({});
    return whole;
}

bool CopyCommands::saveAs()
{
    return finishCommand(m_parts.prompt, kNotSaved, [this] {
        data::Journal& journal = m_parts.session.journal();
        const QFileInfo present(journal.path());
        const QString path =
            m_parts.chooser.saveJournal(present.absolutePath(), present.fileName());
        if (path.isEmpty()) {
            return false;
        }
        if (sameFile(path, journal.path())) {
            m_parts.prompt.exclamation(
                u"Это имя открытого файла. Все изменения в нем уже сохранены."_s);
            return false;
        }
        requireFree(path);
        const QString source = journal.filePath();
        const auto copy = [source](const QString& target, const Progress& progress) {
            return copyVerified(source, target, progress);
        };
        return inBackground(u"Сохранение базы данных..."_s, copy, path)
               && m_parts.files.openAs(m_parts.session.user(), path);
    });
}

bool CopyCommands::copyToDrive()
{
    return finishCommand(m_parts.prompt, kNotCopied, [this] {
        data::Journal& journal = m_parts.session.journal();
        const QString source = journal.filePath();
        const QFileInfo present(source);
        const QString path =
            m_parts.chooser.fileOnDrive({DriveAim::CopyTo, m_parts.drives,
                                         QFileInfo(journal.path()).fileName(), present.size()});
        if (path.isEmpty()) {
            return false;
        }
        if (QFileInfo::exists(path)
            && !m_parts.prompt.question(
                u"На диске уже есть файл %1. Заменить его?"_s.arg(fileText(path)), Answer::No)) {
            return false;
        }
        requireFree(path);
        const auto copy = [source](const QString& target, const Progress& progress) {
            return copyVerified(source, target, progress);
        };
        if (!inBackground(u"Копирование на съемный диск..."_s, copy, path)) {
            return false;
        }
        m_parts.prompt.information(
            u"База данных скопирована на съемный диск: %1. Копия прочитана и совпала с файлом."_s
                .arg(fileText(path)));
        return true;
    });
}

bool CopyCommands::archive()
{
    return finishCommand(m_parts.prompt, kNotArchived, [this] {
        data::Journal& journal = m_parts.session.journal();
        std::optional<ArchivedCopy> made;
        const auto pack = [&, name = journal.path()](const QString& file,
                                                     const Progress& progress) {
            made = m_parts.archive.add(name, file, ArchiveName::kManual, progress);
            return made.has_value();
        };
        if (!inBackground(u"Создание архивной копии..."_s, pack, journal.filePath())) {
            return false;
        }
        m_parts.prompt.information(
            u"Архивная копия создана и проверена: %1."_s.arg(fileText(made->path)));
        return true;
    });
}

bool CopyCommands::restoreFromDrive()
{
    return finishCommand(m_parts.prompt, kNotBroughtBack, [this] {
        Session& session = m_parts.session;
        const QString name =
            session.isOpen() ? QFileInfo(session.journal().path()).fileName() : QString();
        const QString source =
            m_parts.chooser.fileOnDrive({DriveAim::RestoreFrom, m_parts.drives, name, 0});
        if (source.isEmpty()) {
            return false;
        }
        return restore(fileText(source), QFileInfo(source).fileName(),
                       [source](const QString& part, const Progress& progress) {
                           return copyVerified(source, part, progress);
                       });
    });
}

bool CopyCommands::restoreFromArchive()
{
    return finishCommand(m_parts.prompt, kNotRestored, [this] {
        Session& session = m_parts.session;
        const QString journal = session.isOpen() ? session.journal().path() : QString();
        const auto copy = m_parts.chooser.archivedCopy(m_parts.archive, journal, m_parts.prompt);
        if (!copy) {
            return false;
        }
        const QString source =
            u"Копия от %1"_s.arg(copy->name.made.toString(u"dd.MM.yyyy HH:mm:ss"_s));
        return restore(source, copy->name.journal + u".mdb"_s,
                       [copy](const QString& part, const Progress&) {
                           Archive::extract(*copy, part);
                           return true;
                       });
    });
}

bool CopyCommands::restore(const QString& source, const QString& name, const Fetch& fetch)
{
    Session& session = m_parts.session;
    const QString target = session.isOpen()
                               ? session.journal().path()
                               : m_parts.chooser.saveJournal(m_parts.files.startFolder(), name);
    if (target.isEmpty()) {
        return false;
    }
    if (!session.isOpen()) {
        requireFree(target);
    }
    const QString part = target + u".restored"_s;
    const Leftover leftover(part);
    return inBackground(u"Чтение копии..."_s, fetch, part) && agreedToReplace(source, target, part)
           && replace(target, part);
}

bool CopyCommands::agreedToReplace(const QString& source, const QString& target,
                                   const QString& part)
{
    const CopyPreview holds = previewOf(part);
    requireJournal(part);
    if (!QFileInfo::exists(target)) {
        return true;
    }
    return m_parts.prompt.question(
        u"%1: студентов %2, пропусков %3, оценок %4.\n\nЗаменить ею файл %5? Нынешний файл "
        "сначала будет сохранен в папке «Архив»."_s.arg(
            source, QString::number(holds.students), QString::number(holds.absences),
            QString::number(holds.grades), fileText(target)),
        Answer::No);
}

// Opened and brought up to date before it takes the place of a file that can be opened.
void CopyCommands::requireJournal(const QString& part) const
{
    FirstRefusal refusal;
    if (!data::Journal::openAndCheck(part, false, refusal)) {
        throw jet::Error(jet::Fault::Damaged, data::toUtf8(refusal.text));
    }
}

bool CopyCommands::replace(const QString& target, const QString& part)
{
    if (QFileInfo::exists(target)) {
        const auto keep = [&](const QString& file, const Progress& progress) {
            return m_parts.archive.add(target, file, kBeforeRestoring, progress).has_value();
        };
        if (!inBackground(u"Сохранение нынешнего файла в «Архив»..."_s, keep, target)) {
            return false;
        }
    }
    const bool wasOpen = m_parts.session.isOpen();
    if (wasOpen && !m_parts.files.close()) {
        return false;
    }
    try {
        moveInPlace(part, target);
    } catch (...) {
        if (wasOpen) {
            m_parts.files.open(target);
        }
        throw;
    }
    return m_parts.files.open(target);
}

} // namespace shell
