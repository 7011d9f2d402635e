#include "journals/forms/gridlooks.h"

#include "journals/forms/contrast.h"

namespace journals {
namespace {

QColor blend(const QColor& base, const QColor& other, float share)
{
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(base.redF(), other.redF()), mix(base.greenF(), other.greenF()),
                            mix(base.blueF(), other.blueF()));
}

} // namespace

QColor stateColor(AbsenceState state, const QPalette& palette, const QColor& background)
{
    switch (state) {
    case AbsenceState::Unexcused:
        return readable(QColor(255, 0, 0), background);
    case AbsenceState::Excused:
        return readable(QColor(0, 0, 255), background);
    case AbsenceState::NotInForce:
        return readable(QColor(0x80, 0x80, 0x80), background);
    case AbsenceState::None:
    case AbsenceState::Mixed:
        break;
    }
    return readable(palette.color(QPalette::Text), background);
}

QFont stateFont(AbsenceState state, QFont font)
{
    font.setBold(state == AbsenceState::Unexcused);
    font.setItalic(state == AbsenceState::Excused);
    return font;
}

QColor dayOffShade(const QPalette& palette)
{
    constexpr float kShare = 0.14F;
    return blend(palette.color(QPalette::Base), palette.color(QPalette::Text), kShare);
}

QColor totalShade(const QPalette& palette)
{
    constexpr float kShare = 0.05F;
    return blend(palette.color(QPalette::Base), palette.color(QPalette::Text), kShare);
}

QColor gridLine(const QPalette& palette)
{
    constexpr float kShare = 0.22F;
    return blend(palette.color(QPalette::Base), palette.color(QPalette::Text), kShare);
}

} // namespace journals
