#include "SnapshotFixture.h"

#include <string>

namespace snapvane {

namespace {

using testing::Compositor;

/// Other programs' windows and one of ours between them.
struct Scene {
    const char* name;
    std::vector<ForeignWindow::Options> below;
    QRect own;
    bool ownTranslucent = false;
    std::vector<ForeignWindow::Options> above = {};
    /// Of a channel: blending rounds.
    int tolerance = 0;
    bool ownHidden = false;
};

ForeignWindow::Options patterned(const QRect& rect, std::uint32_t seed) {
    ForeignWindow::Options options;
    options.rect = rect;
    options.seed = seed;
    return options;
}

ForeignWindow::Options bordered(const QRect& rect, std::uint32_t seed, int border) {
    ForeignWindow::Options options = patterned(rect, seed);
    options.border = border;
    return options;
}

ForeignWindow::Options shaped(const QRect& rect, std::uint32_t seed) {
    ForeignWindow::Options options = patterned(rect, seed);
    const QRect inside(QPoint(0, 0), rect.size());
    options.shape = QRegion(inside, QRegion::Ellipse) - QRegion(inside.center().x(), 0, 30, 90);
    return options;
}

ForeignWindow::Options seeThrough(const QRect& rect, std::uint32_t argb) {
    ForeignWindow::Options options;
    options.rect = rect;
    options.argb = argb;
    return options;
}

ForeignWindow::Options faint(const QRect& rect, std::uint32_t seed, double opacity) {
    ForeignWindow::Options options = patterned(rect, seed);
    options.opacity = opacity;
    return options;
}

const QRect middle(200, 150, 300, 240);
const QRect around(120, 100, 500, 400);

std::vector<Scene> scenes() {
    return {
        {"Root", {}, middle},
        {"AboveAWindow", {patterned(around, 3)}, middle},
        {"AboveSeveral",
         {patterned(around, 3), patterned({300, 50, 100, 600}, 4),
          patterned({250, 300, 90, 20}, 5)},
         middle},
        {"BesideAWindow", {patterned({700, 100, 200, 200}, 3)}, middle},
        {"BelowAWindow",
         {patterned(around, 3)},
         middle,
         false,
         {patterned({260, 200, 60, 50}, 6), patterned({450, 300, 200, 200}, 7)}},
        {"WhollyBelowAWindow",
         {patterned(around, 3)},
         middle,
         false,
         {patterned(around, 4)},
         0,
         true},
        {"PartlyOffTheLeftAndTop", {patterned({-50, -40, 300, 300}, 3)}, {-70, -60, 200, 180}},
        {"PartlyOffTheRightAndBottom",
         {patterned({2400, 700, 300, 300}, 3)},
         {2450, 650, 200, 300}},
        {"AcrossTwoScreens", {patterned({1100, 300, 400, 200}, 3)}, {1180, 250, 200, 300}},
        {"CoveringEverything", {patterned(around, 3)}, {0, 0, 2560, 800}},
        {"AboveABorder", {bordered(around, 3, 9)}, {100, 80, 300, 100}},
        {"BelowABorder", {}, middle, false, {bordered({250, 200, 100, 80}, 3, 12)}},
        {"AboveAShapedWindow", {patterned({0, 0, 900, 700}, 2), shaped(around, 3)}, middle},
        {"BelowAShapedWindow", {}, middle, false, {shaped({250, 170, 200, 200}, 3)}},
        {"AboveASeeThroughWindow", {seeThrough(around, 0x80402010)}, middle, false, {}, 2},
        {"AboveASeeThroughWindowOnAnother",
         {patterned({0, 0, 900, 700}, 2), seeThrough(around, 0x60005020)},
         middle,
         false,
         {},
         2},
        {"BelowASeeThroughWindow",
         {patterned(around, 3)},
         middle,
         false,
         {seeThrough({250, 170, 400, 150}, 0x80102040)},
         2},
        {"AboveAFaintWindow", {faint(around, 3, 0.5)}, middle, false, {}, 2},
        {"BelowAFaintWindow",
         {patterned(around, 3)},
         middle,
         false,
         {faint({250, 170, 400, 150}, 4, 0.25)},
         2},
        {"SeeThroughAboveAWindow", {patterned(around, 3)}, middle, true},
    };
}

struct Setting {
    Compositor compositor;
    Scene scene;
};

std::vector<Setting> settings() {
    std::vector<Setting> all;
    for (const Compositor compositor :
         {Compositor::None, Compositor::Picom, Compositor::Xcompmgr}) {
        for (const Scene& scene : scenes()) {
            all.push_back({compositor, scene});
        }
    }
    return all;
}

const char* nameOf(Compositor compositor) {
    switch (compositor) {
    case Compositor::None:
        return "Plain";
    case Compositor::Picom:
        return "Picom";
    default:
        return "Xcompmgr";
    }
}

/// How a failure shows a setting.
void PrintTo(const Setting& setting, std::ostream* stream) {
    *stream << setting.scene.name;
}

std::string settingName(const ::testing::TestParamInfo<Setting>& info) {
    return std::string(nameOf(info.param.compositor)) + info.param.scene.name;
}

/// On a desktop with the compositor of the setting. It stays from one test to the next, for as long
/// as that wants the same one: starting it takes longer than the test.
class SnapshotSceneTest : public SnapshotTest, public ::testing::WithParamInterface<Setting> {
public:
    SnapshotSceneTest() {
        if (GetParam().compositor == s_running) {
            return;
        }
        stopCompositor();
        if (composited()) {
            testDesktop().startCompositor(GetParam().compositor);
            settle();
        }
        s_running = GetParam().compositor;
    }
    static void TearDownTestSuite() { stopCompositor(); }

protected:
    static bool composited() { return GetParam().compositor != Compositor::None; }

    static void stopCompositor() {
        if (std::exchange(s_running, Compositor::None) != Compositor::None) {
            testDesktop().stopCompositor();
            waitForEvents([] { return !x11::hasCompositor(x11::qtServer()); });
        }
    }

    static ForeignWindows show(const std::vector<ForeignWindow::Options>& options) {
        ForeignWindows windows;
        for (const ForeignWindow::Options& each : options) {
            windows.push_back(std::make_unique<ForeignWindow>(each));
        }
        return windows;
    }

    static void putBelow(xcb_window_t window, xcb_window_t sibling) {
        const std::array<std::uint32_t, 2> values = {sibling, XCB_STACK_MODE_BELOW};
        xcb_configure_window(connection(), window,
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             values.data());
        connection().sync();
    }

private:
    inline static Compositor s_running = Compositor::None;
};

} // namespace

TEST_P(SnapshotSceneTest, ShowsTheDesktopAsItWasWithoutOurWindow) {
    const Scene& scene = GetParam().scene;
    const ForeignWindows below = show(scene.below);
    const ForeignWindows above = show(scene.above);
    const QImage before = settledGlass();
    const auto own = showOwn(scene.own, scene.ownTranslucent && composited());
    if (!above.empty()) {
        putBelow(own->id(), above.front()->id());
    }
    const QImage now = settledGlass();
    EXPECT_EQ(largestDifference(before, now) == 0, scene.ownHidden) << "what is on the glass";
    const QImage taken = snapshot();
    EXPECT_TRUE(closePicture(before, taken, scene.tolerance, QString::fromLatin1(scene.name)));
    // The pixel by which the compositor is waited for goes a moment later.
    EXPECT_EQ(settledGlass(), now) << "taking the snapshot has changed the screen";
}

INSTANTIATE_TEST_SUITE_P(Everywhere, SnapshotSceneTest, ::testing::ValuesIn(settings()),
                         settingName);

} // namespace snapvane
