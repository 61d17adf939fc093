#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace snapvane::testing {

/// A session bus of our own, named to the program as its session bus. Lives as long as the test
/// program, since the library keeps its connection for good.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();

    bool isRunning() const { return !m_address.isEmpty(); }
    /// Another program on the bus.
    QDBusConnection connect(const QString& name) const;

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

} // namespace snapvane::testing
