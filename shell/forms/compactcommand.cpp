#include "shell/forms/compactcommand.h"

#include "data/convert.h"
#include "jet/compact.h"
#include "jet/error.h"
#include "shell/files/copyfile.h"
#include "shell/files/filetexts.h"
#include "shell/files/longwork.h"
#include "shell/forms/filecommands.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QFile>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kNotCompacted = u"Сжатие и восстановление базы данных не было выполнено."_s;

QString sizesText(const jet::CompactReport& report)
{
    const auto before = static_cast<qint64>(report.bytesBefore);
    const auto after = static_cast<qint64>(report.bytesAfter);
    return u"Размер был %1, стал %2, освобождено %3."_s.arg(
        sizeText(before), sizeText(after), sizeText(before > after ? before - after : 0));
}

QString lossText(const jet::Loss& loss)
{
    QString text;
    if (!loss.table.empty()) {
        text += data::fromUtf8(loss.table) + u": "_s;
    }
    if (loss.page != 0) {
        text += u"страница %1: "_s.arg(loss.page);
    }
    if (loss.row >= 0) {
        text += u"строка %1: "_s.arg(loss.row);
    }
    return text + data::fromUtf8(loss.text);
}

QString lossesText(const jet::CompactReport& report)
{
    constexpr std::size_t kShown = 15; // more would not fit on a small screen
    if (report.losses.empty()) {
        return u"Потерь нет."_s;
    }
    QStringList lines{u"Потери и исправления (%1):"_s.arg(report.losses.size())};
    for (std::size_t i = 0; i < report.losses.size() && i < kShown; ++i) {
        lines << lossText(report.losses[i]);
    }
    if (report.losses.size() > kShown) {
        lines << u"…"_s;
    }
    return lines.join(u'\n');
}

} // namespace

CompactCommand::CompactCommand(Session& session, Prompt& prompt, StatusLine& status,
                               FileCommands& files, LongWork& work, const Archive& archive)
    : m_session(session)
    , m_prompt(prompt)
    , m_status(status)
    , m_files(files)
    , m_work(work)
    , m_archive(archive)
{}

bool CompactCommand::run()
{
    const QString path = m_session.journal().path();
    const SignedIn user = m_session.user();
    const bool done =
        finishCommand(m_prompt, kNotCompacted, [&] { return m_files.close() && compact(path); });
    if (!m_session.isOpen()) {
        m_files.openAs(user, path);
    }
    return done;
}

bool CompactCommand::compact(const QString& path)
{
    const QString title = u"Сжатие базы данных..."_s;
    m_status.show(title);
    jet::CompactReport report;
    try {
        m_work.run(title, [&](const Progress& progress) {
            jet::CompactOptions options;
            options.progress = progress;
            report = jet::compactInPlace(data::toPath(path), options);
        });
    } catch (const jet::Error& error) {
        if (error.fault() != jet::Fault::Damaged) {
            throw;
        }
        return repair(path, data::fromUtf8(error.what()));
    }
    if (report.cancelled) {
        return false;
    }
    m_prompt.information(u"База данных сжата. "_s + sizesText(report));
    return true;
}

// Not in place: the losses are shown first, and the user may keep the file as it is.
bool CompactCommand::repair(const QString& path, const QString& reason)
{
    if (!m_prompt.question(u"Файл базы данных поврежден: %1.\n\nСобрать из него новый файл из "
                           "всего, что можно прочитать? Перед заменой нынешний файл будет "
                           "сохранен в папке «Архив»."_s.arg(reason),
                           Answer::No)) {
        return false;
    }
    const QString target = path + u".repaired"_s;
    QFile::remove(target);
    const auto report = repaired(path, target);
    if (!report) {
        return false;
    }
    const bool agreed = m_prompt.question(
        u"Прочитано таблиц: %1, записей: %2.\n%3\n\nЗаменить файл исправленным?"_s.arg(
            QString::number(report->tables), QString::number(report->rows), lossesText(*report)),
        Answer::No);
    if (!agreed) {
        QFile::remove(target);
        return false;
    }
    try {
        m_archive.add(path, path, u"перед исправлением"_s);
        moveInPlace(target, path);
    } catch (...) {
        QFile::remove(target);
        throw;
    }
    m_prompt.information(u"База данных исправлена и сжата. "_s + sizesText(*report));
    return true;
}

std::optional<jet::CompactReport> CompactCommand::repaired(const QString& path,
                                                           const QString& target)
{
    jet::CompactReport report;
    m_work.run(u"Исправление базы данных..."_s, [&](const Progress& progress) {
        jet::CompactOptions options;
        options.repair = true;
        options.progress = progress;
        report = jet::compactDatabase(data::toPath(path), data::toPath(target), options);
    });
    if (report.cancelled) {
        return std::nullopt;
    }
    return report;
}

} // namespace shell
