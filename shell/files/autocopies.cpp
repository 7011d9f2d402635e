#include "shell/files/autocopies.h"

#include "shell/prompt.h"
#include "shell/statusline.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

AutoCopies::AutoCopies(Archive archive, Prompt& prompt, StatusLine& status)
    : m_archive(std::move(archive))
    , m_prompt(prompt)
    , m_status(status)
{
    m_pool.setMaxThreadCount(1);
    compressLeftovers();
}

AutoCopies::~AutoCopies()
{
    finish();
}

void AutoCopies::beforeChange(const QString& journal, const QString& file)
{
    const QDate today = m_archive.now().date();
    if (m_lastDay.value(journal) == today)
        return;
    m_lastDay[journal] = today;
    const QList<ArchivedCopy> copies = m_archive.copiesOfPlace(journal);
    const auto ofToday = [&](const ArchivedCopy& copy) { return copy.name.made.date() == today; };
    if (std::ranges::any_of(copies, ofToday))
        return;
    try {
        copy(journal, file, u"перед изменениями"_s);
    } catch (const std::exception& error) {
        m_status.show(u"Копия в «Архив» сегодня не создана. Ошибка: %1"_s.arg(
            QString::fromUtf8(error.what())));
    }
}

bool AutoCopies::beforeAction(const QString& journal, const QString& file, const QString& action)
{
    try {
        copy(journal, file, u"перед "_s + action);
        m_lastDay[journal] = m_archive.now().date();
        return true;
    } catch (const std::exception& error) {
        return m_prompt.question(
            u"Копия в «Архив» перед %1 не создана. Ошибка: %2\n\nПродолжить без копии?"_s.arg(
                action, QString::fromUtf8(error.what())),
            Answer::No);
    }
}

void AutoCopies::copy(const QString& journal, const QString& file, const QString& reason)
{
    compressLater(m_archive.addPlain(journal, file, reason), journal);
}

// What fails here leaves the plain copy, which is as good and is tried again at the next start.
void AutoCopies::compressLater(const ArchivedCopy& plain, const QString& journal)
{
    m_pool.start([plain, journal, archive = m_archive] {
        try {
            Archive::compress(plain);
        } catch (const std::exception&) {
        }
        try {
            archive.prune(journal);
        } catch (const std::exception&) { // a copy too many does no harm
        }
    });
}

void AutoCopies::compressLeftovers()
{
    for (const ArchivedCopy& copy : m_archive.copies()) {
        if (copy.name.compressed)
            continue;
        m_pool.start([copy] {
            try {
                Archive::compress(copy);
            } catch (const std::exception&) {
            }
        });
    }
}

} // namespace shell
