#pragma once

#include <QString>

namespace snapvane {

/// The application's identifier wherever the desktop asks for one: D-Bus name, desktop file, icon
/// name, secret store service and log subsystem.
inline constexpr char applicationIdentifier[] = "app.snapvane.Snapvane";

/// The object path that belongs to the identifier on the session bus.
inline constexpr char applicationObjectPath[] = "/app/snapvane/Snapvane";

/// The product word as it stands in titles, folder names and file names.
inline constexpr char productName[] = "Snapvane";

} // namespace snapvane
