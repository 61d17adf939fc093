#include "HotKeySuite.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

std::unique_ptr<VirtualDesktop> HotKeySuite::s_desktop;

void HotKeySuite::SetUpTestSuite() {
    DesktopOptions options;
    options.trayHost = TrayHost::Trayer;
    s_desktop = std::make_unique<VirtualDesktop>(options);
}

void HotKeySuite::TearDown() {
    if (s_desktop) {
        resetKeyboard();
    }
}

void HotKeySuite::resetKeyboard() {
    injector().releaseKeyCodes(probe().pressedKeys());
    if ((probe().modifiers() & XCB_MOD_MASK_LOCK) != 0) {
        tap({serverKey::capsLock});
    }
    if ((probe().modifiers() & ~unsigned{XCB_MOD_MASK_LOCK}) != 0) {
        tap({serverKey::numLock}); // Whatever bit it has.
    }
    if (m_isMapChanged) {
        // Without an empty option, options would be kept.
        setLayout({u"-layout"_s, u"us"_s, u"-variant"_s, QString(), u"-option"_s, QString()});
    }
    EXPECT_EQ(probe().modifiers(), 0);
    EXPECT_TRUE(probe().pressedKeys().empty());
    EXPECT_EQ(probe().layout(), 0);
}

void HotKeySuite::tap(const Keys& keys) {
    press(keys);
    release(keys);
}

void HotKeySuite::setLayout(const QStringList& arguments) {
    m_isMapChanged = true;
    desktop().run(u"setxkbmap"_s, arguments);
}

void HotKeySuite::setModifiers(const QStringList& expressions) {
    m_isMapChanged = true;
    QStringList arguments;
    for (const QString& expression : expressions) {
        arguments << u"-e"_s << expression;
    }
    desktop().run(u"xmodmap"_s, arguments);
}

void HotKeySuite::expectStarts(AgentProcess& agent, const Keys& keys) {
    tap(keys);
    agent.waitForOverlay();
    cancelSelection(agent);
}

void HotKeySuite::expectStartsSoon(AgentProcess& agent, std::chrono::milliseconds limit,
                                   const Keys& keys) {
    const bool started = waitUntil(
        [&] {
            tap(keys);
            return waitUntil([&] { return agent.overlayCount() > 0; },
                             std::chrono::milliseconds(300));
        },
        limit);
    ASSERT_TRUE(started) << agent.log().toStdString();
    agent.waitForOverlay();
    cancelSelection(agent);
}

void HotKeySuite::expectNoSelection(const AgentProcess& agent) {
    EXPECT_FALSE(
        waitUntil([&] { return agent.overlayCount() > 0; }, std::chrono::milliseconds(300)))
        << "a selection has opened";
}

void HotKeySuite::cancelSelection(AgentProcess& agent) {
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(agent.waitForOverlayGone());
}

std::optional<WindowInfo> HotKeySuite::icon() {
    const int panelTop = desktop().rect().height() - 40;
    for (const WindowInfo& window : probe().windowsOfClass(u"Snapvane"_s)) {
        const bool isSmall = window.rect.width() > 4 && window.rect.width() <= 64;
        if (window.viewable && isSmall && window.rect.top() >= panelTop) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<WindowInfo> HotKeySuite::menu() {
    for (const WindowInfo& window : probe().windowsOfClass(u"Snapvane"_s)) {
        const bool isLarge = window.rect.width() > 80 && window.rect.height() > 80;
        // What a selection leaves waits off the desktop until it goes.
        const bool isSeen = window.viewable && window.rect.intersects(desktop().rect());
        if (isSeen && window.overrideRedirect && isLarge) {
            return window;
        }
    }
    return std::nullopt;
}

void HotKeySuite::openMenu() {
    require("the tray icon", [] { return icon().has_value(); });
    // A tray that is still laying a new icon out may move it away from under the click.
    require("the menu", [] {
        if (!menu() && icon()) {
            injector().click(icon()->rect.center());
        }
        return waitUntil([] { return menu().has_value(); }, std::chrono::seconds(1));
    });
}

void HotKeySuite::closeMenu() {
    injector().tapKey(XK_Escape);
    require("the menu to close", [] { return !menu().has_value(); });
}

ForeignHotKey::ForeignHotKey(const VirtualDesktop& desktop, xcb_keycode_t key, unsigned modifiers)
    : m_connection(desktop.display()) {
    const auto cookie =
        xcb_grab_key_checked(m_connection, 0, m_connection.root(), static_cast<uint16_t>(modifiers),
                             key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie));
    m_isHeld = error == nullptr;
}

bool isFree(const VirtualDesktop& desktop, xcb_keycode_t key, unsigned modifiers) {
    constexpr unsigned capsLock = XCB_MOD_MASK_LOCK;
    constexpr unsigned numLock = XCB_MOD_MASK_2;
    for (const unsigned locks : {0U, capsLock, numLock, capsLock | numLock}) {
        if (!ForeignHotKey(desktop, key, modifiers | locks).isHeld()) {
            return false;
        }
    }
    return true;
}

} // namespace snapvane::testing
