#include "app/SnapvaneApp.h"

#include "KeyboardShortcuts/HotKeyCenter.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "actions/CapturePreferences.h"
#include "app/AfterCapture.h"
#include "app/AppDelegate.h"
#include "app/ApplicationService.h"
#include "app/CaptureCoordinator.h"
#include "app/CaptureShortcutSwitch.h"
#include "app/QXAppVersion.h"
#include "app/TerminationSignals.h"
#include "base/AppIdentity.h"
#include "base/Async.h"
#include "base/AtomicFile.h"
#include "base/Log.h"
#include "base/UserDefaults.h"
#include "capture/CaptureFilename.h"
#include "capture/ScreenCapturePermissionManager.h"
#include "platform/PlatformLoader.h"
#include "selection/AppPreferences.h"
#include "selection/ScreenCenterOverlayManager.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <csignal>

#include <malloc.h>

namespace snapvane::SnapvaneApp {

namespace {

/// Captures allocate and free tens of megabytes at a time. Left to itself the allocator comes to
/// keep such blocks; an agent that sits in the tray all day gives them back.
void returnLargeBlocksToTheSystem() {
    constexpr int smallestMappedBlock = 256 * 1024;
    mallopt(M_MMAP_THRESHOLD, smallestMappedBlock);
    mallopt(M_TRIM_THRESHOLD, smallestMappedBlock);
    mallopt(M_ARENA_MAX, 2);
}

/// A display or a program at the other end that goes away is an error to be met where it shows, not
/// a reason to be killed. Programs that this one starts get the default back from Qt.
void ignoreBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

/// Arguments for Qt: the platform plugin that the backend needs, which is not to be inherited by
/// programs that this one starts, as an environment variable would be.
class QtArguments {
public:
    QtArguments(const char* program, const QByteArray& platform)
        : m_program(program), m_platform(platform) {}

    int& count() { return m_count; }
    char** values() { return m_values; }

private:
    QByteArray m_program;
    QByteArray m_option = "-platform";
    QByteArray m_platform;
    int m_count = 3;
    char* m_values[4] = {m_program.data(), m_option.data(), m_platform.data(), nullptr};
};

void describeApplication() {
    QApplication::setApplicationName(QLatin1String(productName));
    QApplication::setApplicationVersion(QXAppVersion::shortVersion());
    QApplication::setDesktopFileName(QLatin1String(applicationIdentifier));
    // Closing an alert or the settings must not end an agent.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon::fromTheme(QLatin1String(applicationIdentifier),
                                                 QIcon(QStringLiteral(":/icons/application.svg"))));
}

/// Lets captures that the user has already made come to their end.
void finishCaptures(const Log& log) {
    constexpr std::chrono::seconds patience(10);
    constexpr std::chrono::milliseconds turn(10);
    const QDeadlineTimer deadline(patience);
    while (CaptureCoordinator::shared().isBusy() || isActingOnCaptures()) {
        if (deadline.hasExpired()) {
            log.error(QStringLiteral("Leaving before a capture was finished."));
            return;
        }
        QEventLoop loop;
        QTimer::singleShot(turn, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

/// In the background: the folders may be on a slow disk.
void removeUnfinishedCaptures() {
    backgroundPool().start([folders = CapturePreferences::shared().saveFolders()] {
        for (const QString& folder : folders) {
            removeUnfinishedFiles(folder, CaptureFilename::pngFilenamePattern());
        }
    });
}

/// The program's global shortcuts, for as long as the object lives.
class InstalledShortcuts {
public:
    explicit InstalledShortcuts(Platform& platform)
        : m_center(platform.hotKeys()), m_named(UserDefaults::standard(), m_center) {
        KeyboardShortcuts::NamedShortcuts::install(&m_named);
    }
    ~InstalledShortcuts() { KeyboardShortcuts::NamedShortcuts::install(nullptr); }
    InstalledShortcuts(const InstalledShortcuts&) = delete;
    InstalledShortcuts& operator=(const InstalledShortcuts&) = delete;

    KeyboardShortcuts::NamedShortcuts& named() { return m_named; }

private:
    KeyboardShortcuts::HotKeyCenter m_center;
    KeyboardShortcuts::NamedShortcuts m_named;
};

int runOn(Platform& platform, const Log& log) {
    InstalledShortcuts shortcuts(platform);
    AppDelegate delegate({platform, CaptureCoordinator::shared(),
                          ScreenCapturePermissionManager::shared(), AppPreferences::shared(),
                          ScreenCenterOverlayManager::shared(), shortcuts.named(),
                          CaptureShortcutSwitch::shared()});
    ApplicationService service(delegate);
    switch (service.claim()) {
    case ApplicationService::Claim::First:
        break;
    case ApplicationService::Claim::AlreadyRunning:
        return EXIT_SUCCESS;
    case ApplicationService::Claim::NoBus:
        log.error(QStringLiteral("There is no session bus: other programs cannot start a capture "
                                 "and a second start is not noticed."));
        break;
    }
    removeUnfinishedCaptures();
    const TerminationSignals signals([] { QApplication::quit(); });
    QObject::connect(qApp, &QApplication::aboutToQuit,
                     [&delegate] { delegate.applicationWillTerminate(); });
    QMetaObject::invokeMethod(
        qApp, [&delegate] { delegate.applicationDidFinishLaunching(); }, Qt::QueuedConnection);
    const int status = QApplication::exec();
    // What still uses the platform ends before the platform does: an open selection, and captures
    // that are not saved yet.
    CaptureCoordinator::shared().overlayController().dismiss();
    stopAsking();
    endUploads();
    finishCaptures(log);
    backgroundPool().waitForDone();
    return status;
}

} // namespace

int run(int, char* argv[]) {
    returnLargeBlocksToTheSystem();
    ignoreBrokenPipes();
    installLogHandler();
    const Log log("Application");
    const PlatformLoader::Choice choice = PlatformLoader::choose();
    if (!choice.obstacle.isEmpty()) {
        log.error(choice.obstacle);
        return EXIT_FAILURE;
    }
    QtArguments arguments(argv[0], choice.qtPlatform);
    const QApplication application(arguments.count(), arguments.values());
    describeApplication();
    const auto platform = PlatformLoader::load(choice);
    Platform::install(platform.get());
    const int status = runOn(*platform, log);
    Platform::install(nullptr);
    return status;
}

} // namespace snapvane::SnapvaneApp
