#include "upload/FerryboxAPIKeyStore.h"

#include "base/AppIdentity.h"
#include "base/Wipe.h"
#include "platform/SecretStore.h"
#include "upload/FerryboxKeychainError.h"

#include <QScopeGuard>
#include <QStringDecoder>

namespace snapvane::FerryboxAPIKeyStore {

namespace {

const QString& service() {
    static const QString name = QLatin1String(applicationIdentifier);
    return name;
}

const QString& account() {
    static const QString name = QStringLiteral("ferrybox");
    return name;
}

/// Nothing when it is no UTF-8, and when it is empty.
std::optional<QString> textOf(const QByteArray& bytes) {
    // Else a byte order mark would be taken away.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError() || text.isEmpty()) {
        wipe(text);
        return std::nullopt;
    }
    return text;
}

} // namespace

std::optional<QString> loadKey(SecretStore& store) {
    QByteArray data;
    const auto wiping = qScopeGuard([&data] { wipe(data); });
    if (store.copy(service(), account(), data) != SecretStore::success) {
        return std::nullopt;
    }
    return textOf(data);
}

void saveKey(SecretStore& store, const QString& key) {
    const QStringView trimmed = QStringView(key).trimmed();
    if (trimmed.isEmpty()) {
        throw FerryboxKeychainError::emptyKey();
    }
    QByteArray data = trimmed.toUtf8();
    const auto wiping = qScopeGuard([&data] { wipe(data); });
    deleteKey(store);
    const SecretStore::Status status = store.add(service(), account(), data);
    if (status != SecretStore::success) {
        throw FerryboxKeychainError::storeFailed(status);
    }
}

void deleteKey(SecretStore& store) {
    store.remove(service(), account());
}

} // namespace snapvane::FerryboxAPIKeyStore
