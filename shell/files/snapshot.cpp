#include "shell/files/snapshot.h"

#include "data/convert.h"
#include "data/messages.h"
#include "shell/files/copyfile.h"
#include "shell/files/filestamp.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <exception>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

// Says the original's name where the copy's would be said.
class OriginalNamed final : public data::Messages
{
public:
    OriginalNamed(data::Messages& messages, QString copy, QString original)
        : m_messages(messages)
        , m_copy(std::move(copy))
        , m_original(std::move(original))
    {}
    void critical(const QString& text) override { m_messages.critical(named(text)); }
    void information(const QString& text) override { m_messages.information(named(text)); }

private:
    QString named(QString text) const { return text.replace(m_copy, m_original); }

    data::Messages& m_messages;
    QString m_copy;
    QString m_original;
};

// A copy made while the other program writes would be neither the old state nor the new one:
// its rollback journal lies beside the file then, or the stamp has changed.
bool copyBetweenWrites(const QString& path, const QString& copy)
{
    constexpr int kTries = 20;
    constexpr unsigned kPauseMilliseconds = 50;
    for (int i = 0; i < kTries; ++i) {
        const auto before = FileStamp::of(path);
        if (!QFileInfo::exists(path + u"-journal"_s)) {
            copyQuickly(path, copy);
            if (before == FileStamp::of(path) && !QFileInfo::exists(path + u"-journal"_s))
                return true;
        }
        QThread::msleep(kPauseMilliseconds);
    }
    return false;
}

} // namespace

std::unique_ptr<data::Journal> openSnapshot(const QString& path, data::Messages& messages)
{
    const auto folder = std::make_shared<QTemporaryDir>();
    const QString copy = folder->filePath(QFileInfo(path).fileName());
    try {
        if (!copyBetweenWrites(path, copy)) {
            messages.critical(u"Файл базы данных %1 не открыт: другая программа сейчас записывает "
                              "его. Повторите позже."_s.arg(path));
            return nullptr;
        }
    } catch (const std::exception& error) {
        messages.critical(u"Файл базы данных %1 не открыт. Ошибка: %2."_s.arg(
            path, data::fromUtf8(error.what())));
        return nullptr;
    }
    OriginalNamed named(messages, copy, path);
    auto journal = data::Journal::openReadOnly(copy, named);
    if (journal)
        journal->standFor(path, folder);
    return journal;
}

} // namespace shell
