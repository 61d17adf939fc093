#include "ProcessMemory.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

namespace snapvane::testing {

namespace {

/// One of the kernel's figures about this process, in bytes.
qint64 figure(const QByteArray& label) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(label)) {
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    return -1;
}

} // namespace

PeakMemory::PeakMemory() {
    // Makes the present size the peak.
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (reset.open(QIODevice::WriteOnly)) {
        reset.write("5");
        reset.close();
    }
    m_before = figure("VmRSS:");
}

qint64 PeakMemory::growth() const {
    return figure("VmHWM:") - m_before;
}

bool processEventsUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents();
        QThread::msleep(2);
    }
    return true;
}

} // namespace snapvane::testing
