#include "platform/xdg/LibsecretStore.h"

#include "base/AppIdentity.h"
#include "platform/xdg/CallGuard.h"
#include "platform/xdg/GLibPointers.h"
#include "platform/xdg/PromptingService.h"

#include <QScopeGuard>

#include <libsecret/secret.h>

namespace snapvane::xdg {

namespace {

using Status = SecretStore::Status;

constexpr char label[] = "Snapvane API key";
/// Other programs show what is marked as text.
constexpr char contentType[] = "text/plain";

using AttributesPointer = std::unique_ptr<GHashTable, Releaser<g_hash_table_unref>>;
/// Kept in memory that is not swapped out, and overwritten when it goes.
using ValuePointer = std::unique_ptr<SecretValue, Releaser<secret_value_unref>>;

void freeItems(GList* items) {
    g_list_free_full(items, g_object_unref);
}
using ItemsPointer = std::unique_ptr<GList, Releaser<freeItems>>;

/// Takes what a call has to say about its failure.
class Failure {
public:
    Failure() = default;
    ~Failure() { g_clear_error(&m_error); }
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    GError** out() { return &m_error; }
    explicit operator bool() const { return m_error != nullptr; }
    /// Some domains count from 0.
    Status status() const {
        return m_error == nullptr || m_error->code == 0 ? SecretStore::failed : m_error->code;
    }

private:
    GError* m_error = nullptr;
};

const SecretSchema& schema() {
    static const SecretSchema instance = [] {
        SecretSchema made = {};
        made.name = applicationIdentifier;
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return instance;
}

AttributesPointer attributesOf(const QString& service, const QString& account) {
    return AttributesPointer(secret_attributes_build(&schema(), "service",
                                                     service.toUtf8().constData(), "account",
                                                     account.toUtf8().constData(), nullptr));
}

/// The connection that the library is going to use, to be held for as long as it does. Left to
/// itself it would end the program when the bus goes, which is for the program to decide.
ObjectPointer<GDBusConnection> connectToBus(GCancellable* cancellable, Failure& failure) {
    ObjectPointer<GDBusConnection> bus(
        g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, failure.out()));
    if (bus) {
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
    return bus;
}

/// With a session, in which secrets travel encrypted. For one operation: the library's shared
/// service would outlive one that goes, and hear of that on the main thread only.
ObjectPointer<SecretService> openService(GCancellable* cancellable, Failure& failure) {
    return ObjectPointer<SecretService>(secret_service_open_sync(
        promptingServiceType(), nullptr, SECRET_SERVICE_OPEN_SESSION, cancellable, failure.out()));
}

Status valueOf(SecretItem& item, GCancellable* cancellable, QByteArray& value) {
    Failure failure;
    if (secret_item_load_secret_sync(&item, cancellable, failure.out()) == FALSE) {
        return failure.status();
    }
    const ValuePointer secret(secret_item_get_secret(&item));
    if (!secret) {
        return SecretStore::failed;
    }
    gsize size = 0;
    const char* const bytes = secret_value_get(secret.get(), &size);
    value = QByteArray(bytes, static_cast<qsizetype>(size));
    return SecretStore::success;
}

} // namespace

LibsecretStore::LibsecretStore(std::chrono::milliseconds limit) : m_limit(limit) {}

LibsecretStore::~LibsecretStore() {
    closeNow();
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_underWay.empty(); });
}

Status LibsecretStore::copy(const QString& service, const QString& account, QByteArray& value) {
    return onService([&](SecretService& secrets, GCancellable* cancellable) {
        Failure failure;
        const auto attributes = attributesOf(service, account);
        const ItemsPointer items(secret_service_search_sync(&secrets, &schema(), attributes.get(),
                                                            SECRET_SEARCH_UNLOCK, cancellable,
                                                            failure.out()));
        if (failure) {
            return failure.status();
        }
        return items ? valueOf(*SECRET_ITEM(items->data), cancellable, value) : itemNotFound;
    });
}

Status LibsecretStore::add(const QString& service, const QString& account,
                           const QByteArray& value) {
    return onService([&](SecretService& secrets, GCancellable* cancellable) {
        Failure failure;
        const auto attributes = attributesOf(service, account);
        const ValuePointer secret(secret_value_new(value.constData(), value.size(), contentType));
        const bool stored = secret_service_store_sync(
                                &secrets, &schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
                                label, secret.get(), cancellable, failure.out()) != FALSE;
        return stored ? success : failure.status();
    });
}

Status LibsecretStore::remove(const QString& service, const QString& account) {
    return onService([&](SecretService& secrets, GCancellable* cancellable) {
        Failure failure;
        const auto attributes = attributesOf(service, account);
        const auto flags = static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK);
        const ItemsPointer items(secret_service_search_sync(&secrets, &schema(), attributes.get(),
                                                            flags, cancellable, failure.out()));
        if (failure) {
            return failure.status();
        }
        Status status = items ? success : itemNotFound;
        for (const GList* item = items.get(); item != nullptr; item = item->next) {
            Failure refusal;
            if (secret_item_delete_sync(SECRET_ITEM(item->data), cancellable, refusal.out()) ==
                FALSE) {
                status = refusal.status();
            }
        }
        return status;
    });
}

void LibsecretStore::close() {
    closeNow();
}

void LibsecretStore::closeNow() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    for (CallGuard* const guard : m_underWay) {
        guard->cancel();
    }
}

Status LibsecretStore::onService(const Operation& operation) {
    CallGuard guard(m_limit);
    if (!begin(guard)) {
        return closed;
    }
    const auto ending = qScopeGuard([this, &guard] { end(guard); });
    Failure failure;
    const auto bus = connectToBus(guard.cancellable(), failure);
    const auto secrets = bus ? openService(guard.cancellable(), failure) : nullptr;
    const Status status = secrets ? operation(*secrets, guard.cancellable()) : failure.status();
    const std::lock_guard lock(m_mutex);
    return m_closed && status != success ? closed : status;
}

bool LibsecretStore::begin(CallGuard& guard) {
    const std::lock_guard lock(m_mutex);
    if (!m_closed) {
        m_underWay.push_back(&guard);
    }
    return !m_closed;
}

void LibsecretStore::end(CallGuard& guard) {
    const std::lock_guard lock(m_mutex);
    std::erase(m_underWay, &guard);
    m_ended.notify_all();
}

} // namespace snapvane::xdg
