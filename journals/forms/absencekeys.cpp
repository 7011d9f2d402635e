#include "journals/forms/absencekeys.h"

#include <QKeyEvent>

namespace journals {

std::optional<AbsenceKey> absenceKey(const QKeyEvent& key)
{
    constexpr int kCyrillicEs = 0x0421; // the key of C in the Russian layout
    const bool control = key.modifiers().testFlag(Qt::ControlModifier);
    if (control && (key.key() == Qt::Key_C || key.key() == kCyrillicEs))
        return AbsenceKey::Copy;
    if (control || key.modifiers().testFlag(Qt::AltModifier))
        return std::nullopt;
    switch (key.key()) {
    case Qt::Key_Space:
        return AbsenceKey::Mark;
    case Qt::Key_Delete:
        return AbsenceKey::Remove;
    case Qt::Key_F2:
        return AbsenceKey::Enter;
    default:
        break;
    }
    const QString letter = key.text().toLower();
    if (letter == u"н" || letter == u"y")
        return AbsenceKey::MarkOrUnexcuse;
    if (letter == u"у" || letter == u"e")
        return AbsenceKey::Excuse;
    return std::nullopt;
}

} // namespace journals
