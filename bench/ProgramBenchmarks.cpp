// The whole program on a virtual desktop of 3840 × 2160 without a compositor: how long a user
// waits, and what the program costs while it is used and while it is not, with the loupe and the
// guide lines on. Prints medians.

#include "AgentProcess.h"
#include "DamageWatch.h"
#include "Injector.h"
#include "ProcessFigures.h"
#include "ServerKeys.h"
#include "VirtualDesktop.h"
#include "Wait.h"
#include "X11Probe.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace snapvane::bench {

namespace {

using testing::AgentProcess;
using testing::Injector;
using testing::VirtualDesktop;

constexpr int rounds = 15;
constexpr int pointerMoves = 200;

void print(const char* name, double value, const char* unit) {
    std::printf("%-44s %9.2f %s\n", name, value, unit);
}

double milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// From the call on the bus to all overlay windows on the screen with the input held.
double triggerToOverlay(AgentProcess& agent) {
    QElapsedTimer timer;
    timer.start();
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    return milliseconds(timer);
}

/// From the release of the shortcut to the same.
double shortcutToOverlay(AgentProcess& agent, Injector& injector) {
    using namespace testing::serverKey;
    injector.pressKeyCode(control);
    injector.pressKeyCode(shift);
    injector.pressKeyCode(p);
    QElapsedTimer timer;
    timer.start();
    injector.releaseKeyCode(p);
    agent.waitForOverlay();
    const double elapsed = milliseconds(timer);
    injector.releaseKeyCode(shift);
    injector.releaseKeyCode(control);
    return elapsed;
}

/// From the release of the button to the finished file.
double releaseToFile(AgentProcess& agent, Injector& injector, const QRect& area) {
    agent.clearPictures();
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    injector.dragTo(area.topLeft(), area.bottomRight());
    QElapsedTimer timer;
    timer.start();
    injector.release();
    agent.waitForPicture();
    return milliseconds(timer);
}

/// What each move of the pointer costs during a selection.
struct MoveCost {
    /// Of the program and of the display server, injection included; milliseconds of CPU time.
    double own = 0;
    double server = 0;
    /// Painted into the overlay itself, the most at once and in the middle; pixels.
    double largestRectangle = 0;
    double pixels = 0;
};

MoveCost costPerMove(const VirtualDesktop& desktop, AgentProcess& agent, Injector& injector,
                     bool dragging) {
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    injector.moveTo({400, 400});
    if (dragging) {
        injector.press();
    }
    std::vector<xcb_window_t> overlays;
    for (const auto& window :
         testing::X11Probe(desktop.connection()).windowsNamed(u"Snapvane Selection"_s)) {
        overlays.push_back(window.id);
    }
    injector.moveTo({600, 500});
    testing::pause(std::chrono::milliseconds(100));
    testing::DamageWatch watch(desktop.display(), overlays);
    const double ownBefore = cpuMilliseconds(agent.id());
    const double serverBefore = cpuMilliseconds(desktop.serverId());
    for (int i = 0; i < pointerMoves; ++i) {
        injector.moveTo({600 + 10 * i, 500 + 5 * i});
        testing::pause(std::chrono::milliseconds(4));
    }
    testing::pause(std::chrono::milliseconds(100));
    MoveCost cost;
    cost.own = (cpuMilliseconds(agent.id()) - ownBefore) / pointerMoves;
    cost.server = (cpuMilliseconds(desktop.serverId()) - serverBefore) / pointerMoves;
    const auto painted = watch.news();
    cost.largestRectangle = static_cast<double>(painted.largestRectangle);
    cost.pixels = static_cast<double>(painted.pixels) / pointerMoves;
    if (dragging) {
        injector.moveTo({400, 400});
        injector.release();
    } else {
        injector.click({10, 10});
    }
    agent.waitForOverlayGone();
    return cost;
}

void print(const char* what, const MoveCost& cost) {
    std::printf("%s\n", what);
    print("  own CPU", cost.own, "ms");
    print("  display server's CPU", cost.server, "ms");
    print("  painted into the overlay", cost.pixels, "pixels");
    print("  largest rectangle of it", cost.largestRectangle, "pixels");
}

void measure() {
    testing::DesktopOptions options;
    options.screenSize = {3840, 2160};
    const VirtualDesktop desktop(options);
    desktop.folders().write(u"config/Snapvane/Snapvane.conf"_s,
                            "[General]\nshowCrosshairLinesWhileCapturing=true\n");
    AgentProcess agent(desktop);
    Injector injector(desktop.connection());
    testing::pause(std::chrono::seconds(2));
    print("idle, proportional set size", static_cast<double>(memoryKiB(agent.id(), "Pss")) / 1024,
          "MiB");
    print("idle, private dirty", static_cast<double>(memoryKiB(agent.id(), "Private_Dirty")) / 1024,
          "MiB");

    std::vector<double> shortcut;
    std::vector<double> overlay;
    std::vector<double> fullHd;
    std::vector<double> ultraHd;
    for (int round = 0; round < rounds; ++round) {
        shortcut.push_back(shortcutToOverlay(agent, injector));
        injector.click({10, 10});
        agent.waitForOverlayGone();
        overlay.push_back(triggerToOverlay(agent));
        injector.click({10, 10});
        agent.waitForOverlayGone();
        fullHd.push_back(releaseToFile(agent, injector, {100, 100, 1920, 1080}));
        agent.waitForOverlayGone();
        ultraHd.push_back(releaseToFile(agent, injector, desktop.rect()));
        agent.waitForOverlayGone();
    }
    print("shortcut released to overlay with input", median(shortcut), "ms");
    print("bus call to overlay with input", median(overlay), "ms");
    print("release to file, 1920 x 1080, noise", median(fullHd), "ms");
    print("release to file, 3840 x 2160, noise", median(ultraHd), "ms");
    print("each pointer move, loupe and lines on", costPerMove(desktop, agent, injector, false));
    print("each drag move, loupe and lines on", costPerMove(desktop, agent, injector, true));
}

} // namespace

} // namespace snapvane::bench

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    try {
        snapvane::bench::measure();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
