// The icon in the tray and its menu, with hosts that come late, restart or are not there at all.

#include "AgentProcess.h"
#include "AgentSuite.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class Tray : public ::testing::Test {
protected:
    void startDesktop(TrayHost host, Compositor compositor = Compositor::None) {
        DesktopOptions options;
        options.trayHost = host;
        options.compositor = compositor;
        m_desktop = std::make_unique<VirtualDesktop>(options);
        m_agent = std::make_unique<AgentProcess>(*m_desktop);
    }

    [[nodiscard]] X11Probe probe() const { return X11Probe(m_desktop->connection()); }
    [[nodiscard]] Injector injector() const { return Injector(m_desktop->connection()); }

    /// A small window of ours inside the tray's panel.
    [[nodiscard]] std::optional<WindowInfo> icon() const {
        for (const WindowInfo& window : probe().windowsOfClass(u"Snapvane"_s)) {
            const bool inPanel = window.rect.top() >= 1080 - 40 && window.rect.width() <= 64;
            if (window.viewable && inPanel && window.rect.width() > 4) {
                return window;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<WindowInfo> menu() const {
        for (const WindowInfo& window : probe().windowsOfClass(u"Snapvane"_s)) {
            // What a selection leaves waits off the desktop until it goes.
            const bool isSeen = window.viewable && window.rect.intersects(m_desktop->rect());
            if (isSeen && window.overrideRedirect && window.rect.height() > 80 &&
                window.rect.width() > 80) {
                return window;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] bool waitForIcon() const {
        return waitUntil([this] { return icon().has_value(); }, std::chrono::seconds(8));
    }

    /// Clicks the icon and gives the place of the menu.
    [[nodiscard]] QRect openMenu(int button = 1) const {
        require("the tray icon", [this] { return icon().has_value(); });
        injector().click(icon()->rect.center(), button);
        require("the menu", [this] { return menu().has_value(); });
        return menu()->rect;
    }

    /// Chooses the first entry and drags over the place where the menu stood.
    void expectCaptureWithoutMenu(const QRect& place, const QImage& before,
                                  const std::function<void()>& choose) {
        m_agent->clearPictures();
        choose();
        m_agent->waitForOverlay();
        const QRect rect = place & m_desktop->rect().adjusted(0, 0, 0, -60);
        injector().drag(rect.topLeft(), rect.topLeft() + QPoint(rect.width(), rect.height()));
        const QImage picture(m_agent->waitForPicture());
        EXPECT_TRUE(samePicture(before.copy(rect), picture, u"tray-menu"_s));
    }

    std::unique_ptr<VirtualDesktop> m_desktop;
    std::unique_ptr<AgentProcess> m_agent;
};

TEST_F(Tray, IconAppears) {
    startDesktop(TrayHost::Trayer);
    EXPECT_TRUE(waitForIcon());
}

TEST_F(Tray, CaptureChosenByKeyboardHasNoMenuInIt) {
    startDesktop(TrayHost::Trayer);
    ASSERT_TRUE(waitForIcon());
    const QImage before = grabSettledScreen(m_desktop->connection(), m_desktop->rect());
    const QRect place = openMenu();
    expectCaptureWithoutMenu(place, before, [this] {
        injector().tapKey(XK_Down);
        injector().tapKey(XK_Return);
    });
}

TEST_F(Tray, CaptureChosenByMouseHasNoMenuInIt) {
    startDesktop(TrayHost::Trayer, Compositor::PicomFading);
    ASSERT_TRUE(waitForIcon());
    const QImage before = grabSettledScreen(m_desktop->connection(), m_desktop->rect());
    const QRect place = openMenu();
    expectCaptureWithoutMenu(place, before, [&] {
        // The middle of the first entry.
        injector().moveTo({place.center().x(), place.top() + 10});
        injector().click({place.center().x(), place.top() + 15});
    });
}

TEST_F(Tray, RightClickOpensTheMenuAsWell) {
    startDesktop(TrayHost::Trayer);
    ASSERT_TRUE(waitForIcon());
    EXPECT_FALSE(openMenu(3).isEmpty());
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(waitUntil([this] { return !menu().has_value(); }, std::chrono::seconds(2)));
}

TEST_F(Tray, IconAppearsWhenTheHostComesLate) {
    startDesktop(TrayHost::None);
    pause(std::chrono::milliseconds(1000));
    m_desktop->startTray();
    EXPECT_TRUE(waitForIcon());
}

TEST_F(Tray, IconAppearsAgainAfterTheHostRestarted) {
    startDesktop(TrayHost::Trayer);
    ASSERT_TRUE(waitForIcon());
    m_desktop->stopTray();
    require("the icon to go with its host", [this] { return !icon().has_value(); });
    m_desktop->startTray();
    EXPECT_TRUE(waitForIcon());
    EXPECT_FALSE(openMenu().isEmpty());
}

TEST_F(Tray, AgentWorksWithoutAnyTray) {
    startDesktop(TrayHost::None);
    EXPECT_FALSE(icon().has_value());
    EXPECT_EQ(m_agent->capture({100, 100}, {300, 200}).size(), QSize(200, 100));
}

} // namespace

} // namespace snapvane::testing
