#pragma once

#include <QString>

#include <memory>

namespace snapvane {

class HotKeys;
class KeyboardLayout;
class LoginItem;
class MotionPreference;
class OverlayHost;
class Panels;
class Pasteboard;
class ScreenCapturer;
class Screens;
class SecretStore;
class Sprites;
class TrayHost;
class Workspace;

/// Everything that the program needs of the desktop it runs on, one object a duty. Made once by
/// PlatformLoader; the objects live as long as the platform.
class Platform {
public:
    virtual ~Platform() = default;

    virtual QString name() const = 0;
    virtual Screens& screens() = 0;
    virtual ScreenCapturer& capturer() = 0;
    virtual OverlayHost& overlays() = 0;
    virtual Panels& panels() = 0;
    virtual Sprites& sprites() = 0;
    virtual HotKeys& hotKeys() = 0;
    virtual KeyboardLayout& keyboardLayout() = 0;
    virtual Pasteboard& pasteboard() = 0;
    virtual Workspace& workspace() = 0;
    virtual LoginItem& loginItem() = 0;
    virtual SecretStore& secretStore() = 0;
    virtual TrayHost& trayHost() = 0;
    virtual MotionPreference& motionPreference() = 0;

    /// The platform that `shared()` objects of the program are built on. Asking before one is
    /// installed is a program error.
    static Platform& shared();
    /// Called once by the program's entry; the platform stays owned by the caller, who passes null
    /// before it goes.
    static void install(Platform* platform);
};

} // namespace snapvane
