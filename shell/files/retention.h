#pragma once

#include <QDateTime>
#include <QList>

namespace shell {

// Which copies have had their time. Kept are the ten latest, the first one of each of the
// last thirty days and the first one of each month: the first copy of a day is the one made
// before anything was changed that day. `made` in any order; gives positions in it.
QList<qsizetype> outlived(const QList<QDateTime>& made, const QDate& today);

} // namespace shell
