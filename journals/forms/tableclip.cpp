#include "journals/forms/tableclip.h"

#include <QRect>
#include <QStringList>

namespace journals {

QString tableText(const QModelIndexList& selected)
{
    QRect area;
    for (const QModelIndex& index : selected)
        area |= QRect(index.column(), index.row(), 1, 1);
    QList<QStringList> rows(area.height(), QStringList(area.width()));
    for (const QModelIndex& index : selected) {
        QString text = index.data().toString();
        text.replace(u'\t', u' ').replace(u'\n', u' ');
        rows[index.row() - area.top()][index.column() - area.left()] = text;
    }
    QString table;
    for (const QStringList& row : rows)
        table += row.join(u'\t') + u'\n';
    return table;
}

} // namespace journals
