#pragma once

#include "platform/SecretStore.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace snapvane::null {

/// Secrets in memory, one to a service and account. What is public is set before other threads use
/// the store.
class NullSecretStore : public SecretStore {
public:
    Status copy(const QString& service, const QString& account, QByteArray& value) override;
    Status add(const QString& service, const QString& account, const QByteArray& value) override;
    Status remove(const QString& service, const QString& account) override;
    void close() override;

    using Identity = std::pair<QString, QString>;
    std::map<Identity, QByteArray> items;
    /// Other than `success`: the operation gives it and does nothing.
    Status copyStatus = success;
    Status addStatus = success;
    Status removeStatus = success;
    /// Called on the thread of each operation before it begins.
    std::function<void()> beforeOperation;
    std::atomic<bool> isClosed = false;

private:
    std::unique_lock<std::mutex> begin();

    std::mutex m_mutex;
};

} // namespace snapvane::null
