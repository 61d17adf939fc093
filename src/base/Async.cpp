#include "base/Async.h"

#include "base/ProgramError.h"

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

} // namespace

void startDetached(QCoro::Task<> task) {
    supervised(std::move(task));
}

} // namespace snapvane
