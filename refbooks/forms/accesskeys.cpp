#include "refbooks/forms/accesskeys.h"

namespace refbooks {
namespace {

// The position of the first free letter, -1 when there is none.
qsizetype freeLetter(const QString& caption, const QString& used, bool wordStarts)
{
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const bool starts = i == 0 || !caption[i - 1].isLetter();
        if (caption[i].isLetter() && (starts || !wordStarts)
            && !used.contains(caption[i], Qt::CaseInsensitive))
            return i;
    }
    return -1;
}

} // namespace

QStringList withAccessKeys(QStringList captions, const QString& taken)
{
    QString used = taken;
    for (QString& caption : captions) {
        qsizetype at = freeLetter(caption, used, true);
        if (at < 0)
            at = freeLetter(caption, used, false);
        if (at < 0)
            continue;
        used += caption[at];
        caption.insert(at, u'&');
    }
    return captions;
}

} // namespace refbooks
