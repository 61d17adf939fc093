#include "ClipboardManager.h"

#include "Wait.h"
#include "X11Probe.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

ChildProcess::Spec programOn(const VirtualDesktop& desktop, const QString& program,
                             const QStringList& arguments = {}) {
    ChildProcess::Spec spec;
    spec.program = program;
    spec.arguments = arguments;
    spec.environment = desktop.environment();
    spec.outputFile = desktop.folders().log(u"clipboard-manager"_s);
    return spec;
}

/// The manager reads its settings from there as it starts.
void waitForSettings(const VirtualDesktop& desktop) {
    const QString name = u"clipboard-manager-test"_s;
    QDBusConnection bus = QDBusConnection::connectToBus(desktop.busAddress(), name);
    require("the settings of the clipboard manager",
            [&] { return bus.interface()->isServiceRegistered(u"org.xfce.Xfconf"_s).value(); });
    QDBusConnection::disconnectFromBus(name);
}

} // namespace

ClipboardManager::ClipboardManager(const VirtualDesktop& desktop)
    : m_settings(programOn(desktop, QStringLiteral(SNAPVANE_XFCONFD))) {
    waitForSettings(desktop);
    m_manager.emplace(programOn(desktop, QStringLiteral(SNAPVANE_XFSETTINGSD), {u"--no-daemon"_s}));
    const X11Probe probe(desktop.connection());
    require("a clipboard manager",
            [&] { return probe.selectionOwner("CLIPBOARD_MANAGER") != XCB_WINDOW_NONE; });
}

} // namespace snapvane::testing
