#pragma once

#include <QColor>

namespace journals {

// The least contrast of text to its background that is read with ease (WCAG 2, level AA).
inline constexpr double kReadableContrast = 4.5;

// Contrast ratio of two opaque colours, 1 to 21, as WCAG 2 defines it.
double contrastRatio(const QColor& first, const QColor& second);

// The hue asked for, made as much darker or lighter as reading it on `background` takes.
QColor readable(const QColor& wish, const QColor& background);

} // namespace journals
