#pragma once

#include <QCoroTask>
#include <QEventLoop>
#include <QTimer>

#include <exception>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <variant>

namespace snapvane {

namespace detail {

template <typename Result>
using Stored = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

/// Kept by the waiting coroutine as well, which may outlive somebody who has given up.
template <typename Result> struct Awaited {
    QEventLoop loop;
    std::variant<std::monostate, Stored<Result>, std::exception_ptr> outcome;
};

template <typename Result>
QCoro::Task<> keepOutcome(QCoro::Task<Result> task, std::shared_ptr<Awaited<Result>> awaited) {
    try {
        if constexpr (std::is_void_v<Result>) {
            co_await task;
            awaited->outcome.template emplace<1>();
        } else {
            awaited->outcome.template emplace<1>(co_await task);
        }
    } catch (...) {
        awaited->outcome.template emplace<2>(std::current_exception());
    }
    awaited->loop.quit();
}

} // namespace detail

/// Runs the event loop until the task is through; gives its result or throws what it threw. Throws
/// std::runtime_error when it takes longer than any test should.
template <typename Result> Result await(QCoro::Task<Result> task) {
    constexpr std::chrono::seconds patience(30);
    const auto awaited = std::make_shared<detail::Awaited<Result>>();
    detail::keepOutcome(std::move(task), awaited);
    if (awaited->outcome.index() == 0) {
        QTimer::singleShot(patience, &awaited->loop, &QEventLoop::quit);
        awaited->loop.exec();
    }
    if (awaited->outcome.index() == 0) {
        throw std::runtime_error("the task did not end");
    }
    if (awaited->outcome.index() == 2) {
        std::rethrow_exception(std::get<2>(awaited->outcome));
    }
    if constexpr (!std::is_void_v<Result>) {
        return std::move(std::get<1>(awaited->outcome));
    }
}

} // namespace snapvane
