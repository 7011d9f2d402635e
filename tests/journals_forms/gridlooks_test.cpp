#include "journals/forms/gridlooks.h"

#include "journals/forms/contrast.h"

#include <gtest/gtest.h>

#include <QFont>

using namespace journals;

namespace {

QPalette palette(const QColor& base, const QColor& text, const QColor& highlight)
{
    QPalette colors;
    colors.setColor(QPalette::Base, base);
    colors.setColor(QPalette::Text, text);
    colors.setColor(QPalette::Highlight, highlight);
    return colors;
}

TEST(GridLooks, ContrastIsThatOfTheAccessibilityGuidelines)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21.0, 0.01);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::white), 1.0, 0.01);
    EXPECT_NEAR(contrastRatio(QColor(255, 0, 0), Qt::white), 4.0, 0.01);
    EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(GridLooks, EveryStateIsReadableOnEveryBackground)
{
    const QPalette palettes[] = {
        palette(Qt::white, Qt::black, QColor(0x30, 0x8c, 0xc6)),
        palette(QColor(0x1e, 0x1e, 0x1e), Qt::white, QColor(0x2a, 0x82, 0xda)),
        palette(QColor(0x2b, 0x2b, 0x2b), QColor(0xdd, 0xdd, 0xdd), QColor(0x99, 0x99, 0x99)),
        palette(Qt::black, Qt::white, Qt::yellow),
    };
    for (const QPalette& colors : palettes) {
        const QColor backgrounds[] = {colors.color(QPalette::Base), dayOffShade(colors),
                                      totalShade(colors), colors.color(QPalette::Highlight)};
        for (const QColor& background : backgrounds)
            for (const AbsenceState state :
                 {AbsenceState::None, AbsenceState::Unexcused, AbsenceState::Excused,
                  AbsenceState::Mixed, AbsenceState::NotInForce})
                EXPECT_GE(contrastRatio(stateColor(state, colors, background), background),
                          kReadableContrast)
                    << background.name().toStdString() << " " << static_cast<int>(state);
    }
}

TEST(GridLooks, RedAndBlueKeepTheirHue)
{
    const QColor dark(0x1e, 0x1e, 0x1e);
    for (const QColor& background : {QColor(Qt::white), dark}) {
        const QColor red = stateColor(AbsenceState::Unexcused, {}, background);
        const QColor blue = stateColor(AbsenceState::Excused, {}, background);
        EXPECT_GT(red.red(), std::max(red.green(), red.blue()) + 60);
        EXPECT_GT(blue.blue(), std::max(blue.green(), blue.red()) + 60);
    }
}

TEST(GridLooks, NoColourSpeaksAlone)
{
    EXPECT_TRUE(stateFont(AbsenceState::Unexcused, {}).bold());
    EXPECT_FALSE(stateFont(AbsenceState::Unexcused, {}).italic());
    EXPECT_TRUE(stateFont(AbsenceState::Excused, {}).italic());
    EXPECT_FALSE(stateFont(AbsenceState::Excused, {}).bold());
    EXPECT_FALSE(stateFont(AbsenceState::Mixed, {}).bold());
}

} // namespace
