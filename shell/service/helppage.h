#pragma once

#include <QString>

namespace shell {

// The name under which a heading of the manual is linked to, as Markdown programs form it: "С
// чего начать?" gives "с-чего-начать".
QString headingAnchor(const QString& heading);

// Pages of the manual that commands open.
namespace helppage {
inline const QString kStart = QStringLiteral("с-чего-начать");
inline const QString kRemoteHelp = QStringLiteral("удалённая-помощь");
} // namespace helppage

} // namespace shell
