#include "shell/service/helppage.h"

namespace shell {

QString headingAnchor(const QString& heading)
{
    QString anchor;
    for (const QChar sign : heading.trimmed().toLower()) {
        if (sign.isLetterOrNumber() || sign == u'-' || sign == u'_') {
            anchor += sign;
        } else if (sign == u' ') {
            anchor += u'-';
        }
    }
    return anchor;
}

} // namespace shell
