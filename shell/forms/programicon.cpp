#include "shell/forms/programicon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

// The macro must stand outside a namespace.
static void initProgramIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace shell {

QIcon programIcon()
{
    initProgramIcons();
    QSvgRenderer renderer(u":/icons/jurnal.svg"_s);
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace shell
