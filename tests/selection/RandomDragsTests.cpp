#include "selection/PictureFixture.h"
#include "selection/SelectionOverlayWindow.h"
#include "selection/SessionFakes.h"

#include <gmock/gmock.h>

#include <random>

namespace snapvane {

namespace {

using Kind = OverlayPointerEvent::Kind;

/// Draws all that a drag needs from one seed, so that a failure can be told by it.
class Dice {
public:
    explicit Dice(unsigned seed) : m_engine(seed) {}

    int number(int from, int to) { return std::uniform_int_distribution(from, to)(m_engine); }
    template <typename Value> Value oneOf(std::initializer_list<Value> values) {
        return values.begin()[number(0, static_cast<int>(values.size()) - 1)];
    }

private:
    std::mt19937 m_engine;
};

constexpr PixelSize small{320, 200};
constexpr PixelSize smaller{240, 160};

/// A primary screen and one more beside it, somewhere, each with a scale of its own.
ScreenList randomScreens(Dice& dice) {
    const DevicePoint place = dice.oneOf<DevicePoint>(
        {{320, 0}, {320, 73}, {-240, 0}, {-240, -41}, {0, 200}, {55, -160}});
    const auto scale = [&dice] { return dice.oneOf({1.0, 1.25, 1.5, 2.0}); };
    return ScreenMapping::layOut({{1, QStringLiteral("Primary"), {{0, 0}, small}, scale(), {}},
                                  {2, QStringLiteral("Other"), {place, smaller}, scale(), {}}});
}

/// A place anywhere, often on a border, sometimes beyond one.
DevicePoint randomPlace(Dice& dice, const ScreenList& screens) {
    const DeviceRect& frame = screens[static_cast<std::size_t>(dice.number(0, 1))].nativeFrame;
    const auto along = [&dice](int start, int length) {
        switch (dice.number(0, 7)) {
        case 0:
            return start;
        case 1:
            return start + length - 1;
        case 2:
            return dice.oneOf({start - 15, start + length + 15});
        case 3:
            return dice.oneOf({start + 6, start + length - 7});
        default:
            return start + dice.number(0, length - 1);
        }
    };
    return {along(frame.origin.x, frame.size.width), along(frame.origin.y, frame.size.height)};
}

/// Mostly small moves, now and then a leap or none at all.
DevicePoint randomStep(Dice& dice, const ScreenList& screens, DevicePoint start, DevicePoint here) {
    switch (dice.number(0, 7)) {
    case 0:
        return randomPlace(dice, screens);
    case 1:
        return here;
    case 2: // To the other side of the start.
        return {2 * start.x - here.x, 2 * start.y - here.y};
    case 3:
        return {start.x, here.y};
    default:
        return {here.x + dice.number(-9, 9), here.y + dice.number(-9, 9)};
    }
}

/// One selection on its own two screens, whose surfaces are compared after each step.
class RandomDrag {
public:
    explicit RandomDrag(unsigned seed)
        : m_dice(seed), m_screens(randomScreens(m_dice)),
          m_window(m_host, {m_screens, testing::fixtureDim}) {
        m_window.open();
        m_window.makeKeyAndOrderFront();
    }

    ::testing::AssertionResult run() {
        const DevicePoint start = randomPlace(m_dice, m_screens);
        DevicePoint here = start;
        send(Kind::Moved, here);
        send(Kind::Down, here);
        auto result = surfacesEqualFullRepaint();
        for (int step = 0; step < 6 && result; ++step) {
            // Several events that are painted as one belong to it as well.
            for (int burst = m_dice.oneOf({1, 1, 3}); burst > 0; --burst) {
                here = randomStep(m_dice, m_screens, start, here);
                send(Kind::Dragged, here);
            }
            result = surfacesEqualFullRepaint();
        }
        send(Kind::Up, here);
        return result ? surfacesEqualFullRepaint() : result;
    }

private:
    void send(Kind kind, DevicePoint place) {
        m_window.overlayPointerEvent(testing::pointerEvent(kind, m_screens, place));
    }

    ::testing::AssertionResult surfacesEqualFullRepaint() {
        QCoreApplication::processEvents();
        for (std::size_t i = 0; i < m_screens.size(); ++i) {
            const SelectionPicture picture = m_window.contentView().picture(m_screens[i]);
            if (m_host.session->surfaces[i] != testing::paintedWhole(picture)) {
                const GlobalRect& selection = m_window.contentView().currentSelection();
                return ::testing::AssertionFailure()
                       << "screen " << i << " at scale " << m_screens[i].backingScale
                       << ", selection " << selection.minX() << ',' << selection.minY() << ' '
                       << selection.width() << " x " << selection.height();
            }
        }
        return ::testing::AssertionSuccess();
    }

    Dice m_dice;
    ScreenList m_screens;
    null::NullOverlayHost m_host;
    SelectionOverlayWindow m_window;
};

TEST(RandomDrags, PaintingWhatChangedEqualsAFullRepaint) {
    for (unsigned seed = 1; seed <= 1200; ++seed) {
        ASSERT_TRUE(RandomDrag(seed).run()) << "seed " << seed;
    }
}

/// What one step paints, as the session sees it.
TEST(RandomDrags, ATypicalStepPaintsLittle) {
    const ScreenList screens =
        ScreenMapping::layOut({{1, QStringLiteral("S"), {{0, 0}, {1280, 800}}, 1.25, {}}});
    null::NullOverlayHost host;
    SelectionOverlayWindow window(host, {screens, testing::fixtureDim});
    ASSERT_TRUE(window.open());
    window.makeKeyAndOrderFront();
    const auto send = [&](Kind kind, DevicePoint place) {
        window.overlayPointerEvent(testing::pointerEvent(kind, screens, place));
        QCoreApplication::processEvents();
    };
    send(Kind::Down, {100, 100});
    EXPECT_TRUE(host.session->painted.empty()) << "a press changes nothing";
    send(Kind::Dragged, {900, 600});
    for (int step = 1; step <= 20; ++step) {
        const std::size_t before = host.session->painted.size();
        send(Kind::Dragged, {900 + 7 * step, 600 + 5 * step});
        ASSERT_EQ(host.session->painted.size(), before + 1);
        EXPECT_LT(testing::pixelCount(host.session->painted.back()), 1280 * 800 / 20);
    }
}

} // namespace

} // namespace snapvane
