#include "journals/forms/absencekeys.h"

#include <QKeyEvent>

namespace journals {

namespace {

// The letters by their place on the keyboard in both layouts.
std::optional<AbsenceKey> controlKey(const QKeyEvent& key)
{
    constexpr int kCyrillicEs = 0x0421, kCyrillicYa = 0x042F, kCyrillicEn = 0x041D;
    const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
    switch (key.key()) {
    case Qt::Key_C:
    case kCyrillicEs:
        return AbsenceKey::Copy;
    case Qt::Key_Z:
    case kCyrillicYa:
        return shift ? AbsenceKey::Redo : AbsenceKey::Undo;
    case Qt::Key_Y:
    case kCyrillicEn:
        return AbsenceKey::Redo;
    case Qt::Key_Space:
        return AbsenceKey::MarkColumn;
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<AbsenceKey> absenceKey(const QKeyEvent& key)
{
    if (key.modifiers().testFlag(Qt::AltModifier))
        return std::nullopt;
    if (key.modifiers().testFlag(Qt::ControlModifier))
        return controlKey(key);
    switch (key.key()) {
    case Qt::Key_Space:
        return key.modifiers().testFlag(Qt::ShiftModifier) ? AbsenceKey::MarkDay : AbsenceKey::Mark;
    case Qt::Key_Delete:
        return AbsenceKey::Remove;
    case Qt::Key_F2:
        return AbsenceKey::Enter;
    case Qt::Key_F4:
        return AbsenceKey::Period;
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

std::optional<AbsenceAction> absenceAction(shell::JournalAction action)
{
    switch (action) {
    case shell::JournalAction::Mark:
        return AbsenceAction::Mark;
    case shell::JournalAction::MakeExcused:
        return AbsenceAction::MakeExcused;
    case shell::JournalAction::MakeUnexcused:
        return AbsenceAction::MakeUnexcused;
    case shell::JournalAction::Delete:
        return AbsenceAction::Remove;
    default:
        return std::nullopt;
    }
}

} // namespace journals
