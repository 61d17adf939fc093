#pragma once

#include "platform/SecretStore.h"

#include <future>

/// The operations of a store on threads of their own, as the program calls them.
namespace snapvane::SecretOperations {

/// On a thread of its own, while the caller goes on.
template <typename Operation> std::future<SecretStore::Status> start(Operation operation) {
    return std::async(std::launch::async, std::move(operation));
}

/// On a thread of its own, for which the caller waits.
template <typename Operation> SecretStore::Status inThread(Operation operation) {
    return start(std::move(operation)).get();
}

} // namespace snapvane::SecretOperations
