#pragma once

#include "AgentSuite.h"
#include "ServerKeys.h"

#include <vector>

namespace snapvane::testing {

using Keys = std::vector<xcb_keycode_t>;

/// The shortcut of a fresh installation.
inline const Keys hotKey = {serverKey::control, serverKey::shift, serverKey::p};

/// A desktop with a tray and the user's hands on its keyboard. Each test leaves the keyboard as it
/// found it: no key down, no lock on, a US layout.
class HotKeySuite : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite() { s_desktop.reset(); }

    void TearDown() override;

    static VirtualDesktop& desktop() { return *s_desktop; }
    static X11Probe probe() { return X11Probe(s_desktop->connection()); }
    static Injector injector() { return Injector(s_desktop->connection()); }

    static void press(const Keys& keys) { injector().pressKeyCodes(keys); }
    static void release(const Keys& keys) { injector().releaseKeyCodes(keys); }
    static void tap(const Keys& keys);
    /// Runs setxkbmap.
    void setLayout(const QStringList& arguments);
    /// Runs xmodmap with these expressions.
    void setModifiers(const QStringList& expressions);

    /// Checks that the keys start a selection, and ends it.
    static void expectStarts(AgentProcess& agent, const Keys& keys = hotKey);
    /// The same, where the agent may take a while to get ready for them.
    static void expectStartsSoon(AgentProcess& agent, std::chrono::milliseconds limit,
                                 const Keys& keys = hotKey);
    /// Checks that no selection is open and none opens for a while.
    static void expectNoSelection(const AgentProcess& agent);
    static void cancelSelection(AgentProcess& agent);

    /// The agent's icon in the tray and the menu that it has opened.
    static std::optional<WindowInfo> icon();
    static std::optional<WindowInfo> menu();
    static void openMenu();
    static void closeMenu();

private:
    void resetKeyboard();

    static std::unique_ptr<VirtualDesktop> s_desktop;
    bool m_isMapChanged = false;
};

/// Another program that holds a key with exactly these modifiers, until the object goes.
class ForeignHotKey {
public:
    ForeignHotKey(const VirtualDesktop& desktop, xcb_keycode_t key, unsigned modifiers);

    /// False when the server has refused.
    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    XcbConnection m_connection;
    bool m_isHeld = false;
};

/// Whether another program can have the combination, whatever lock keys are on. Found out by taking
/// it for a moment, so it is nothing to ask while the agent may be about to take it.
bool isFree(const VirtualDesktop& desktop, xcb_keycode_t key = serverKey::p,
            unsigned modifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT);

} // namespace snapvane::testing
