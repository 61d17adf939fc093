#include "platform/xdg/FakeBusService.h"

#include <gtest/gtest.h>

namespace snapvane::testing {

namespace {

const QString everything = QStringLiteral("/");

} // namespace

FakeBusService::FakeBusService(const QString& name, Handler handler)
    : m_name(name), m_handler(std::move(handler)),
      m_connection(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                                 QStringLiteral("fake ") + name)) {
    EXPECT_TRUE(m_connection.registerVirtualObject(everything, this, QDBusConnection::SubPath));
    // Only now: the bus library makes children of the object.
    moveToThread(&m_thread);
    m_thread.start();
    EXPECT_TRUE(m_connection.registerService(name));
}

FakeBusService::~FakeBusService() {
    m_connection.unregisterService(m_name);
    m_connection.unregisterObject(everything, QDBusConnection::UnregisterTree);
    m_thread.quit();
    m_thread.wait();
    QDBusConnection::disconnectFromBus(m_connection.name());
}

QString FakeBusService::introspect(const QString&) const {
    return {};
}

bool FakeBusService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    m_handler(message, connection);
    return true;
}

} // namespace snapvane::testing
