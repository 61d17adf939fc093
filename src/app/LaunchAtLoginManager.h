#pragma once

namespace snapvane {

class LoginItem;

/// Starting the program when the user signs in.
namespace LaunchAtLoginManager {

/// Registers or unregisters the program; throws what the platform throws. Main thread.
void setEnabled(bool enabled, LoginItem& item);
void setEnabled(bool enabled);

} // namespace LaunchAtLoginManager

} // namespace snapvane
