// Where the time from the trigger to the painted overlay goes: every step by itself, in one process
// on a virtual desktop of 3840 × 2160, the loupe on. Prints medians. Without a compositor, or with
// one when called with the word "picom".

#include "ProcessFigures.h"
#include "VirtualDesktop.h"

#include "base/UserDefaults.h"
#include "capture/DisplaySnapshotStore.h"
#include "capture/StableCopy.h"
#include "platform/Platform.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Platform.h"
#include "selection/AppPreferences.h"
#include "selection/SelectionMagnifierController.h"
#include "selection/SelectionOverlayWindow.h"

#include <QApplication>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>
#include <map>

using namespace Qt::StringLiterals;

namespace snapvane::bench {

namespace {

constexpr int rounds = 15;

/// Times of each step, by its name.
using Times = std::map<QString, std::vector<double>>;

/// Runs a step and notes how long it took until the display server had worked it off.
template <typename Step> void timed(Times& times, const QString& name, Step step) {
    QElapsedTimer timer;
    timer.start();
    step();
    x11::roundTrip(x11::qtServer());
    times[name].push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
}

QImage screenshotOf(ScreenCapturer& capturer, const Screen& screen) {
    StreamConfiguration configuration;
    configuration.sourceRect = {{0, 0}, screen.frame.size};
    configuration.outputSize = screen.nativeSize();
    return QCoro::waitFor(capturer.screenshot({screen.id}, configuration));
}

void measureRound(Times& times, Platform& platform, AppPreferences& preferences,
                  SelectionMagnifierController& magnifier) {
    const ScreenList screens = platform.screens().list();
    DisplaySnapshotList snapshots;
    {
        QImage picture;
        timed(times, u"1 grab"_s,
              [&] { picture = screenshotOf(platform.capturer(), screens.front()); });
        timed(times, u"2 stable copy"_s, [&] { makeStableCopy(picture); });
    }
    timed(times, u"3 snapshots, with both"_s, [&] {
        snapshots = QCoro::waitFor(
            DisplaySnapshotStore::captureAllDisplays(DisplaySnapshotStore::Facilities::shared()));
    });
    SelectionOverlayWindow window(platform.overlays(), {screens, preferences.selectionDimAmount()});
    timed(times, u"4 surfaces made"_s, [&] { window.open(); });
    timed(times, u"5 surfaces shown, input taken"_s, [&] { window.makeKeyAndOrderFront(); });
    timed(times, u"6 loupe shown"_s, [&] {
        magnifier.prepare(snapshots);
        magnifier.update(platform.screens().pointerLocation(), {});
    });
    timed(times, u"7 loupe moved"_s, [&] { magnifier.update({500, 500}, {640, 480}); });
    timed(times, u"8 all taken away"_s, [&] {
        magnifier.dismiss();
        window.orderOut();
    });
}

void measure() {
    const std::unique_ptr<Platform> platform = x11::makeX11Platform();
    Platform::install(platform.get());
    const QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(u"Snapvane.conf"_s));
    AppPreferences preferences(defaults);
    Times times;
    {
        SelectionMagnifierController magnifier(preferences, platform->screens(),
                                               platform->sprites());
        for (int round = 0; round < rounds; ++round) {
            measureRound(times, *platform, preferences, magnifier);
        }
    }
    for (const auto& [name, values] : times) {
        std::printf("%-34s %8.2f ms\n", qUtf8Printable(name), median(values));
    }
    Platform::install(nullptr);
}

} // namespace

} // namespace snapvane::bench

int main(int argc, char* argv[]) {
    try {
        snapvane::testing::DesktopOptions options;
        options.screenSize = {3840, 2160};
        if (argc > 1 && std::string_view(argv[1]) == "picom") {
            options.compositor = snapvane::testing::Compositor::Picom;
        }
        const snapvane::testing::VirtualDesktop desktop(options);
        const QProcessEnvironment environment = desktop.environment();
        for (const QString& name : environment.keys()) {
            qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
        }
        qputenv("QT_QPA_PLATFORM", "xcb");
        const QApplication application(argc, argv);
        snapvane::bench::measure();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
