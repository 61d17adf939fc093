// What the pictures of the screen for the loupe cost, on a virtual desktop of 3840 × 2160 without a
// compositor: with nothing of ours on it, and with windows of ours to be left out.

#include "VirtualDesktop.h"

#include "capture/DisplaySnapshotStore.h"
#include "capture/StableCopy.h"
#include "platform/x11/X11Capturer.h"
#include "platform/x11/X11Screens.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace snapvane::bench {

namespace {

constexpr int rounds = 41;

/// Prints the median of the rounds.
void measure(const char* name, const std::function<void()>& work) {
    std::vector<double> times;
    work();
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    std::printf("%-44s %9.2f ms\n", name, times[rounds / 2]);
}

QCoro::Task<> quitAfter(QCoro::Task<DisplaySnapshotList> task, QEventLoop* loop) {
    const DisplaySnapshotList taken = co_await task;
    if (taken.size() != 1) {
        std::fprintf(stderr, "%zu snapshots instead of one\n", taken.size());
    }
    loop->quit();
}

void takeSnapshots(const DisplaySnapshotStore::Facilities& facilities) {
    QEventLoop loop;
    const auto taking = quitAfter(DisplaySnapshotStore::captureAllDisplays(facilities), &loop);
    loop.exec();
}

/// A window of ours that has been on the screen for a moment.
std::unique_ptr<QWidget> shownWindow(QSize size) {
    auto window = std::make_unique<QWidget>(nullptr, Qt::Window | Qt::BypassWindowManagerHint);
    window->setGeometry(QRect(QPoint(300, 200), size));
    window->show();
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(10);
    }
    return window;
}

void measureAll() {
    x11::X11Screens screens;
    x11::X11Capturer capturer(screens);
    const auto frames = screens.nativeFrames();
    const DisplaySnapshotStore::Facilities facilities = {&capturer, &screens,
                                                         QStringLiteral("app.snapvane.Snapvane")};
    measure("grab", [&] { capturer.grabber().grab(frames.front(), frames); });
    measure("grab and stable copy",
            [&] { makeStableCopy(capturer.grabber().grab(frames.front(), frames)); });
    measure("list of windows", [&] { capturer.grabber().windows({}); });
    measure("snapshot, no window of ours", [&] { takeSnapshots(facilities); });
    {
        const auto window = shownWindow({600, 400});
        measure("snapshot, a window of 600 x 400", [&] { takeSnapshots(facilities); });
    }
    const auto window = shownWindow({3000, 1600});
    measure("snapshot, a window of 3000 x 1600", [&] { takeSnapshots(facilities); });
}

} // namespace

} // namespace snapvane::bench

int main(int argc, char* argv[]) {
    snapvane::testing::DesktopOptions options;
    options.screenSize = {3840, 2160};
    const snapvane::testing::VirtualDesktop desktop(options);
    const QProcessEnvironment environment = desktop.environment();
    for (const QString& name : environment.keys()) {
        qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Snapvane"));
    snapvane::bench::measureAll();
    return 0;
}
