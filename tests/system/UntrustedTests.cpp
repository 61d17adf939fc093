// An X client that the server does not trust may not read the screen: that is this desktop's
// missing permission.

#include "AgentSuite.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

/// A window of ours large enough to be a message, managed by the window manager.
std::optional<WindowInfo> alertOn(const VirtualDesktop& desktop) {
    for (const WindowInfo& window : X11Probe(desktop.connection()).windows()) {
        const bool ours = window.className == u"Snapvane"_s || window.className == u"snapvane"_s;
        if (ours && window.viewable && window.rect.width() > 200 && window.rect.height() > 60) {
            return window;
        }
    }
    return std::nullopt;
}

TEST(Untrusted, AlertAtTheStartAndNoOverlay) {
    VirtualDesktop desktop;
    const QString cookies = desktop.folders().path(u"untrusted.xauth"_s);
    desktop.run(u"xauth"_s, {u"-f"_s, cookies, u"generate"_s, desktop.display(), u"."_s,
                             u"untrusted"_s, u"timeout"_s, u"0"_s});
    AgentOptions options;
    options.variables = {{u"XAUTHORITY"_s, cookies}};
    options.waitUntilReady = false;
    AgentProcess agent(desktop, options);
    ASSERT_TRUE(waitUntil([&] { return alertOn(desktop).has_value(); }, std::chrono::seconds(10)))
        << agent.log().toStdString();

    // "Not Now", as any other way of closing it.
    Injector injector(desktop.connection());
    injector.click(alertOn(desktop)->rect.topLeft() + QPoint(5, 5));
    require("the alert to close", [&] {
        injector.tapKey(XK_Escape);
        return !alertOn(desktop).has_value();
    });

    agent.waitForBusName();
    agent.activateAction(u"capture-area"_s);
    EXPECT_FALSE(waitUntil([&] { return agent.overlayCount() > 0 || alertOn(desktop); },
                           std::chrono::milliseconds(1000)));
    EXPECT_TRUE(agent.process().isRunning()) << agent.log().toStdString();
}

} // namespace

} // namespace snapvane::testing
