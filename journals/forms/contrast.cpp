#include "journals/forms/contrast.h"

#include <algorithm>
#include <cmath>

namespace journals {
namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
           + 0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor& first, const QColor& second)
{
    const double one = luminance(first), other = luminance(second);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor readable(const QColor& wish, const QColor& background)
{
    constexpr float kStep = 0.02F;
    const bool lighten =
        contrastRatio(background, Qt::white) > contrastRatio(background, Qt::black);
    QColor color = wish;
    while (contrastRatio(color, background) < kReadableContrast) {
        float hue = 0, saturation = 0, lightness = 0;
        color.getHslF(&hue, &saturation, &lightness);
        if (lighten ? lightness >= 1 : lightness <= 0)
            break;
        const float next = lightness + (lighten ? kStep : -kStep);
        color = QColor::fromHslF(std::max(hue, 0.0F), saturation, std::clamp(next, 0.0F, 1.0F));
    }
    return color;
}

} // namespace journals
