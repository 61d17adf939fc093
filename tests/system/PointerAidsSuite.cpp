#include "PointerAidsSuite.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

/// The veil of a fresh installation.
constexpr double veilOpacity = 0.18;

bool isVeiled(QRgb desktop, QRgb glass) {
    const auto near = [](int background, int value) {
        return std::abs(value - background * (1 - veilOpacity)) <= 1.0;
    };
    return near(qRed(desktop), qRed(glass)) && near(qGreen(desktop), qGreen(glass)) &&
           near(qBlue(desktop), qBlue(glass));
}

/// How many pixels of `where` are not the desktop's under the veil.
int pixelsNotVeiled(const QImage& desktop, const QImage& glass, const QRegion& where) {
    int count = 0;
    for (const QRect& rect : where) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            const auto* behind = reinterpret_cast<const QRgb*>(desktop.constScanLine(y));
            const auto* seen = reinterpret_cast<const QRgb*>(glass.constScanLine(y));
            for (int x = rect.left(); x <= rect.right(); ++x) {
                count += isVeiled(behind[x], seen[x]) ? 0 : 1;
            }
        }
    }
    return count;
}

/// As Qt reads it: one factor a screen.
QString scaleFactors(const std::vector<double>& scales) {
    QStringList factors;
    for (const double scale : scales) {
        factors << QString::number(scale);
    }
    return factors.join(u';');
}

} // namespace

std::unique_ptr<VirtualDesktop> PointerAidsSuite::s_desktop;
std::unique_ptr<AgentProcess> PointerAidsSuite::s_agent;
std::vector<double> PointerAidsSuite::s_scales;
QImage PointerAidsSuite::s_background;

void PointerAidsSuite::startDesktop(const DesktopOptions& options) {
    s_desktop = std::make_unique<VirtualDesktop>(options);
    s_background = {};
}

void PointerAidsSuite::startTwoScreens(Compositor compositor) {
    DesktopOptions options;
    options.screens = ScreenSet::TwoSideBySide;
    options.screenSize = {1280, 720};
    options.compositor = compositor;
    startDesktop(options);
}

void PointerAidsSuite::startAgent(const QByteArray& preferences,
                                  const std::vector<double>& scales) {
    s_desktop->folders().write(u"config/Snapvane/Snapvane.conf"_s, "[General]\n" + preferences);
    s_scales = scales;
    AgentOptions options;
    options.variables = {{u"QT_SCREEN_SCALE_FACTORS"_s, scaleFactors(scales)}};
    s_agent = std::make_unique<AgentProcess>(*s_desktop, options);
}

void PointerAidsSuite::TearDownTestSuite() {
    s_agent.reset();
    s_desktop.reset();
}

void PointerAidsSuite::SetUp() {
    ASSERT_TRUE(s_desktop && s_agent) << "the suite has no desktop";
    ASSERT_TRUE(s_agent->process().isRunning()) << "the agent is gone";
    s_agent->clearPictures();
    logAtStart = s_agent->logMark();
}

void PointerAidsSuite::TearDown() {
    // A failed test must not spoil the next one.
    if (s_agent && HasFailure() && s_agent->overlayCount() > 0) {
        injector().release();
        injector().tapKey(XK_Escape);
        s_agent->waitForOverlayGone();
    }
}

QImage PointerAidsSuite::settledGlass() {
    require("the last notice to go",
            [] { return !probe().viewableWindowNamed(u"Snapvane Notice"_s).has_value(); });
    // Longer than a compositor that draws in software takes for one step of a fade.
    constexpr int calmMs = 300;
    return grabSettledScreen(desktop().connection(), desktop().rect(), calmMs);
}

const QImage& PointerAidsSuite::background() {
    if (s_background.isNull()) {
        s_background = settledGlass();
    }
    return s_background;
}

void PointerAidsSuite::beginSelection(const QPoint& pointer) {
    // A notice would stand on the desktop that the loupe shows.
    require("the last notice to go",
            [] { return !probe().viewableWindowNamed(u"Snapvane Notice"_s).has_value(); });
    (void)background();
    injector().moveTo(pointer);
    agent().activateAction(u"capture-area"_s);
    agent().waitForOverlay();
}

void PointerAidsSuite::cancel(const QImage& before) {
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_TRUE(loupe().isGone());
    EXPECT_TRUE(lines().areGone());
    QImage glass;
    waitUntil(
        [&] {
            glass = grabScreen(desktop().connection(), desktop().rect());
            return glass == before;
        },
        std::chrono::seconds(3), std::chrono::milliseconds(30));
    EXPECT_TRUE(samePicture(before, glass, u"pointer-aids-after"_s));
}

void PointerAidsSuite::expectAidsAt(const QPoint& pointer, const QImage& before) {
    EXPECT_TRUE(loupe().shows(pointer, before));
    EXPECT_TRUE(lines().show(pointer));
}

void PointerAidsSuite::expectVeiledDesktop(const QImage& before) {
    int left = -1;
    waitUntil(
        [&] {
            QRegion bare = desktop().rect();
            for (const QRect& line : lines().windows()) {
                bare -= line;
            }
            const QRect loupeRect = loupe().window().value_or(QRect());
            // Nothing of the loupe reaches into the corners of its window.
            const QRect corner(QPoint(0, 0), loupeRect.size() / 32);
            bare -= loupeRect;
            bare += corner.translated(loupeRect.topLeft());
            bare += corner.translated(loupeRect.right() - corner.width() + 1, loupeRect.top());
            const QImage glass = grabScreen(desktop().connection(), desktop().rect());
            left = pixelsNotVeiled(before, glass, bare & desktop().rect());
            return left == 0;
        },
        std::chrono::seconds(3), std::chrono::milliseconds(50));
    EXPECT_EQ(left, 0) << "pixels are not the desktop's under the veil";
}

QImage PointerAidsSuite::takePicture() {
    QImage picture(agent().waitForPicture());
    require("the notice of the picture",
            [] { return probe().viewableWindowNamed(u"Snapvane Notice"_s).has_value(); });
    return picture;
}

void PointerAidsSuite::expectExactDrag(const QPoint& from, const QPoint& to, const QRect& rect,
                                       const QString& name, const QImage& before) {
    injector().dragTo(from, to);
    // Loupe and lines are on the glass when the button goes up.
    expectAidsAt(to, before);
    injector().release();
    EXPECT_TRUE(samePicture(before.copy(rect), takePicture(), name));
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_TRUE(loupe().isGone());
    EXPECT_TRUE(lines().areGone());
}

} // namespace snapvane::testing
