#include "shell/files/filetexts.h"

#include <QDir>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace shell {

QString sizeText(qint64 bytes)
{
    constexpr double kKilo = 1024;
    const QLocale russian(QLocale::Russian, QLocale::Russia);
    const double kilobytes = static_cast<double>(bytes) / kKilo;
    if (kilobytes < kKilo)
        return u"%1 КБ"_s.arg(russian.toString(kilobytes, 'f', 0));
    if (kilobytes < kKilo * kKilo)
        return u"%1 МБ"_s.arg(russian.toString(kilobytes / kKilo, 'f', 1));
    return u"%1 ГБ"_s.arg(russian.toString(kilobytes / kKilo / kKilo, 'f', 1));
}

QString quotedPath(const QString& path)
{
    return u"«%1»"_s.arg(QDir::toNativeSeparators(path));
}

} // namespace shell
