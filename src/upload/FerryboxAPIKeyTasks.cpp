#include "upload/FerryboxAPIKeyTasks.h"

#include "base/Async.h"
#include "base/Wipe.h"
#include "platform/Platform.h"
#include "platform/SecretStore.h"
#include "upload/FerryboxAPIKeyStore.h"

#include <QScopeGuard>

namespace snapvane {

FerryboxAPIKeyTasks::FerryboxAPIKeyTasks(SecretStore& store) : m_store(store) {
    // Nothing overtakes anything on one thread.
    m_pool.setMaxThreadCount(1);
}

FerryboxAPIKeyTasks::~FerryboxAPIKeyTasks() {
    end();
}

FerryboxAPIKeyTasks& FerryboxAPIKeyTasks::shared() {
    static FerryboxAPIKeyTasks tasks(Platform::shared().secretStore());
    return tasks;
}

QCoro::Task<std::optional<QString>> FerryboxAPIKeyTasks::loadKey() {
    auto loading =
        runInBackground(m_pool, [&store = m_store] { return FerryboxAPIKeyStore::loadKey(store); });
    std::optional<QString> loaded = co_await loading;
    if (!loaded) {
        co_return std::nullopt;
    }
    // The thread pool holds on to the buffer that it handed over for a while.
    std::optional<QString> key = QString(loaded->constData(), loaded->size());
    wipe(*loaded);
    co_return key;
}

QCoro::Task<> FerryboxAPIKeyTasks::saveKey(QString key) {
    auto saving = runInBackground(m_pool, [&store = m_store, key = std::move(key)]() mutable {
        const auto wiping = qScopeGuard([&key] {
            if (isOnlyOwner(key)) {
                wipe(key);
            }
        });
        FerryboxAPIKeyStore::saveKey(store, key);
        return true;
    });
    co_await saving;
}

QCoro::Task<> FerryboxAPIKeyTasks::deleteKey() {
    auto deleting = runInBackground(m_pool, [&store = m_store] {
        FerryboxAPIKeyStore::deleteKey(store);
        return true;
    });
    co_await deleting;
}

void FerryboxAPIKeyTasks::end() {
    if (!m_ended) {
        m_ended = true;
        m_store.close();
        m_pool.waitForDone();
    }
}

} // namespace snapvane
