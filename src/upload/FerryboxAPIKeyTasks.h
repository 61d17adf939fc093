#pragma once

#include <QCoroTask>
#include <QString>
#include <QThreadPool>

#include <optional>

namespace snapvane {

class SecretStore;

/// The operations of FerryboxAPIKeyStore for callers on the main thread, which they never block.
/// They run one after the other in the order of the calls, on a thread of their own: a question to
/// the user that stays open holds up no other work. A task throws nothing but
/// FerryboxKeychainError, and outlives this object if it must. Main thread.
class FerryboxAPIKeyTasks {
public:
    /// The store must live until `end` has been called.
    explicit FerryboxAPIKeyTasks(SecretStore& store);
    ~FerryboxAPIKeyTasks();
    FerryboxAPIKeyTasks(const FerryboxAPIKeyTasks&) = delete;
    FerryboxAPIKeyTasks& operator=(const FerryboxAPIKeyTasks&) = delete;

    /// On the platform's store; whoever runs the program calls `end` before the platform goes.
    static FerryboxAPIKeyTasks& shared();

    /// The key, which shares its buffer with nothing but the task and is for the caller to wipe.
    QCoro::Task<std::optional<QString>> loadKey();
    /// The buffer of `key` is wiped in the end unless the caller still shares it.
    QCoro::Task<> saveKey(QString key);
    QCoro::Task<> deleteKey();

    /// Closes the store, and waits for what is under way, which then fails. Once; nothing can be
    /// stored or read afterwards, and no task may be started.
    void end();

private:
    SecretStore& m_store;
    QThreadPool m_pool;
    bool m_ended = false;
};

} // namespace snapvane
