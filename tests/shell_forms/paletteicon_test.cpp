#include "shell/forms/paletteicon.h"
#include "shell/forms/programicon.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace {

// The darkest and the lightest colour that the icon's lines reach.
QColor lineColor(const QIcon& icon, QIcon::Mode mode, int side)
{
    const QImage image = icon.pixmap(QSize(side, side), 1.0, mode).toImage();
    QColor strongest(0, 0, 0, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (const QColor color = image.pixelColor(x, y); color.alpha() > strongest.alpha()) {
                strongest = color;
            }
        }
    }
    return strongest;
}

class Palette final
{
public:
    explicit Palette(QColor text) { set(text); }
    ~Palette() { QApplication::setPalette(m_before); }
    Palette(const Palette&) = delete;
    Palette& operator=(const Palette&) = delete;

private:
    void set(QColor text)
    {
        QPalette palette = m_before;
        palette.setColor(QPalette::ButtonText, text);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
        QApplication::setPalette(palette);
    }
    QPalette m_before = QApplication::palette();
};

} // namespace

TEST(PaletteIcon, IsDrawnInTheTextColourOfThePaletteInForce)
{
    const QIcon icon = shell::paletteIcon(u"Open"_s);
    for (const QColor text : {QColor(0x10, 0x10, 0x10), QColor(0xf0, 0xf0, 0xf0)}) {
        const Palette palette(text);
        const QColor seen = lineColor(icon, QIcon::Normal, 24);
        EXPECT_NEAR(seen.lightness(), text.lightness(), 8);
        EXPECT_NEAR(lineColor(icon, QIcon::Disabled, 24).lightness(), QColor(Qt::gray).lightness(),
                    8);
    }
}

TEST(PaletteIcon, FillsEverySizeItIsAskedFor)
{
    for (const int side : {16, 24, 48, 96}) {
        const QIcon icon = shell::paletteIcon(u"Pos"_s);
        EXPECT_EQ(icon.pixmap(QSize(side, side), 1.0).size(), QSize(side, side));
        EXPECT_GT(lineColor(icon, QIcon::Normal, side).alpha(), 200) << side;
    }
    EXPECT_EQ(shell::paletteIcon(u"Pos"_s).pixmap(QSize(24, 24), 2.0).size(), QSize(48, 48));
}

TEST(PaletteIcon, AnUnknownNameGivesNoIcon)
{
    EXPECT_TRUE(shell::paletteIcon(u"нет"_s).isNull());
}

TEST(ProgramIcon, HasPicturesForTaskBars)
{
    EXPECT_GT(lineColor(shell::programIcon(), QIcon::Normal, 256).alpha(), 200);
}
