#include "X11TestDesktop.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <QApplication>

namespace snapvane {

namespace {

testing::VirtualDesktop* runningDesktop = nullptr;

testing::DesktopOptions desktopOptions() {
    testing::DesktopOptions options;
    options.screens = testing::ScreenSet::TwoSideBySide;
    options.screenSize = testScreenSize;
    if (const int depth = qEnvironmentVariableIntValue("SNAPVANE_TEST_DEPTH"); depth != 0) {
        options.depth = depth;
    }
    return options;
}

int runTests(int argumentCount, char** arguments) {
    testing::VirtualDesktop desktop(desktopOptions());
    runningDesktop = &desktop;
    const QProcessEnvironment environment = desktop.environment();
    for (const QString& name : environment.keys()) {
        qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}

} // namespace

testing::VirtualDesktop& testDesktop() {
    return *runningDesktop;
}

bool waitForEvents(const std::function<bool()>& condition) {
    return testing::waitUntil(
        [&condition] {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            return condition();
        },
        std::chrono::seconds(5), std::chrono::milliseconds(1));
}

void settle() {
    for (int i = 0; i < 30; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        testing::pause(std::chrono::milliseconds(10));
    }
}

} // namespace snapvane

int main(int argumentCount, char** arguments) {
    ::testing::InitGoogleTest(&argumentCount, arguments);
    return snapvane::runTests(argumentCount, arguments);
}
