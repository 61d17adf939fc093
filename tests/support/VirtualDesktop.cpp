#include "VirtualDesktop.h"

#include "BusConfiguration.h"
#include "CompositorSetup.h"
#include "RootPicture.h"
#include "Wait.h"
#include "WindowManagerProbe.h"
#include "X11Probe.h"

#include <QFile>

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

bool accepts(const QString& socketPath) {
    const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, socketPath.toLocal8Bit().constData(), sizeof address.sun_path);
    const bool connected =
        connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(file);
    return connected;
}

/// Reads the number that the X server writes when it is ready, up to the line's end.
QString readDisplayNumber(int file) {
    constexpr int patienceMs = 20000;
    QByteArray text;
    char byte = 0;
    pollfd waiting = {file, POLLIN, 0};
    while (poll(&waiting, 1, patienceMs) == 1 && read(file, &byte, 1) == 1 && byte != '\n') {
        text += byte;
    }
    return QString::fromLatin1(text);
}

} // namespace

VirtualDesktop::VirtualDesktop(const DesktopOptions& options) : m_options(options) {
    startServer();
    paintRoot();
    if (m_options.sessionBus == SessionBus::Yes) {
        startBus();
    }
    if (m_options.windowManager == WindowManager::Openbox) {
        startWindowManager();
    }
    if (m_options.compositor != Compositor::None) {
        startCompositor(m_options.compositor);
    }
    if (m_options.trayHost == TrayHost::Trayer) {
        startTray();
    }
}

VirtualDesktop::~VirtualDesktop() = default;

QString VirtualDesktop::busAddress() const {
    const bool hasBus = m_options.sessionBus == SessionBus::Yes;
    return u"unix:path="_s + m_folders.runtime() + (hasBus ? u"/bus"_s : u"/no-bus"_s);
}

QProcessEnvironment VirtualDesktop::environment() const {
    QProcessEnvironment environment = m_folders.environment();
    environment.insert(u"DISPLAY"_s, m_display);
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, busAddress());
    return environment;
}

QRect VirtualDesktop::screenRect(int index) const {
    return QRect(QPoint(index * m_options.screenSize.width(), 0), m_options.screenSize);
}

void VirtualDesktop::startServer() {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    const int columns = m_options.screens == ScreenSet::TwoSideBySide ? 2 : 1;
    const QString geometry = u"%1x%2x%3"_s.arg(columns * m_options.screenSize.width())
                                 .arg(m_options.screenSize.height())
                                 .arg(m_options.depth);
    ChildProcess::Spec spec;
    spec.program = u"Xvfb"_s;
    spec.arguments = {u"-displayfd"_s, QString::number(ends[1]), u"-screen"_s, u"0"_s,
                      geometry,        u"-nolisten"_s,           u"tcp"_s,     u"-noreset"_s};
    spec.environment = m_folders.environment();
    spec.outputFile = m_folders.log(u"Xvfb"_s);
    spec.inheritedDescriptor = ends[1];
    m_server = std::make_unique<ChildProcess>(spec);
    close(ends[1]);
    const QString number = readDisplayNumber(ends[0]);
    close(ends[0]);
    if (number.isEmpty()) {
        throw std::runtime_error("Xvfb did not start");
    }
    m_display = u':' + number;
    m_connection = std::make_unique<XcbConnection>(m_display);
    if (m_options.screens == ScreenSet::TwoSideBySide) {
        run(u"xrandr"_s, {u"--setmonitor"_s, u"L"_s, monitorGeometry(0), u"screen"_s});
        addRightScreen();
    }
}

QString VirtualDesktop::monitorGeometry(int left) const {
    return u"%1/508x%2/286+%3+0"_s.arg(m_options.screenSize.width())
        .arg(m_options.screenSize.height())
        .arg(left);
}

void VirtualDesktop::addRightScreen() {
    const int width = m_options.screenSize.width();
    run(u"xrandr"_s, {u"--setmonitor"_s, u"R"_s, monitorGeometry(width), u"none"_s});
    require("two monitors", [this] { return X11Probe(*m_connection).monitorCount() == 2; });
}

void VirtualDesktop::removeRightScreen() {
    run(u"xrandr"_s, {u"--delmonitor"_s, u"R"_s});
    require("one monitor", [this] { return X11Probe(*m_connection).monitorCount() == 1; });
}

void VirtualDesktop::paintRoot() {
    if (m_options.depth == 24) {
        paintRootPattern(*m_connection);
    }
}

void VirtualDesktop::startBus() {
    const QString socketPath = m_folders.runtime() + u"/bus"_s;
    m_folders.write(u"bus.conf"_s, busConfiguration(socketPath));
    m_bus = start(u"dbus-daemon"_s,
                  {u"--config-file="_s + m_folders.path(u"bus.conf"_s), u"--nofork"_s});
    require("the session bus", [&] { return accepts(socketPath); });
}

void VirtualDesktop::startWindowManager() {
    m_windowManager = start(u"openbox"_s, {});
    const X11Probe probe(*m_connection);
    require("a window manager", [&] {
        return probe.number(m_connection->root(), "_NET_SUPPORTING_WM_CHECK").has_value();
    });
    require("a window manager that manages", [this] { return managesNewWindows(*m_connection); });
}

void VirtualDesktop::startCompositor(Compositor kind) {
    const CompositorCommand command = compositorCommand(kind, m_folders);
    m_compositor = start(command.program, command.arguments);
    waitForOwner("_NET_WM_CM_S0", *m_compositor);
}

void VirtualDesktop::stopCompositor() {
    m_compositor.reset();
}

void VirtualDesktop::startTray() {
    m_tray = start(u"trayer"_s, {u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s,
                                 u"--widthtype"_s, u"request"_s, u"--height"_s, u"24"_s});
    waitForOwner("_NET_SYSTEM_TRAY_S0", *m_tray);
}

void VirtualDesktop::stopTray() {
    m_tray.reset();
}

void VirtualDesktop::run(const QString& program, const QStringList& arguments) {
    const auto process = start(program, arguments);
    const auto exit = process->waitForExit(std::chrono::seconds(10));
    if (!exit || exit->code != 0 || exit->signal != 0) {
        throw std::runtime_error((program + u" failed: "_s + arguments.join(u' ')).toStdString());
    }
}

std::unique_ptr<ChildProcess> VirtualDesktop::start(const QString& program,
                                                    const QStringList& arguments) {
    ChildProcess::Spec spec;
    spec.program = program;
    spec.arguments = arguments;
    spec.environment = environment();
    spec.outputFile = m_folders.log(program);
    return std::make_unique<ChildProcess>(spec);
}

void VirtualDesktop::waitForOwner(const char* selection, ChildProcess& process) {
    const X11Probe probe(*m_connection);
    require(std::string("an owner of ") + selection, [&] {
        if (!process.isRunning()) {
            throw std::runtime_error(std::string("ended before it owned ") + selection);
        }
        return probe.selectionOwner(selection) != XCB_WINDOW_NONE;
    });
}

} // namespace snapvane::testing
