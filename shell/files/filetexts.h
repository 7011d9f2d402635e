#pragma once

#include <QString>

namespace shell {

// "812 КБ", "30,5 МБ", "14,2 ГБ".
QString sizeText(qint64 bytes);
// The path as the user's system writes it, in «».
QString quotedPath(const QString& path);

} // namespace shell
