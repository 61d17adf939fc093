#include "ProcessMemory.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <atomic>
#include <stdexcept>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The sanitizers' own; the compiler has no header for them.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*onAllocation)(const volatile void*,
                                                                   std::size_t),
                                              void (*onRelease)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void* block);
}
#endif

namespace snapvane::testing {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

std::atomic<qint64> allocated = 0;
std::atomic<qint64> mostAllocated = 0;

// Called within malloc and free, by any thread: they allocate nothing themselves.

void countAllocation(const volatile void* /*block*/, std::size_t size) {
    const qint64 now = allocated += static_cast<qint64>(size);
    qint64 most = mostAllocated;
    while (now > most && !mostAllocated.compare_exchange_weak(most, now)) {
    }
}

void countRelease(const volatile void* block) {
    allocated -= static_cast<qint64>(__sanitizer_get_allocated_size(block));
}

/// Makes the present figure the peak and returns it.
qint64 restartPeak() {
    // For good: there is no way to remove them.
    static const int installed =
        __sanitizer_install_malloc_and_free_hooks(countAllocation, countRelease);
    if (installed == 0) {
        throw std::runtime_error("allocations cannot be counted");
    }
    return mostAllocated = allocated.load();
}

qint64 peak() {
    return mostAllocated;
}

#else

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

/// Makes the present figure the peak and returns it.
qint64 restartPeak() {
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (reset.open(QIODevice::WriteOnly)) {
        reset.write("5");
        reset.close();
    }
    return figure("VmRSS:");
}

qint64 peak() {
    return figure("VmHWM:");
}

#endif

} // namespace

PeakMemory::PeakMemory() : m_before(restartPeak()) {}

qint64 PeakMemory::growth() const {
    return peak() - m_before;
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
