#include "KeyboardShortcuts/MainThread.h"

#include "base/ProgramError.h"

#include <QCoreApplication>
#include <QThread>

namespace KeyboardShortcuts {

bool isMainThread() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application == nullptr || application->thread() == QThread::currentThread();
}

void requireMainThread(std::source_location where) {
    if (!isMainThread()) {
        snapvane::programError("KeyboardShortcuts is for the main thread only", where);
    }
}

} // namespace KeyboardShortcuts
