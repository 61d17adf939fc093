#pragma once

#include "platform/SecretStore.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

// The libraries' own names, so that their headers stay out of this one.
using GCancellable = struct _GCancellable;
using SecretService = struct _SecretService;

namespace snapvane::xdg {

class CallGuard;

/// The Secret Service of the desktop (GNOME's keyring, KWallet and others). Items carry the schema
/// "app.snapvane.Snapvane" with the attributes "service" and "account" and go into the default
/// collection. Statuses are libsecret's, GIO's and D-Bus's codes.
///
/// What is locked is unlocked by every operation, for which the service asks the user; a locked
/// item that stays locked fails with libsecret's code for that. An operation takes no longer than
/// the limit in all, after which the question to the user is taken back; a service that hangs is
/// given up by the bus's own limit of 25 seconds a call. The destructor ends what is under way and
/// waits for it.
class LibsecretStore : public SecretStore {
public:
    /// Long enough to look a password up and type it.
    static constexpr std::chrono::minutes defaultLimit{2};

    explicit LibsecretStore(std::chrono::milliseconds limit = defaultLimit);
    ~LibsecretStore() override;
    LibsecretStore(const LibsecretStore&) = delete;
    LibsecretStore& operator=(const LibsecretStore&) = delete;

    Status copy(const QString& service, const QString& account, QByteArray& value) override;
    Status add(const QString& service, const QString& account, const QByteArray& value) override;
    Status remove(const QString& service, const QString& account) override;
    void close() override;

private:
    using Operation = std::function<Status(SecretService& service, GCancellable* cancellable)>;

    /// Does the operation with a service of its own, or tells why there is none.
    Status onService(const Operation& operation);
    /// False when the store is closed.
    bool begin(CallGuard& guard);
    void end(CallGuard& guard);
    void closeNow();

    std::chrono::milliseconds m_limit;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::vector<CallGuard*> m_underWay;
    bool m_closed = false;
};

} // namespace snapvane::xdg
