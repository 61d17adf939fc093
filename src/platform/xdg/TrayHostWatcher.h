#pragma once

#include "platform/TrayHost.h"

#include <QDBusServiceWatcher>

namespace snapvane::xdg {

/// Watches the session bus for a StatusNotifier host: a watcher service with a host registered to
/// it. Without a session bus there is none. Owned by the platform; main thread.
class TrayHostWatcher : public TrayHost {
    Q_OBJECT

public:
    TrayHostWatcher();

    bool isPresent() const override { return m_present; }

protected:
    /// False until the session bus has answered for the first time.
    bool isSettled() const { return m_settled; }
    /// Called once, after the first answer.
    virtual void settled() {}

private Q_SLOTS:
    void refresh();

private:
    void setPresent(bool present);
    void settle();

    QDBusServiceWatcher m_services;
    bool m_present = false;
    bool m_settled = false;
};

} // namespace snapvane::xdg
