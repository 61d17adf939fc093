// How the screen looks during a selection: dimmed as set, clear inside the drag.

#include "Flavours.h"

#include "AgentSuite.h"

#include <X11/keysym.h>
#include <cmath>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

/// How much of `actual` is not `reference` under black of the given opacity, to one step a channel.
int pixelsNotVeiled(const QImage& reference, const QImage& actual, const QRegion& where,
                    double opacity) {
    const auto far = [opacity](int background, int value) {
        return std::abs(value - background * (1 - opacity)) > 1.0;
    };
    int count = 0;
    for (const QRect& rect : where) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = rect.left(); x <= rect.right(); ++x) {
                const QRgb back = reference.pixel(x, y);
                const QRgb pixel = actual.pixel(x, y);
                count += far(qRed(back), qRed(pixel)) || far(qGreen(back), qGreen(pixel)) ||
                                 far(qBlue(back), qBlue(pixel))
                             ? 1
                             : 0;
            }
        }
    }
    return count;
}

/// The first desktop lacks a compositor, so its veil lies on a picture; the others' is translucent.
template <typename FlavourType> class Veil : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.compositor = FlavourType::compositor;
        options.screenSize = {1280, 720};
        s_desktop = std::make_unique<VirtualDesktop>(options);
    }
    static void TearDownTestSuite() { s_desktop.reset(); }

    void startAgent(double opacity) {
        s_desktop->folders().write(u"config/Snapvane/Snapvane.conf"_s, plainPreferences(opacity));
        m_reference = grabSettledScreen(s_desktop->connection(), s_desktop->rect());
        m_agent = std::make_unique<AgentProcess>(*s_desktop);
        m_agent->activateAction(u"capture-area"_s);
        m_agent->waitForOverlay();
    }

    QImage screen() { return grabScreen(s_desktop->connection(), s_desktop->rect()); }

    /// Waits for the veil on all of `where`; painting may take a moment after the grab.
    void expectVeil(const QRegion& where, double opacity) {
        int left = -1;
        waitUntil(
            [&] {
                left = pixelsNotVeiled(m_reference, screen(), where, opacity);
                return left == 0;
            },
            std::chrono::seconds(3), std::chrono::milliseconds(50));
        EXPECT_EQ(left, 0) << "pixels are not veiled at " << opacity;
    }

    void cancel() {
        Injector(s_desktop->connection()).tapKey(XK_Escape);
        EXPECT_TRUE(m_agent->waitForOverlayGone());
        const QImage after = grabSettledScreen(s_desktop->connection(), s_desktop->rect());
        EXPECT_TRUE(samePicture(m_reference, after, u"veil-after"_s));
    }

    static std::unique_ptr<VirtualDesktop> s_desktop;
    std::unique_ptr<AgentProcess> m_agent;
    QImage m_reference;
};

template <typename FlavourType> std::unique_ptr<VirtualDesktop> Veil<FlavourType>::s_desktop;

TYPED_TEST_SUITE(Veil, EveryFlavour, FlavourNames);

TYPED_TEST(Veil, DimsTheWholeScreenByEighteenPercent) {
    this->startAgent(0.18);
    this->expectVeil(this->s_desktop->rect(), 0.18);
    this->cancel();
}

TYPED_TEST(Veil, FollowsTheDimAmountThatIsSet) {
    this->startAgent(0.45);
    this->expectVeil(this->s_desktop->rect(), 0.45);
    this->cancel();
}

TYPED_TEST(Veil, LeavesTheDraggedRectangleClear) {
    this->startAgent(0.18);
    const QRect hole(400, 300, 300, 200);
    Injector(this->s_desktop->connection()).dragTo(hole.topLeft(), {700, 500});
    // The outline is centred on the edge; the label stands within forty pixels above.
    const QRect touched = hole.adjusted(-2, -45, 2, 2);
    this->expectVeil(QRegion(this->s_desktop->rect()) - touched, 0.18);
    this->expectVeil(hole.adjusted(2, 2, -2, -2), 0);
    const QImage now = this->screen();
    const QRgb outline = now.pixel(hole.left(), hole.center().y());
    EXPECT_GT(qBlue(outline), qRed(outline) + 60) << "no blue outline";
    this->cancel();
    Injector(this->s_desktop->connection()).release();
}

} // namespace

} // namespace snapvane::testing
