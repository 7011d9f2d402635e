#include "shell/forms/hintcolor.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>

namespace shell {
namespace {

void setHintColor()
{
    constexpr float kFaint = 0.6F; // still above 4.5:1 with the usual texts and grounds
    QPalette palette = QApplication::palette();
    QColor hint = palette.color(QPalette::Text);
    hint.setAlphaF(kFaint);
    if (palette.color(QPalette::PlaceholderText) == hint)
        return;
    palette.setColor(QPalette::PlaceholderText, hint); // the rest still follows the desktop
    QApplication::setPalette(palette);
}

class PaletteListener final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::ApplicationPaletteChange)
            setHintColor();
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void keepHintsReadable(QApplication& program)
{
    program.installEventFilter(new PaletteListener(&program));
    setHintColor();
}

} // namespace shell
