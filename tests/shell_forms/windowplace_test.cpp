#include "shell/forms/windowplace.h"

#include <gtest/gtest.h>

namespace {

const QRect kPrimary(0, 0, 1920, 1040);
const QRect kSecond(1920, 0, 1280, 1000);

struct Case
{
    const char* what;
    QRect saved;
    QList<QRect> screens;
    QRect expected;
};

} // namespace

TEST(WindowPlace, BringsWindowsBackOnAScreen)
{
    const Case cases[] = {
        {"fits", {100, 80, 1200, 800}, {kPrimary}, {100, 80, 1200, 800}},
        {"on the second screen", {2000, 50, 900, 700}, {kPrimary, kSecond}, {2000, 50, 900, 700}},
        {"partly outside, yet reachable", {-100, 80, 1200, 800}, {kPrimary}, {-100, 80, 1200, 800}},
        {"second screen is gone", {2000, 50, 900, 700}, {kPrimary}, {1020, 50, 900, 700}},
        {"far left", {-5000, 50, 900, 700}, {kPrimary}, {0, 50, 900, 700}},
        {"title above the top", {100, -600, 900, 700}, {kPrimary}, {100, 0, 900, 700}},
        {"below the bottom", {100, 1035, 900, 700}, {kPrimary}, {100, 340, 900, 700}},
        {"larger than the screen", {10, 10, 4000, 3000}, {kPrimary}, {0, 0, 1920, 1040}},
        {"no size at all", {100, 100, 0, 0}, {kPrimary}, {100, 100, 400, 300}},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(shell::placeOnScreens(row.saved, row.screens), row.expected) << row.what;
    }
}

TEST(WindowPlace, StaysInsideAScreenSmallerThanTheLeastWindow)
{
    const QRect tiny(0, 0, 320, 240);
    EXPECT_EQ(shell::placeOnScreens({500, 500, 900, 700}, {tiny}), tiny);
}
