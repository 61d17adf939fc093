#include "platform/x11/X11Platform.h"

#include "platform/x11/X11Capturer.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11KeyboardLayout.h"
#include "platform/x11/X11Overlay.h"
#include "platform/x11/X11Panels.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/X11Sprites.h"
#include "platform/x11/X11TrayManager.h"
#include "platform/xdg/LibsecretStore.h"
#include "platform/xdg/QtPasteboard.h"
#include "platform/xdg/XdgLoginItem.h"
#include "platform/xdg/XdgMotionPreference.h"
#include "platform/xdg/XdgWorkspace.h"

namespace snapvane::x11 {

namespace {

class X11Platform : public Platform {
public:
    QString name() const override { return QStringLiteral("x11"); }
    Screens& screens() override { return m_screens; }
    ScreenCapturer& capturer() override { return m_capturer; }
    OverlayHost& overlays() override { return m_overlays; }
    Panels& panels() override { return m_panels; }
    Sprites& sprites() override { return m_sprites; }
    HotKeys& hotKeys() override { return m_hotKeys; }
    KeyboardLayout& keyboardLayout() override { return m_keyboardLayout; }
    Pasteboard& pasteboard() override { return m_pasteboard; }
    Workspace& workspace() override { return m_workspace; }
    LoginItem& loginItem() override { return m_loginItem; }
    SecretStore& secretStore() override { return m_secretStore; }
    TrayHost& trayHost() override { return m_trayHost; }
    MotionPreference& motionPreference() override { return m_motionPreference; }

private:
    X11Screens m_screens;
    X11Capturer m_capturer{m_screens};
    X11OverlayHost m_overlays{m_screens, m_capturer.grabber()};
    X11Panels m_panels{m_screens, m_capturer.grabber()};
    X11Sprites m_sprites;
    X11Keyboard m_keyboard;
    X11KeyboardLayout m_keyboardLayout{m_keyboard};
    X11HotKeys m_hotKeys{m_keyboard};
    xdg::QtPasteboard m_pasteboard;
    xdg::XdgWorkspace m_workspace;
    xdg::XdgLoginItem m_loginItem;
    xdg::LibsecretStore m_secretStore;
    X11TrayManager m_trayHost;
    xdg::XdgMotionPreference m_motionPreference;
};

} // namespace

QString x11Obstacle() {
    const QString display = qEnvironmentVariable("DISPLAY");
    if (display.isEmpty()) {
        return QStringLiteral("No display: the variable DISPLAY is not set.");
    }
    if (OwnConnection::open() == nullptr) {
        return QStringLiteral("No display: the X server %1 cannot be reached.").arg(display);
    }
    return {};
}

std::unique_ptr<Platform> makeX11Platform() {
    return std::make_unique<X11Platform>();
}

} // namespace snapvane::x11
