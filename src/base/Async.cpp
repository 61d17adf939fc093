#include "base/Async.h"

#include "base/ProgramError.h"

#include <QThread>

#include <algorithm>

namespace snapvane {

namespace {

QCoro::Task<> supervised(QCoro::Task<> task) {
    try {
        co_await task;
    } catch (const std::exception& error) {
        programError(error.what());
    } catch (...) {
        programError("a task ended with something that is no exception");
    }
}

QThreadPool* makePool() {
    // More than there are processors, since most of it waits.
    constexpr int fewestThreads = 4;
    auto* pool = new QThreadPool;
    pool->setMaxThreadCount(std::max(fewestThreads, QThread::idealThreadCount()));
    return pool;
}

} // namespace

void startDetached(QCoro::Task<> task) {
    supervised(std::move(task));
}

QThreadPool& backgroundPool() {
    static auto* pool = makePool();
    return *pool;
}

} // namespace snapvane
