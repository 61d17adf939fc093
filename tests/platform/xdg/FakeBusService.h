#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

#include <functional>

namespace snapvane::testing {

/// A service on the session bus, with a connection and a thread of its own, as another program
/// would have: it answers while the thread of the test waits.
class FakeBusService : public QDBusVirtualObject {
public:
    /// Called on the service's thread for all that it is asked. Answers on the connection, now,
    /// later or never.
    using Handler = std::function<void(const QDBusMessage&, const QDBusConnection&)>;

    FakeBusService(const QString& name, Handler handler);
    ~FakeBusService() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QString m_name;
    Handler m_handler;
    QDBusConnection m_connection;
    QThread m_thread;
};

} // namespace snapvane::testing
