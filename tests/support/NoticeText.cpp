#include "NoticeText.h"

#include "Wait.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString sessionConnection = u"notice-text-session"_s;
const QString accessibilityConnection = u"notice-text"_s;
const QString accessible = u"org.a11y.atspi.Accessible"_s;
const QString rootPath = u"/org/a11y/atspi/accessible/root"_s;

/// A thing on the accessibility bus: the program's address and the thing's path.
using Reference = std::pair<QString, QString>;

ChildProcess::Spec launcherOn(const VirtualDesktop& desktop) {
    ChildProcess::Spec spec;
    spec.program = QStringLiteral(SNAPVANE_AT_SPI_LAUNCHER);
    spec.arguments = {u"--launch-immediately"_s};
    spec.environment = desktop.environment();
    spec.outputFile = desktop.folders().log(u"at-spi"_s);
    return spec;
}

/// Asks the launcher on the session bus where the other bus is.
QDBusConnection connectToAccessibility(const VirtualDesktop& desktop) {
    QDBusConnection session =
        QDBusConnection::connectToBus(desktop.busAddress(), sessionConnection);
    require("the accessibility bus",
            [&] { return session.interface()->isServiceRegistered(u"org.a11y.Bus"_s).value(); });
    const QDBusReply<QString> address = session.call(QDBusMessage::createMethodCall(
        u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
    QDBusConnection::disconnectFromBus(sessionConnection);
    if (!address.isValid()) {
        throw std::runtime_error("no address of the accessibility bus: " +
                                 address.error().message().toStdString());
    }
    return QDBusConnection::connectToBus(address.value(), accessibilityConnection);
}

std::vector<Reference> childrenOf(const QDBusConnection& bus, const Reference& parent) {
    const QDBusMessage answer = bus.call(
        QDBusMessage::createMethodCall(parent.first, parent.second, accessible, u"GetChildren"_s));
    std::vector<Reference> children;
    if (answer.type() != QDBusMessage::ReplyMessage) {
        // Programs go while they are looked at.
        return children;
    }
    const auto list = answer.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString program;
        QDBusObjectPath path;
        list.beginStructure();
        list >> program >> path;
        list.endStructure();
        children.emplace_back(program, path.path());
    }
    list.endArray();
    return children;
}

QString nameOf(const QDBusConnection& bus, const Reference& thing) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        thing.first, thing.second, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << accessible << u"Name"_s;
    const QDBusReply<QDBusVariant> name = bus.call(call);
    return name.isValid() ? name.value().variant().toString() : QString();
}

bool isShown(const QDBusConnection& bus, const Reference& thing) {
    // Source: AT-SPI's list of states; the bit of "showing".
    constexpr unsigned showing = 25;
    const QDBusReply<QList<uint>> states = bus.call(
        QDBusMessage::createMethodCall(thing.first, thing.second, accessible, u"GetState"_s));
    return states.isValid() && (states.value().value(0) >> showing & 1U) != 0;
}

} // namespace

NoticeText::NoticeText(const VirtualDesktop& desktop)
    : m_launcher(launcherOn(desktop)), m_bus(connectToAccessibility(desktop)) {
    if (!m_bus.isConnected()) {
        throw std::runtime_error("cannot reach the accessibility bus");
    }
}

NoticeText::~NoticeText() {
    QDBusConnection::disconnectFromBus(accessibilityConnection);
}

QStringList NoticeText::shown() const {
    QStringList names;
    for (const Reference& program : childrenOf(m_bus, {u"org.a11y.atspi.Registry"_s, rootPath})) {
        for (const Reference& window : childrenOf(m_bus, program)) {
            if (isShown(m_bus, window)) {
                names << nameOf(m_bus, window);
            }
        }
    }
    return names;
}

} // namespace snapvane::testing
