#include "shell/forms/startbutton.h"

#include <QPainter>

namespace shell {

void StartButton::paintEvent(QPaintEvent* event)
{
    QCommandLinkButton::paintEvent(event);
    if (!hasFocus()) {
        return;
    }
    constexpr qreal kWidth = 2;
    constexpr qreal kRadius = 3;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kWidth));
    const qreal inset = kWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius,
                            kRadius);
}

} // namespace shell
