#include "journals/forms/gradekeys.h"

#include <QKeyEvent>

namespace journals {
namespace {

std::optional<GradeKey> controlKey(const QKeyEvent& key)
{
    // The keys of C, S, Z and Y in the Russian layout.
    constexpr int kEs = 0x0421, kYeru = 0x042B, kYa = 0x042F, kEn = 0x041D;
    const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
    switch (key.key()) {
    case Qt::Key_C:
    case kEs:
        return GradeKey{GradeKey::Copy};
    case Qt::Key_S:
    case kYeru:
        return GradeKey{GradeKey::Save};
    case Qt::Key_Z:
    case kYa:
        return GradeKey{shift ? GradeKey::Redo : GradeKey::Undo};
    case Qt::Key_Y:
    case kEn:
        return GradeKey{GradeKey::Redo};
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<GradeKey> gradeKey(const QKeyEvent& key)
{
    if (key.modifiers().testFlag(Qt::AltModifier))
        return std::nullopt;
    if (key.modifiers().testFlag(Qt::ControlModifier))
        return controlKey(key);
    if (key.key() >= Qt::Key_2 && key.key() <= Qt::Key_5)
        return GradeKey{GradeKey::Set, key.key() - Qt::Key_0};
    if (key.key() == Qt::Key_0 || key.key() == Qt::Key_1)
        return GradeKey{GradeKey::Set, kPassGrade};
    if (key.key() == Qt::Key_Delete || key.key() == Qt::Key_Backspace)
        return GradeKey{GradeKey::Remove};
    if (key.key() == Qt::Key_F2)
        return GradeKey{GradeKey::Choose};
    const QString letter = key.text().toLower();
    if (letter == u"з" || letter == u"p")
        return GradeKey{GradeKey::Set, kPassGrade};
    return std::nullopt;
}

} // namespace journals
