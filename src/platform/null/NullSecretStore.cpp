#include "platform/null/NullSecretStore.h"

namespace snapvane::null {

std::unique_lock<std::mutex> NullSecretStore::begin() {
    if (beforeOperation) {
        beforeOperation();
    }
    return std::unique_lock(m_mutex);
}

SecretStore::Status NullSecretStore::copy(const QString& service, const QString& account,
                                          QByteArray& value) {
    const auto lock = begin();
    if (isClosed || copyStatus != success) {
        return isClosed ? closed : copyStatus;
    }
    const auto found = items.find({service, account});
    if (found == items.end()) {
        return itemNotFound;
    }
    // A copy of its own: whoever gets it overwrites it.
    value = QByteArray(found->second.constData(), found->second.size());
    return success;
}

SecretStore::Status NullSecretStore::add(const QString& service, const QString& account,
                                         const QByteArray& value) {
    const auto lock = begin();
    if (isClosed || addStatus != success) {
        return isClosed ? closed : addStatus;
    }
    items[{service, account}] = QByteArray(value.constData(), value.size());
    return success;
}

SecretStore::Status NullSecretStore::remove(const QString& service, const QString& account) {
    const auto lock = begin();
    if (isClosed || removeStatus != success) {
        return isClosed ? closed : removeStatus;
    }
    return items.erase({service, account}) > 0 ? success : itemNotFound;
}

void NullSecretStore::close() {
    const std::unique_lock lock(m_mutex);
    isClosed = true;
}

} // namespace snapvane::null
