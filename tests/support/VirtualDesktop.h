#pragma once

#include "ChildProcess.h"
#include "DesktopFolders.h"
#include "XcbConnection.h"

#include <QProcessEnvironment>
#include <QSize>

#include <memory>

namespace snapvane::testing {

enum class Compositor { None, Picom, PicomFading, PicomGlFading, Xcompmgr, XcompmgrFading };
enum class ScreenSet { One, TwoSideBySide };
enum class TrayHost { None, Trayer };
enum class SessionBus { No, Yes };
enum class WindowManager { None, Openbox };

struct DesktopOptions {
    ScreenSet screens = ScreenSet::One;
    /// Of each screen, in native pixels.
    QSize screenSize = {1920, 1080};
    int depth = 24;
    WindowManager windowManager = WindowManager::Openbox;
    Compositor compositor = Compositor::None;
    TrayHost trayHost = TrayHost::None;
    SessionBus sessionBus = SessionBus::Yes;
};

/// A whole desktop of its own for a test: X server, session bus, window manager, compositor and
/// tray as asked, private folders, and a picture on the root window in which every pixel is
/// different. The constructor returns when all of it is ready and throws std::runtime_error naming
/// what is not; the destructor ends it all. Several may stand at the same time. Test thread only.
class VirtualDesktop {
public:
    explicit VirtualDesktop(const DesktopOptions& options = {});
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;

    [[nodiscard]] QString display() const { return m_display; }
    [[nodiscard]] QString busAddress() const;
    /// What a program needs in order to run on this desktop.
    [[nodiscard]] QProcessEnvironment environment() const;
    [[nodiscard]] const DesktopFolders& folders() const { return m_folders; }
    [[nodiscard]] const XcbConnection& connection() const { return *m_connection; }
    [[nodiscard]] QRect rect() const { return m_connection->rootRect(); }
    /// The one that it was started with.
    [[nodiscard]] Compositor compositor() const { return m_options.compositor; }
    [[nodiscard]] pid_t serverId() const { return m_server->id(); }
    /// One screen's place, from the left, in native pixels.
    [[nodiscard]] QRect screenRect(int index) const;

    void startTray();
    void stopTray();
    /// Starts a compositor while the desktop is in use, or ends it.
    void startCompositor(Compositor kind);
    void stopCompositor();
    /// Unplugs the right one of two screens, or plugs it in.
    void removeRightScreen();
    void addRightScreen();
    /// Runs a short command of the desktop to its end; throws when it fails.
    void run(const QString& program, const QStringList& arguments);

private:
    void startServer();
    void paintRoot();
    /// As xrandr wants it: size in pixels and millimetres, and place.
    [[nodiscard]] QString monitorGeometry(int left) const;
    void startBus();
    void startWindowManager();
    std::unique_ptr<ChildProcess> start(const QString& program, const QStringList& arguments);
    void waitForOwner(const char* selection, ChildProcess& process);

    DesktopOptions m_options;
    DesktopFolders m_folders;
    QString m_display;
    // In the order of their start; destroyed in the reverse order, the connection before the
    // server.
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<XcbConnection> m_connection;
    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_windowManager;
    std::unique_ptr<ChildProcess> m_compositor;
    std::unique_ptr<ChildProcess> m_tray;
};

} // namespace snapvane::testing
