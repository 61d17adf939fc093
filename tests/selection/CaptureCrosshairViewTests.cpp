#include "selection/CaptureCrosshairView.h"

#include "base/SystemColors.h"
#include "platform/null/NullSprites.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

Screen screenOf(PixelSize pixels, double scale) {
    return ScreenMapping::layOut({{7, QStringLiteral("S"), {{300, 40}, pixels}, scale, {}}})
        .front();
}

class CaptureCrosshairViewTest : public ::testing::Test {
protected:
    null::NullSolidSprite& vertical() { return *m_sprites.solids.at(0); }
    null::NullSolidSprite& horizontal() { return *m_sprites.solids.at(1); }

    null::NullSprites m_sprites;
    Screen m_screen = screenOf({640, 480}, 2);
    CaptureCrosshairView m_view{m_sprites, m_screen, 1001};
};

TEST_F(CaptureCrosshairViewTest, IsTwoHiddenRedSprites) {
    ASSERT_EQ(m_sprites.solids.size(), 2U);
    for (const null::NullSolidSprite* line : m_sprites.solids) {
        EXPECT_EQ(line->color, SystemColors::red());
        EXPECT_EQ(line->options.level, 1001);
        EXPECT_FALSE(line->options.name.isEmpty());
        EXPECT_FALSE(line->visible);
    }
    EXPECT_TRUE(m_sprites.images.empty());
    EXPECT_FALSE(m_view.isVisible());
    EXPECT_EQ(m_view.screen(), m_screen);
}

TEST_F(CaptureCrosshairViewTest, ShowsOnePointThickLinesThroughThePoint) {
    m_view.setCrosshairPoint({100.3, 50});
    EXPECT_EQ(m_view.crosshairPoint(), (GlobalPoint{100.3, 50}));
    m_view.orderFrontRegardless();
    EXPECT_TRUE(m_view.isVisible());
    // Centred on pixel boundary 201 from the left and 100 from below.
    EXPECT_EQ(vertical().area, (PixelRect{200, 0, 2, 480}));
    EXPECT_EQ(horizontal().area, (PixelRect{0, 379, 640, 2}));
    for (const null::NullSolidSprite* line : m_sprites.solids) {
        EXPECT_TRUE(line->visible);
        EXPECT_EQ(line->screen, m_screen);
    }
}

TEST_F(CaptureCrosshairViewTest, ANewPointIsSeenWhenItIsOrderedFront) {
    m_view.orderFrontRegardless();
    m_view.setCrosshairPoint({10, 20});
    EXPECT_NE(vertical().area.x, 19);
    m_view.orderFrontRegardless();
    EXPECT_EQ(vertical().area, (PixelRect{19, 0, 2, 480}));
    EXPECT_EQ(horizontal().area, (PixelRect{0, 439, 640, 2}));
}

TEST_F(CaptureCrosshairViewTest, HidesBothLines) {
    m_view.orderOut();
    m_view.orderFrontRegardless();
    m_view.orderOut();
    EXPECT_FALSE(m_view.isVisible());
    EXPECT_FALSE(vertical().visible);
    EXPECT_FALSE(horizontal().visible);
    m_view.orderFrontRegardless();
    EXPECT_TRUE(vertical().visible);
    EXPECT_TRUE(horizontal().visible);
}

TEST(CaptureCrosshairView, TakesItsSpritesWithIt) {
    null::NullSprites sprites;
    {
        const CaptureCrosshairView view(sprites, screenOf({640, 480}, 1), 5);
        EXPECT_EQ(sprites.solids.size(), 2U);
    }
    EXPECT_TRUE(sprites.solids.empty());
}

TEST(CaptureCrosshairView, IsOnePointThickAtEveryScale) {
    struct Case {
        double scale;
        int thickness;
    };
    for (const Case& c : {Case{1, 1}, {1.5, 2}, {1.75, 2}, {2, 2}, {3, 3}}) {
        null::NullSprites sprites;
        CaptureCrosshairView view(sprites, screenOf({640, 480}, c.scale), 5);
        view.setCrosshairPoint({60, 60});
        view.orderFrontRegardless();
        EXPECT_EQ(sprites.solids[0]->area.width, c.thickness) << c.scale;
        EXPECT_EQ(sprites.solids[1]->area.height, c.thickness) << c.scale;
    }
}

} // namespace

} // namespace snapvane
