// Run on desktops of other depths as well: the colours are those that were asked for, as near as
// the pixels there get to them.

#include "SpriteFixture.h"

namespace snapvane {

namespace {

class X11SpritesDepth : public SpriteTest {
protected:
    X11SpritesDepth() {
        const x11::PixelLayout layout = x11::rootPixelLayout(x11::qtServer());
        // A step of a channel of 5 bits, which some servers cut off instead of rounding.
        m_tolerance = layout.depth < 24 ? 8 : 1;
    }
    void expectColor(const QImage& picture, const QPoint& place, QRgb color) const {
        const QRgb pixel = picture.pixel(place);
        EXPECT_NEAR(qRed(pixel), qRed(color), m_tolerance) << place.x() << ',' << place.y();
        EXPECT_NEAR(qGreen(pixel), qGreen(color), m_tolerance) << place.x() << ',' << place.y();
        EXPECT_NEAR(qBlue(pixel), qBlue(color), m_tolerance) << place.x() << ',' << place.y();
    }

private:
    double m_tolerance = 0;
};

const QRgb colors[] = {0xffe5383b, 0xffff0000, 0xff00ff00, 0xff0000ff,
                       0xffffffff, 0xff000000, 0xff123456, 0xff80c040};

TEST_F(X11SpritesDepth, IsThatOfTheRoot) {
    // What the run is about; says in the log that it is not another one.
    const int depth = qEnvironmentVariableIntValue("SNAPVANE_TEST_DEPTH");
    EXPECT_EQ(x11::qtServer().screen->root_depth, depth == 0 ? 24 : depth);
}

TEST_F(X11SpritesDepth, SolidOnesHaveTheirColour) {
    for (const QRgb color : colors) {
        const auto line = m_sprites.createSolid(QColor(color), {QStringLiteral("Sprite"), 5});
        line->showAt(screen(), {100, 0, 3, 800});
        const QImage picture = glass(everything());
        expectColor(picture, {100, 0}, color);
        expectColor(picture, {102, 799}, color);
        EXPECT_EQ(picture.pixel(103, 400), bare().pixel(103, 400));
    }
}

TEST_F(X11SpritesDepth, ImagesHaveTheirColours) {
    const auto loupe = image("Sprite");
    for (const QRgb color : colors) {
        QImage picture(64, 48, QImage::Format_ARGB32_Premultiplied);
        picture.fill(0xff000000);
        for (int y = 10; y < 20; ++y) {
            for (int x = 30; x < 40; ++x) {
                picture.setPixel(x, y, color);
            }
        }
        loupe->showAt(screen(), {200, 100}, whole(picture));
        const QImage shown = glass(everything());
        for (const QPoint inside : {QPoint(30, 10), QPoint(39, 19)}) {
            expectColor(shown, QPoint(200, 100) + inside, color);
        }
        for (const QPoint outside :
             {QPoint(29, 10), QPoint(40, 19), QPoint(30, 9), QPoint(0, 0), QPoint(63, 47)}) {
            expectColor(shown, QPoint(200, 100) + outside, 0xff000000);
        }
    }
}

TEST_F(X11SpritesDepth, ImagesMoveAndChange) {
    const auto loupe = image("Sprite");
    loupe->showAt(screen(), {200, 100}, plainPicture({64, 48}, 0xffff0000));
    loupe->showAt(screen(), {230, 120}, plainPicture({96, 72}, 0xff0000ff));
    const QImage shown = glass(everything());
    expectColor(shown, {230, 120}, 0xff0000ff);
    expectColor(shown, {325, 191}, 0xff0000ff);
    EXPECT_EQ(shown.pixel(229, 119), bare().pixel(229, 119));
    EXPECT_EQ(shown.pixel(326, 192), bare().pixel(326, 192));
    loupe->hide();
    EXPECT_EQ(glass(everything()), bare());
}

TEST_F(X11SpritesDepth, ImagesAreCutToTheirShape) {
    const auto loupe = image("Sprite");
    SpritePicture picture = plainPicture({64, 64}, 0xff00ff00);
    picture.shape = {{{8, 8, 48, 48}, 24}};
    loupe->showAt(screen(), {200, 100}, picture);
    const QImage shown = glass(everything());
    expectColor(shown, {232, 108}, 0xff00ff00);
    EXPECT_EQ(shown.pixel(232, 107), bare().pixel(232, 107));
    EXPECT_EQ(shown.pixel(209, 109), bare().pixel(209, 109));
}

} // namespace

} // namespace snapvane
