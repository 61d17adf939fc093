#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

SpritePicture pictureOf(QRgb color) {
    QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return {image, {{{0, 0, 2, 2}, 1}}};
}

class NullSpritesTest : public ::testing::Test {
protected:
    null::NullSprites m_sprites;
    Screen m_screen = null::NullScreens().screens.front();
};

TEST_F(NullSpritesTest, AreHiddenToBeginWith) {
    const auto solid = m_sprites.createSolid(Qt::red, {});
    const auto image = m_sprites.createImage({});
    EXPECT_FALSE(solid->isVisible());
    EXPECT_FALSE(image->isVisible());
    EXPECT_EQ(m_sprites.solids[0]->shown, 0);
    EXPECT_EQ(m_sprites.images[0]->shown, 0);
}

TEST_F(NullSpritesTest, KnowWhichSpritesThereAre) {
    auto first = m_sprites.createSolid(Qt::red, {QStringLiteral("First"), 3});
    const auto second = m_sprites.createSolid(Qt::blue, {QStringLiteral("Second"), 4});
    auto image = m_sprites.createImage({QStringLiteral("Image"), 5});
    ASSERT_EQ(m_sprites.solids.size(), 2U);
    ASSERT_EQ(m_sprites.images.size(), 1U);
    EXPECT_EQ(m_sprites.solids[0]->color, QColor(Qt::red));
    EXPECT_EQ(m_sprites.solids[1]->options.name, QStringLiteral("Second"));
    EXPECT_EQ(m_sprites.solids[1]->options.level, 4);
    EXPECT_EQ(m_sprites.images[0]->options.name, QStringLiteral("Image"));
    EXPECT_EQ(m_sprites.images[0]->options.level, 5);

    first.reset();
    image.reset();
    ASSERT_EQ(m_sprites.solids.size(), 1U);
    EXPECT_EQ(m_sprites.solids[0], second.get());
    EXPECT_TRUE(m_sprites.images.empty());
    EXPECT_EQ(m_sprites.created, 3);
}

TEST_F(NullSpritesTest, ASolidOneRemembersItsPlace) {
    const auto sprite = m_sprites.createSolid(Qt::red, {});
    sprite->showAt(m_screen, {1, 2, 3, 4});
    sprite->showAt(m_screen, {5, 6, 7, 8});
    EXPECT_TRUE(sprite->isVisible());
    EXPECT_EQ(m_sprites.solids[0]->area, (PixelRect{5, 6, 7, 8}));
    EXPECT_EQ(m_sprites.solids[0]->screen, m_screen);
    EXPECT_EQ(m_sprites.solids[0]->shown, 2);
    sprite->hide();
    EXPECT_FALSE(sprite->isVisible());
}

TEST_F(NullSpritesTest, AnImageOneKeepsThePictureAsItWasShown) {
    const auto sprite = m_sprites.createImage({});
    SpritePicture picture = pictureOf(0xff112233);
    sprite->showAt(m_screen, {9, 10}, picture);
    // The caller's memory is free again.
    picture.image.fill(0xffffffff);
    picture.shape.clear();
    const null::NullImageSprite& shown = *m_sprites.images[0];
    EXPECT_TRUE(sprite->isVisible());
    EXPECT_EQ(shown.topLeft, (PixelPoint{9, 10}));
    EXPECT_EQ(shown.screen, m_screen);
    EXPECT_EQ(shown.picture.image.pixel(1, 1), 0xff112233U);
    EXPECT_EQ(shown.picture.shape.size(), 1U);
    EXPECT_EQ(shown.shown, 1);
    sprite->hide();
    EXPECT_FALSE(sprite->isVisible());
}

TEST_F(NullSpritesTest, TransparencyIsWhatTheTestSays) {
    const auto sprite = m_sprites.createImage({});
    EXPECT_TRUE(sprite->isTranslucent());
    m_sprites.translucent = false;
    EXPECT_FALSE(sprite->isTranslucent());
}

TEST_F(NullSpritesTest, TransparencyIsSettledWhileASpriteIsVisible) {
    const auto sprite = m_sprites.createImage({});
    ASSERT_TRUE(sprite->isTranslucent());
    sprite->showAt(m_screen, {0, 0}, pictureOf(0xff112233));
    m_sprites.translucent = false;
    EXPECT_TRUE(sprite->isTranslucent());
    sprite->hide();
    EXPECT_FALSE(sprite->isTranslucent());
}

TEST_F(NullSpritesTest, BelongToTheNullPlatform) {
    null::NullPlatform platform;
    const auto sprite = platform.sprites().createSolid(Qt::red, {});
    EXPECT_EQ(platform.sprites().solids.size(), 1U);
}

} // namespace

} // namespace snapvane
