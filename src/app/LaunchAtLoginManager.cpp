#include "app/LaunchAtLoginManager.h"

#include "platform/LoginItem.h"
#include "platform/Platform.h"

namespace snapvane::LaunchAtLoginManager {

void setEnabled(bool enabled, LoginItem& item) {
    if (enabled) {
        item.registerItem();
    } else {
        item.unregisterItem();
    }
}

void setEnabled(bool enabled) {
    setEnabled(enabled, Platform::shared().loginItem());
}

} // namespace snapvane::LaunchAtLoginManager
