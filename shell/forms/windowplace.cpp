#include "shell/forms/windowplace.h"

#include "shell/settings.h"

#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>

#include <algorithm>

namespace shell {

namespace {

constexpr QSize kFirstSize(1180, 760);
constexpr QSize kLeastSize(400, 300);
constexpr int kReach = 48; // pixels of the title that must be on a screen to be grabbed

// As stored in "MainState".
constexpr int kNormal = 0;
constexpr int kMinimised = 1;
constexpr int kMaximised = 2;

QList<QRect> screenAreas()
{
    QList<QRect> areas;
    const QScreen* primary = QGuiApplication::primaryScreen();
    areas.append(primary->availableGeometry());
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != primary) {
            areas.append(screen->availableGeometry());
        }
    }
    return areas;
}

QRect fitted(QSize size, const QRect& area, QPoint corner)
{
    const QSize inside = size.expandedTo(kLeastSize).boundedTo(area.size());
    const int x = std::clamp(corner.x(), area.left(), area.right() - inside.width() + 1);
    const int y = std::clamp(corner.y(), area.top(), area.bottom() - inside.height() + 1);
    return {QPoint(x, y), inside};
}

} // namespace

QRect placeOnScreens(const QRect& saved, const QList<QRect>& screens)
{
    const QRect title(saved.left(), saved.top(), saved.width(), kReach);
    for (const QRect& area : screens) {
        const QRect seen = title.intersected(area);
        const bool reached = seen.width() >= kReach && seen.height() >= kReach / 2;
        if (reached && saved.width() <= area.width() && saved.height() <= area.height()) {
            return {saved.topLeft(), saved.size().expandedTo(kLeastSize)};
        }
        if (reached) {
            return fitted(saved.size(), area, saved.topLeft());
        }
    }
    return fitted(saved.size(), screens.constFirst(), saved.topLeft());
}

void restorePlace(QMainWindow& window, const Settings& settings)
{
    const QList<QRect> screens = screenAreas();
    const QRect first = screens.constFirst();
    QRect place(QPoint(0, 0), kFirstSize.boundedTo(first.size() * 0.9)); // the rest for the frame
    place.moveCenter(first.center());
    if (settings.contains(Setting::MainWidth) && settings.contains(Setting::MainHeight)) {
        const QRect saved(settings.number(Setting::MainLeft), settings.number(Setting::MainTop),
                          settings.number(Setting::MainWidth),
                          settings.number(Setting::MainHeight));
        place = placeOnScreens(saved, screens);
    }
    window.resize(place.size());
    window.move(place.topLeft());
    // A program found minimised at its start would look as if it had not started.
    if (settings.number(Setting::MainState) == kMaximised) {
        window.setWindowState(Qt::WindowMaximized);
    }
}

void savePlace(const QMainWindow& window, Settings& settings)
{
    const bool normal =
        (window.windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen))
        == Qt::WindowNoState;
    const QRect normalPlace = normal ? window.geometry() : window.normalGeometry();
    const QPoint frame = window.geometry().topLeft() - window.pos(); // move() places the frame
    const QRect place = normalPlace.translated(-frame);
    settings.setNumber(Setting::MainLeft, place.left());
    settings.setNumber(Setting::MainTop, place.top());
    settings.setNumber(Setting::MainWidth, place.width());
    settings.setNumber(Setting::MainHeight, place.height());
    const int state = window.isMinimized()   ? kMinimised
                      : window.isMaximized() ? kMaximised
                                             : kNormal;
    settings.setNumber(Setting::MainState, state);
}

} // namespace shell
