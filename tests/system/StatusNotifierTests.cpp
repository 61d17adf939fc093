// The icon with a host of the StatusNotifier kind, which shows it and draws the menu in a process
// of its own: a real desktop panel.

#include "AgentProcess.h"
#include "AgentSuite.h"
#include "HotKeySuite.h"
#include "XfcePanel.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <X11/keysym.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QPoint iconPlace = {16, 14};

class StatusNotifier : public ::testing::Test {
protected:
    void SetUp() override { m_panel.emplace(m_desktop); }

    [[nodiscard]] X11Probe probe() const { return X11Probe(m_desktop.connection()); }
    [[nodiscard]] Injector injector() const { return Injector(m_desktop.connection()); }

    /// How many icons the panel has been told of.
    [[nodiscard]] qsizetype registeredItems() const {
        const QString name = u"status-notifier-test"_s;
        const QString watcher = u"org.kde.StatusNotifierWatcher"_s;
        const QDBusConnection bus = QDBusConnection::connectToBus(m_desktop.busAddress(), name);
        QDBusMessage question = QDBusMessage::createMethodCall(
            watcher, u"/StatusNotifierWatcher"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << watcher << u"RegisteredStatusNotifierItems"_s;
        const QDBusReply<QDBusVariant> reply = bus.call(question);
        const qsizetype count = reply.value().variant().toStringList().size();
        QDBusConnection::disconnectFromBus(name);
        return count;
    }

    [[nodiscard]] bool waitForIcon() const {
        return waitUntil([this] { return registeredItems() == 1; }, std::chrono::seconds(15));
    }

    /// The menu that a click on the icon opens, whoever draws it.
    [[nodiscard]] std::optional<WindowInfo> menu() const {
        for (const WindowInfo& window : probe().windows()) {
            if (window.viewable && window.overrideRedirect && window.rect.height() > 80 &&
                window.rect.width() > 120 && window.rect.top() < 100) {
                return window;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] WindowInfo openMenu(int button) const {
        // The panel takes a moment to lay a new icon out.
        require("the menu", [&] {
            if (!menu()) {
                injector().click(iconPlace, button);
            }
            return waitUntil([this] { return menu().has_value(); }, std::chrono::seconds(1));
        });
        return *menu();
    }

    /// Chooses the first entry by the pointer and drags over the place where the menu stood.
    void expectCaptureWithoutMenu(const WindowInfo& menuWindow, const QImage& before) {
        const QPoint entry = {menuWindow.rect.center().x(), menuWindow.rect.top() + 14};
        injector().moveTo(entry - QPoint(3, 0));
        injector().click(entry);
        m_agent.waitForOverlay();
        const QRect place = menuWindow.rect.adjusted(0, 30, 0, 0);
        injector().drag(place.topLeft(), place.topLeft() + QPoint(place.width(), place.height()));
        const QImage picture(m_agent.waitForPicture());
        EXPECT_TRUE(samePicture(before.copy(place), picture, u"status-notifier"_s));
    }

    void tapHotKey() const {
        injector().pressKeyCodes(hotKey);
        injector().releaseKeyCodes(hotKey);
    }
    void cancelSelection() {
        injector().tapKey(XK_Escape);
        EXPECT_TRUE(m_agent.waitForOverlayGone());
    }
    /// Opens the menu that the panel draws, during which the shortcut is given up.
    [[nodiscard]] WindowInfo openHostsMenu() const {
        WindowInfo window;
        require("the shortcut to be given up", [&] {
            window = openMenu(3);
            if (waitUntil([this] { return isFree(m_desktop); }, std::chrono::seconds(1))) {
                return true;
            }
            // The panel's own menu: the click came before the icon was in its place.
            injector().tapKey(XK_Escape);
            require("the panel's menu to close", [this] { return !menu().has_value(); });
            return false;
        });
        EXPECT_NE(window.className, u"Snapvane"_s);
        return window;
    }

    VirtualDesktop m_desktop{};
    std::optional<XfcePanel> m_panel;
    AgentProcess m_agent{m_desktop};
};

TEST_F(StatusNotifier, OurMenuOpensOnAClickAndIsNotInThePicture) {
    m_panel->show();
    ASSERT_TRUE(waitForIcon());
    const QImage before = grabSettledScreen(m_desktop.connection(), m_desktop.rect());
    const WindowInfo window = openMenu(1);
    EXPECT_EQ(window.className, u"Snapvane"_s);
    expectCaptureWithoutMenu(window, before);
}

TEST_F(StatusNotifier, TheHostsOwnMenuIsNotInThePicture) {
    m_panel->show();
    ASSERT_TRUE(waitForIcon());
    const QImage before = grabSettledScreen(m_desktop.connection(), m_desktop.rect());
    const WindowInfo window = openMenu(3);
    EXPECT_NE(window.className, u"Snapvane"_s);
    expectCaptureWithoutMenu(window, before);
}

/// This host tells when its menu opens and keeps silent when it closes.
TEST_F(StatusNotifier, TheShortcutComesBackAfterTheHostsMenuWasClosed) {
    m_panel->show();
    ASSERT_TRUE(waitForIcon());
    (void)openHostsMenu();
    injector().tapKey(XK_Escape);
    require("the menu to close", [this] { return !menu().has_value(); });
    const bool works = waitUntil(
        [this] {
            tapHotKey();
            return waitUntil([this] { return m_agent.overlayCount() > 0; },
                             std::chrono::milliseconds(250));
        },
        std::chrono::seconds(12));
    ASSERT_TRUE(works) << m_agent.log().toStdString();
    m_agent.waitForOverlay();
    cancelSelection();
}

TEST_F(StatusNotifier, TheShortcutComesBackAtOnceAfterAnEntryOfTheHostsMenuWasChosen) {
    m_panel->show();
    ASSERT_TRUE(waitForIcon());
    const WindowInfo window = openHostsMenu();
    injector().click({window.rect.center().x(), window.rect.top() + 14});
    m_agent.waitForOverlay();
    cancelSelection();
    tapHotKey();
    EXPECT_TRUE(waitUntil([this] { return m_agent.overlayCount() > 0; }, std::chrono::seconds(1)));
    m_agent.waitForOverlay();
    cancelSelection();
}

TEST_F(StatusNotifier, IconComesAgainWithTheHost) {
    m_panel->show();
    ASSERT_TRUE(waitForIcon());
    m_panel->close();
    require("the icon to go with its host", [this] { return registeredItems() == 0; });
    m_panel->show();
    EXPECT_TRUE(waitForIcon());
    EXPECT_FALSE(openMenu(1).rect.isEmpty());
}

} // namespace

} // namespace snapvane::testing
