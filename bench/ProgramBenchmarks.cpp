// The whole program on a virtual desktop of 3840 × 2160 without a compositor: how long a user
// waits, and what the program costs while it is used and while it is not. Prints medians.

#include "AgentProcess.h"
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
constexpr int dragMoves = 200;

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

/// The program's own CPU time for each move of a drag.
double cpuPerMove(AgentProcess& agent, Injector& injector) {
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    injector.moveTo({400, 400});
    injector.press();
    const double before = cpuMilliseconds(agent.id());
    for (int i = 0; i < dragMoves; ++i) {
        injector.moveTo({600 + 10 * i, 500 + 5 * i});
        testing::pause(std::chrono::milliseconds(4));
    }
    const double used = cpuMilliseconds(agent.id()) - before;
    injector.moveTo({400, 400});
    injector.release();
    agent.waitForOverlayGone();
    return used / dragMoves;
}

void measure() {
    testing::DesktopOptions options;
    options.screenSize = {3840, 2160};
    const VirtualDesktop desktop(options);
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
    print("own CPU per drag move", cpuPerMove(agent, injector), "ms");
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
