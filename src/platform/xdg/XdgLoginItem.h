#pragma once

#include "platform/LoginItem.h"

#include <QString>

namespace snapvane::xdg {

/// Starting with the desktop by an entry in the user's autostart folder. Owned by the platform;
/// main thread.
class XdgLoginItem : public LoginItem {
public:
    void registerItem() override;
    void unregisterItem() override;
    /// True when there is an entry that no desktop setting has switched off.
    bool isRegistered() const override;

    /// The entry's path.
    static QString entryPath();
};

} // namespace snapvane::xdg
