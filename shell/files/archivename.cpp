#include "shell/files/archivename.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kTimeFormat = u"yyyy-MM-dd HH-mm-ss"_s;

// Brackets separate the reason; the others are not allowed in names on every disk.
QString fitForName(QString text)
{
    static const QRegularExpression kUnfit(u"[()/\\\\:*?\"<>|[:cntrl:]]"_s);
    constexpr qsizetype kLongest = 60;
    return text.remove(kUnfit).simplified().left(kLongest);
}

} // namespace

const QString ArchiveName::kManual = u"архив"_s;

QString archivePlace(const QString& path)
{
    constexpr qsizetype kDigits = 4;
    const QByteArray folder = QFileInfo(path).absoluteFilePath().toUtf8();
    const auto sum = QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex();
    return QString::fromLatin1(sum.left(kDigits));
}

ArchiveName ArchiveName::forCopy(const QString& path, const QString& reason, const QDateTime& made)
{
    return {made, fitForName(QFileInfo(path).completeBaseName()), fitForName(reason),
            archivePlace(path), true};
}

std::optional<ArchiveName> ArchiveName::parse(const QString& fileName)
{
    static const QRegularExpression kForm(
        u"^(\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d) (.*) \\(([^()]*)\\) ([0-9a-f]{4})\\.(zip|mdb)$"_s);
    const auto match = kForm.match(fileName);
    if (!match.hasMatch())
        return std::nullopt;
    const QDateTime made = QDateTime::fromString(match.captured(1), kTimeFormat);
    if (!made.isValid())
        return std::nullopt;
    return ArchiveName{made, match.captured(2), match.captured(3), match.captured(4),
                       match.captured(5) == u"zip"_s};
}

QString ArchiveName::fileName() const
{
    return u"%1 %2 (%3) %4.%5"_s.arg(made.toString(kTimeFormat), journal, reason, place,
                                     compressed ? u"zip"_s : u"mdb"_s);
}

bool ArchiveName::automatic() const
{
    return reason != kManual;
}

} // namespace shell
