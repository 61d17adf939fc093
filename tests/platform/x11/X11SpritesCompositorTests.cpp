// Sprites on a desktop whose windows are composited, and faded in and out.

#include "SpriteFixture.h"
#include "support/ChildProcess.h"
#include "support/ServerResources.h"

#include <csignal>

#include <unistd.h>

namespace snapvane {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::Compositor;

/// Longer than fading in takes anywhere here.
constexpr auto patience = 8s;
/// A frame or two and some leeway; the slow compositor's windows take many times that to fade out.
constexpr auto atOnce = 700ms;

/// A compositor whose windows come at once and take ten seconds to go.
constexpr char slowPicom[] = R"(backend = "xrender";
shadow = true;
fading = true;
fade-in-step = 1.0;
fade-out-step = 0.001;
fade-delta = 10;
unredir-if-possible = false;
)";

/// The one that the support knows as fading stops in mid-fade when nothing else happens, so that
/// xcompmgr runs without fades here.
enum class Kind { Picom, PicomFading, PicomSlow, Xcompmgr, XcompmgrShadows };

class RunningCompositor {
public:
    explicit RunningCompositor(Kind kind) {
        const testing::DesktopFolders& folders = testDesktop().folders();
        switch (kind) {
        case Kind::Picom:
            testDesktop().startCompositor(Compositor::Picom);
            break;
        case Kind::PicomFading:
            testDesktop().startCompositor(Compositor::PicomFading);
            break;
        case Kind::PicomSlow:
            folders.write(u"slow-picom.conf"_s, slowPicom);
            start(u"picom"_s, {u"--config"_s, folders.path(u"slow-picom.conf"_s)});
            break;
        case Kind::Xcompmgr:
            testDesktop().startCompositor(Compositor::Xcompmgr);
            break;
        case Kind::XcompmgrShadows:
            start(u"xcompmgr"_s, {u"-c"_s});
            break;
        }
    }
    ~RunningCompositor() { stop(); }
    RunningCompositor(const RunningCompositor&) = delete;
    RunningCompositor& operator=(const RunningCompositor&) = delete;

    /// Of the slow one: it is kept from working, as on a machine that has much to do.
    void suspend() { m_process->sendSignal(SIGSTOP); }
    void resume() { m_process->sendSignal(SIGCONT); }

    void stop() {
        m_process.reset();
        testDesktop().stopCompositor();
        waitForEvents([] { return !x11::hasCompositor(x11::qtServer()); });
    }

private:
    void start(const QString& program, const QStringList& arguments) {
        testing::ChildProcess::Spec spec;
        spec.program = program;
        spec.arguments = arguments;
        spec.environment = testDesktop().environment();
        spec.outputFile = testDesktop().folders().log(program);
        m_process = std::make_unique<testing::ChildProcess>(spec);
        testing::require("a compositor", [] { return x11::hasCompositor(x11::qtServer()); });
    }

    std::unique_ptr<testing::ChildProcess> m_process;
};

/// A compositor that has announced itself may not yet draw anything. What is transparent is black
/// until it does.
void requireCompositing(x11::X11Sprites& sprites, const Screen& screen) {
    const auto probe = sprites.createImage({u"Sprite Probe"_s, 5});
    QImage nothing(64, 64, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    testing::require("a compositor that draws", [&] {
        probe->showAt(screen, {500, 500}, {nothing, {}});
        const QImage shown = SpriteTest::glass({500, 500, 64, 64});
        return (shown.pixel(5, 5) & RGB_MASK) == testing::patternPixel(505, 505);
    });
    probe->hide();
    testing::pause(100ms);
}

class X11SpritesComposited : public SpriteTest, public ::testing::WithParamInterface<Kind> {
protected:
    X11SpritesComposited() { requireCompositing(m_sprites, screen()); }

    /// Shows line and loupe and waits until they are really there.
    void showBoth(SolidSprite& line, ImageSprite& loupe) {
        line.showAt(screen(), {300, 0, 2, 800});
        loupe.showAt(screen(1), {100, 200}, plainPicture({160, 164}, 0xff00ff00));
        ASSERT_TRUE(isFilled({300, 0, 2, 800}, spriteColor));
        ASSERT_TRUE(isFilled({1380, 200, 160, 164}, 0xff00ff00));
    }
    /// Whether the area becomes all of that colour.
    static bool isFilled(const QRect& area, QRgb color) {
        QImage expected(area.size(), QImage::Format_RGB32);
        expected.fill(color);
        return testing::waitUntil(
            [&] {
                QCoreApplication::processEvents();
                return glass(area) == expected;
            },
            patience);
    }
    /// Whether nothing comes back for as long as anything might still be going on.
    static bool staysSo(const QImage& expected) {
        bool clean = true;
        testing::waitUntil(
            [&] {
                QCoreApplication::processEvents();
                clean = clean && glass(everything()) == expected;
                return !clean;
            },
            1200ms);
        return clean;
    }

    // Before the sprites, after the desktop's picture was taken.
    RunningCompositor m_compositor{GetParam()};
};

std::string nameOf(const ::testing::TestParamInfo<Kind>& tested) {
    constexpr const char* names[] = {"Picom", "PicomFading", "PicomSlow", "Xcompmgr",
                                     "XcompmgrShadows"};
    return names[static_cast<int>(tested.param)];
}

INSTANTIATE_TEST_SUITE_P(Compositors, X11SpritesComposited,
                         ::testing::Values(Kind::Picom, Kind::PicomFading, Kind::PicomSlow,
                                           Kind::Xcompmgr, Kind::XcompmgrShadows),
                         nameOf);

/// No shadow of the compositor's either.
TEST_P(X11SpritesComposited, ASolidOneShowsItsColourAndNothingElse) {
    const auto line = solid("Sprite Line");
    line->showAt(screen(), {300, 0, 2, 800});
    EXPECT_TRUE(isBecoming(desktopWith(QRect(300, 0, 2, 800)), patience));
}

TEST_P(X11SpritesComposited, AnImageShowsItsPixelsAndNothingElse) {
    const auto loupe = image("Sprite Loupe");
    EXPECT_TRUE(loupe->isTranslucent());
    const auto picture = patternPicture({160, 164});
    loupe->showAt(screen(1), {100, 200}, picture);
    EXPECT_TRUE(isBecoming(desktopWith({1380, 200}, picture.image), patience));
}

TEST_P(X11SpritesComposited, LetTheDesktopShineThrough) {
    const auto loupe = image("Sprite Loupe");
    QImage picture(160, 164, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    for (int y = 50; y < 100; ++y) {
        for (int x = 0; x < 160; ++x) {
            picture.setPixel(x, y, qPremultiply(qRgba(100, 0, 50, x + 60)));
        }
    }
    loupe->showAt(screen(), {100, 200}, {picture, {{{60, 60, 10, 10}, 0}}});
    const auto isBlended = [this, &picture] {
        const QImage shown = glass(everything());
        for (int y = 0; y < 164; ++y) {
            for (int x = 0; x < 160; ++x) {
                const QColor below = bare().pixelColor(100 + x, 200 + y);
                const QRgb over = picture.pixel(x, y);
                const double rest = 1 - qAlpha(over) / 255.0;
                const QColor seen = shown.pixelColor(100 + x, 200 + y);
                if (std::abs(seen.red() - (qRed(over) + rest * below.red())) > 3 ||
                    std::abs(seen.green() - (qGreen(over) + rest * below.green())) > 3 ||
                    std::abs(seen.blue() - (qBlue(over) + rest * below.blue())) > 3) {
                    return false;
                }
            }
        }
        return true;
    };
    EXPECT_TRUE(testing::waitUntil(isBlended, patience));
}

TEST_P(X11SpritesComposited, MovedTheyLeaveNothingBehind) {
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    showBoth(*line, *loupe);
    const auto picture = patternPicture({160, 164});
    for (int x = 300; x < 700; x += 7) {
        line->showAt(screen(), {x, 0, 2, 800});
        loupe->showAt(screen(), {x + 18, 300}, picture);
    }
    line->showAt(screen(), {1100, 0, 2, 800});
    loupe->showAt(screen(), {800, 300}, picture);
    const QRect way(0, 0, 1060, 800);
    const QImage expected = desktopWith({800, 300}, picture.image).copy(way);
    EXPECT_TRUE(testing::waitUntil([&] { return glass(way) == expected; }, atOnce));
}

TEST_P(X11SpritesComposited, HiddenTheyAreGoneAtOnceAndForGood) {
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    showBoth(*line, *loupe);
    line->hide();
    loupe->hide();
    EXPECT_FALSE(line->isVisible());
    EXPECT_FALSE(loupe->isVisible());
    EXPECT_TRUE(isBecoming(bare(), atOnce));
    EXPECT_TRUE(staysSo(bare()));
    EXPECT_FALSE(windowOf("Sprite Line").has_value());
    EXPECT_FALSE(windowOf("Sprite Loupe").has_value());
}

TEST_P(X11SpritesComposited, DestroyedTheyAreGoneAtOnceAndForGood) {
    auto line = solid("Sprite Line");
    auto loupe = image("Sprite Loupe");
    showBoth(*line, *loupe);
    line.reset();
    loupe.reset();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
    EXPECT_TRUE(staysSo(bare()));
    const testing::X11Probe probe(testDesktop().connection());
    EXPECT_TRUE(probe.windowsNamed(u"Sprite Line"_s).empty());
    EXPECT_TRUE(probe.windowsNamed(u"Sprite Loupe"_s).empty());
}

/// As lines are when the screens change.
TEST_P(X11SpritesComposited, HiddenAndDestroyedRightAfterTheyAreGoneAtOnce) {
    auto line = solid("Sprite Line");
    auto loupe = image("Sprite Loupe");
    showBoth(*line, *loupe);
    line->hide();
    loupe->hide();
    line.reset();
    loupe.reset();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
    EXPECT_TRUE(staysSo(bare()));
}

TEST_P(X11SpritesComposited, ShownAgainSoonTheyStay) {
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    showBoth(*line, *loupe);
    line->hide();
    loupe->hide();
    ASSERT_TRUE(isBecoming(bare(), atOnce));
    showBoth(*line, *loupe);
    // For longer than it takes until a hidden one is unmapped.
    const QImage shown = glass(everything());
    EXPECT_TRUE(staysSo(shown));
    EXPECT_TRUE(windowOf("Sprite Line").has_value());
}

TEST_P(X11SpritesComposited, HiddenTwiceInHalfASecondTheyAreGoneInTheEnd) {
    const auto line = solid("Sprite Line");
    line->showAt(screen(), {300, 0, 2, 800});
    line->hide();
    line->showAt(screen(), {400, 0, 2, 800});
    ASSERT_TRUE(isFilled({400, 0, 2, 800}, spriteColor));
    line->hide();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
    EXPECT_TRUE(waitForEvents([] { return !windowOf("Sprite Line").has_value(); }));
}

TEST_P(X11SpritesComposited, ANewOneReplacesOneThatIsSeen) {
    auto line = solid("Sprite Line");
    line->showAt(screen(), {300, 0, 2, 800});
    ASSERT_TRUE(isFilled({300, 0, 2, 800}, spriteColor));
    line = solid("Sprite Line");
    line->showAt(screen(), {400, 0, 2, 800});
    const QRect before(0, 0, 360, 800);
    EXPECT_TRUE(testing::waitUntil([&] { return glass(before) == bare().copy(before); }, atOnce));
    EXPECT_TRUE(isFilled({400, 0, 2, 800}, spriteColor));
}

TEST_P(X11SpritesComposited, ChangeTheirSize) {
    const auto loupe = image("Sprite Loupe");
    for (const QSize size : {QSize(160, 164), QSize(320, 328), QSize(160, 164)}) {
        const auto picture = patternPicture(size);
        loupe->showAt(screen(1), {20, 30}, picture);
        EXPECT_TRUE(isBecoming(desktopWith({1300, 30}, picture.image), patience)) << size.width();
    }
}

TEST_P(X11SpritesComposited, WithoutTheCompositorTheyAreOpaqueFromTheNextShowingOn) {
    const auto loupe = image("Sprite Loupe");
    const auto picture = patternPicture({160, 164});
    loupe->showAt(screen(), {20, 30}, picture);
    m_compositor.stop();
    EXPECT_TRUE(loupe->isTranslucent()) << "settled while it is seen";
    loupe->showAt(screen(), {21, 30}, picture);
    EXPECT_TRUE(loupe->isVisible());
    loupe->hide();
    EXPECT_FALSE(loupe->isTranslucent());
    loupe->showAt(screen(), {20, 30}, picture);
    EXPECT_EQ(glass(everything()), desktopWith({20, 30}, picture.image));
    loupe->hide();
    EXPECT_EQ(glass(everything()), bare());
}

TEST_P(X11SpritesComposited, LeaveNothingInTheServer) {
    const auto use = [this](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            auto line = solid("Sprite Line");
            auto loupe = image("Sprite Loupe");
            line->showAt(screen(), {300 + i, 0, 5, 800});
            loupe->showAt(screen(), {i, 200}, patternPicture({160, 164}));
            if (i % 2 == 0) {
                loupe->hide();
            }
        }
    };
    const auto resources = [] {
        x11::roundTrip(x11::qtServer());
        return testing::serverResourcesOf(testDesktop().connection(), getpid());
    };
    // What the test before has left is gone a little later.
    staysSo(bare());
    const auto before = resources();
    EXPECT_FALSE(before.empty());
    use(10);
    EXPECT_TRUE(waitForEvents([&] { return resources() == before; }));
}

class X11SpritesBetween : public SpriteTest {};

TEST_F(X11SpritesBetween, ACompositorThatIsStartedMeansTransparencyFromTheNextShowingOn) {
    const auto loupe = image("Sprite Loupe");
    const auto picture = patternPicture({160, 164});
    loupe->showAt(screen(), {20, 30}, picture);
    ASSERT_FALSE(loupe->isTranslucent());
    const RunningCompositor compositor(Kind::Picom);
    requireCompositing(m_sprites, screen());
    EXPECT_FALSE(loupe->isTranslucent()) << "settled while it is seen";
    loupe->showAt(screen(), {40, 50}, picture);
    EXPECT_TRUE(isBecoming(desktopWith({40, 50}, picture.image), patience));
    loupe->hide();
    EXPECT_TRUE(loupe->isTranslucent());
    loupe->showAt(screen(), {60, 70}, plainPicture({160, 164}, 0));
    EXPECT_TRUE(isBecoming(bare(), patience)) << "all transparent";
    loupe->showAt(screen(), {60, 70}, picture);
    EXPECT_TRUE(isBecoming(desktopWith({60, 70}, picture.image), patience));
    loupe->hide();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
}

/// A compositor that hears of several things in one go looks only at the last state of a window.
class X11SpritesBusyCompositor : public SpriteTest {
protected:
    X11SpritesBusyCompositor() {
        requireCompositing(m_sprites, screen());
        m_line->showAt(screen(), {300, 0, 2, 800});
        m_loupe->showAt(screen(), {400, 200}, plainPicture({160, 164}, 0xff00ff00));
        testing::require("the sprites", [] {
            return (glass({300, 799, 1, 1}).pixel(0, 0) & RGB_MASK) == (spriteColor & RGB_MASK) &&
                   (glass({559, 363, 1, 1}).pixel(0, 0) & RGB_MASK) == 0x00ff00;
        });
        m_compositor.suspend();
    }
    void resume() {
        x11::roundTrip(x11::qtServer());
        m_compositor.resume();
    }

    RunningCompositor m_compositor{Kind::PicomSlow};
    std::unique_ptr<SolidSprite> m_line = solid("Sprite Line");
    std::unique_ptr<ImageSprite> m_loupe = image("Sprite Loupe");
};

TEST_F(X11SpritesBusyCompositor, HiddenTheyAreGoneWhenItLooks) {
    m_line->hide();
    m_loupe->hide();
    resume();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
}

TEST_F(X11SpritesBusyCompositor, DestroyedTheyAreGoneWhenItLooks) {
    m_line.reset();
    m_loupe.reset();
    resume();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
}

TEST_F(X11SpritesBusyCompositor, HiddenAndDestroyedTheyAreGoneWhenItLooks) {
    m_line->hide();
    m_loupe->hide();
    m_line.reset();
    m_loupe.reset();
    resume();
    EXPECT_TRUE(isBecoming(bare(), atOnce));
}

/// A hidden sprite is only moved away at first; that must not be forgotten with its compositor.
TEST_F(X11SpritesBetween, ACompositorThatEndsAfterAHidingLeavesNothing) {
    const auto line = solid("Sprite Line");
    {
        const RunningCompositor compositor(Kind::Picom);
        requireCompositing(m_sprites, screen());
        line->showAt(screen(), {300, 0, 2, 800});
        ASSERT_TRUE(isBecoming(desktopWith(QRect(300, 0, 2, 800)), patience));
        line->hide();
    }
    EXPECT_TRUE(isBecoming(bare(), 3000ms));
    EXPECT_TRUE(waitForEvents([] { return !windowOf("Sprite Line").has_value(); }));
    line->showAt(screen(), {310, 0, 2, 800});
    EXPECT_EQ(glass(everything()), desktopWith(QRect(310, 0, 2, 800)));
}

} // namespace

} // namespace snapvane
