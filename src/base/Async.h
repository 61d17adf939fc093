#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

/// Waiting without blocking. State and user interface live on the main thread; work that must leave
/// it is a pure function given to `runInBackground`.
namespace snapvane {

/// Starts a task that nobody awaits. A dropped task would swallow its exception; here one that gets
/// out is a program error, because whatever a user should hear of has been caught further in.
void startDetached(QCoro::Task<> task);

/// Runs `work` on a thread of the pool and gives its result, or throws what it threw, to the
/// awaiting coroutine on its own thread. `work` must not touch state of the main thread. The pool
/// must live until the work is done.
template <typename Work, typename Result = std::invoke_result_t<Work>>
QCoro::Task<Result> runInBackground(QThreadPool& pool, Work work) {
    // The thread pool's own transport wraps exceptions in a type of its own; carried as a value
    // they arrive as they were thrown.
    using Outcome = std::variant<Result, std::exception_ptr>;
    QFuture<Outcome> future =
        QtConcurrent::run(&pool, [work = std::move(work)]() mutable -> Outcome {
            try {
                return Outcome(std::in_place_index<0>, work());
            } catch (...) {
                return Outcome(std::in_place_index<1>, std::current_exception());
            }
        });
    Outcome outcome = co_await future;
    if (std::holds_alternative<std::exception_ptr>(outcome)) {
        std::rethrow_exception(std::get<std::exception_ptr>(outcome));
    }
    co_return std::move(std::get<0>(outcome));
}

/// The program's threads for work in the background; never released. Not Qt's global ones: Qt
/// paints large areas on those, the main thread waiting, and a disk or a service that hangs must
/// not stop that. Any thread.
QThreadPool& backgroundPool();

/// The same on those threads.
template <typename Work, typename Result = std::invoke_result_t<Work>>
QCoro::Task<Result> runInBackground(Work work) {
    return runInBackground(backgroundPool(), std::move(work));
}

} // namespace snapvane
