#include "support/PrivateBus.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>

namespace snapvane::testing {

PrivateBus::PrivateBus() {
    // To files: a daemon that holds a pipe of ours would keep whoever reads it waiting.
    const QString output = m_folder.filePath(QStringLiteral("address"));
    m_daemon.setStandardOutputFile(output);
    m_daemon.setStandardErrorFile(m_folder.filePath(QStringLiteral("errors")));
    // Also when the tests crash.
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--print-address"),
                    QStringLiteral("--nofork"), QStringLiteral("--nopidfile")});
    QElapsedTimer clock;
    clock.start();
    while (m_address.isEmpty() && clock.elapsed() < 10'000) {
        QThread::msleep(10);
        QFile file(output);
        const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readLine() : QByteArray();
        if (line.endsWith('\n')) {
            m_address = QString::fromLatin1(line.trimmed());
        }
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toLatin1());
}

PrivateBus::~PrivateBus() {
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect(const QString& name) const {
    return QDBusConnection::connectToBus(m_address, name);
}

} // namespace snapvane::testing
