#include "platform/x11/StackComposition.h"

#include "ForeignWindow.h"
#include "platform/x11/SubwindowRedirection.h"
#include "platform/x11/Xcb.h"

#include <gtest/gtest.h>

#include <QColor>

namespace snapvane {

namespace {

/// Composes on a connection of its own, as the grabber does.
class StackCompositionTest : public ::testing::Test {
protected:
    const x11::Server& server() const { return m_connection->server(); }

    static std::unique_ptr<ForeignWindow> foreign(const QRect& rect, std::uint32_t seed) {
        ForeignWindow::Options options;
        options.rect = rect;
        options.seed = seed;
        return std::make_unique<ForeignWindow>(options);
    }

    /// One pixel of what the stack looks like without a window.
    std::uint32_t pixelWithout(const x11::WindowStack& stack, xcb_window_t excluded, QPoint place) {
        const auto pixmap = m_composition.compose(stack, {excluded}, QRect(place, QSize(1, 1)));
        const auto reply = x11::owned(
            xcb_get_image_reply(server().connection,
                                xcb_get_image(server().connection, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                              pixmap.id(), 0, 0, 1, 1, ~0U),
                                nullptr));
        if (!reply) {
            ADD_FAILURE() << "the composition cannot be read";
            return 0;
        }
        return *reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get())) & RGB_MASK;
    }

    std::unique_ptr<x11::OwnConnection> m_connection = x11::OwnConnection::open();
    x11::StackComposition m_composition{m_connection->server()};
    x11::SubwindowRedirection m_redirection{x11::qtServer()};
    std::unique_ptr<ForeignWindow> m_lowest = foreign({100, 100, 300, 300}, 2);
    std::unique_ptr<ForeignWindow> m_middle = foreign({150, 150, 200, 200}, 3);
    std::unique_ptr<ForeignWindow> m_highest = foreign({200, 200, 100, 100}, 4);
};

} // namespace

TEST_F(StackCompositionTest, ShowsTheNextWindowBeneath) {
    x11::roundTrip(x11::qtServer());
    const auto stack = x11::WindowStack::read(server());
    EXPECT_TRUE(m_composition.isPossible());
    EXPECT_EQ(pixelWithout(stack, m_highest->id(), {210, 220}), testing::patternPixel(60, 70, 3));
    EXPECT_EQ(pixelWithout(stack, m_middle->id(), {160, 170}), testing::patternPixel(60, 70, 2));
    EXPECT_EQ(pixelWithout(stack, m_lowest->id(), {110, 120}), testing::patternPixel(110, 120));
    EXPECT_EQ(pixelWithout(stack, m_lowest->id(), {210, 220}), testing::patternPixel(10, 20, 4));
}

TEST_F(StackCompositionTest, SkipsAWindowThatHasGone) {
    x11::roundTrip(x11::qtServer());
    const auto stack = x11::WindowStack::read(server());
    m_middle.reset();
    testDesktop().connection().sync();
    EXPECT_EQ(pixelWithout(stack, m_highest->id(), {210, 220}), testing::patternPixel(110, 120, 2));
    EXPECT_NE(x11::WindowStack::read(server()), stack);
}

TEST_F(StackCompositionTest, SkipsAWindowThatIsHiddenMeanwhile) {
    x11::roundTrip(x11::qtServer());
    const auto stack = x11::WindowStack::read(server());
    m_middle->unmap();
    EXPECT_EQ(pixelWithout(stack, m_highest->id(), {210, 220}), testing::patternPixel(110, 120, 2));
}

TEST_F(StackCompositionTest, ReadsTheSameStackTwice) {
    x11::roundTrip(x11::qtServer());
    EXPECT_EQ(x11::WindowStack::read(server()), x11::WindowStack::read(server()));
}

} // namespace snapvane
