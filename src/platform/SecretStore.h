#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace snapvane {

/// The desktop's safe for passwords: pieces of data, each under a service and an account. Owned by
/// the platform. Any thread, several at a time, but never the main thread of the program: an
/// operation may wait for the user to unlock the safe.
class SecretStore {
public:
    /// 0 on success and only then. Positive values are the codes of the library behind the store.
    using Status = std::int32_t;
    static constexpr Status success = 0;
    /// There is no such item.
    static constexpr Status itemNotFound = -1;
    /// A failure for which the library has no code of its own.
    static constexpr Status failed = -2;
    /// The store has been closed.
    static constexpr Status closed = -3;

    virtual ~SecretStore() = default;

    /// Puts the data of at most one matching item into `value`, which stays as it is on failure.
    /// Asks the user to unlock it where that is needed; the caller wipes what it got.
    virtual Status copy(const QString& service, const QString& account, QByteArray& value) = 0;
    /// Stores UTF-8 text as a new item, which stays readable until the user locks the safe.
    virtual Status add(const QString& service, const QString& account, const QByteArray& value) = 0;
    /// Deletes all matching items.
    virtual Status remove(const QString& service, const QString& account) = 0;

    /// Ends the operations that are under way, which fail, and lets all later ones fail at once.
    /// Called before the program leaves, so that no open question to the user keeps it.
    virtual void close() = 0;
};

} // namespace snapvane
