#include "HotKeyFixture.h"

#include <QMenu>
#include <QWidget>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A menu that is really shown, with a submenu.
class HotKeysAndMenus : public HotKeyFixture {
protected:
    HotKeysAndMenus() {
        m_menu->addAction(QStringLiteral("Entry"));
        m_submenu->addAction(QStringLiteral("Entry"));
    }

    std::shared_ptr<HotKey> m_hotKey = registered(35, 0x1200);
    std::unique_ptr<QMenu> m_menu = std::make_unique<QMenu>();
    QMenu* m_submenu = m_menu->addMenu(QStringLiteral("Submenu"));
};

} // namespace

TEST_F(HotKeysAndMenus, MenuPausesHotKeysWhileItIsOpen) {
    const auto before = m_system.registered;
    m_menu->popup({0, 0});
    EXPECT_TRUE(m_center.isMenuOpen());
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_menu->close();
    EXPECT_FALSE(m_center.isMenuOpen());
    EXPECT_EQ(m_system.registered, before);
}

TEST_F(HotKeysAndMenus, ShortcutRunsWhileAMenuIsOpen) {
    m_menu->popup({0, 0});
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_EQ(m_system.release({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down", "key up"));
}

TEST_F(HotKeysAndMenus, SubmenuBelongsToItsMenu) {
    m_menu->popup({0, 0});
    const int registrations = m_system.registrations;
    m_submenu->popup({10, 10});
    m_submenu->close();
    EXPECT_TRUE(m_center.isMenuOpen());
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_EQ(m_system.registrations, registrations);
    m_menu->close();
    EXPECT_FALSE(m_center.isMenuOpen());
}

TEST_F(HotKeysAndMenus, SubmenuThatStaysKeepsThemPaused) {
    m_menu->popup({0, 0});
    QMenu other;
    other.addAction(QStringLiteral("Entry"));
    other.popup({10, 10});
    m_menu->hide();
    EXPECT_TRUE(m_center.isMenuOpen());
    other.hide();
    EXPECT_FALSE(m_center.isMenuOpen());
}

TEST_F(HotKeysAndMenus, MenuMayBeOpenedAgain) {
    for (int round = 0; round < 3; ++round) {
        m_menu->popup({0, 0});
        EXPECT_THAT(m_system.registered, IsEmpty());
        m_menu->close();
        EXPECT_THAT(m_system.registered, SizeIs(1));
    }
}

TEST_F(HotKeysAndMenus, MenuMayGoWhileItIsOpen) {
    m_menu->popup({0, 0});
    m_menu.reset();
    EXPECT_FALSE(m_center.isMenuOpen());
    EXPECT_THAT(m_system.registered, SizeIs(1));
}

TEST_F(HotKeysAndMenus, OtherWindowsAreNoMenus) {
    QWidget window;
    window.show();
    QWidget popup(nullptr, Qt::Popup);
    popup.show();
    EXPECT_FALSE(m_center.isMenuOpen());
    EXPECT_THAT(m_system.registered, SizeIs(1));
}

TEST_F(HotKeysAndMenus, MenuOpenWhileDisabledIsRemembered) {
    m_center.setEnabled(false);
    m_menu->popup({0, 0});
    m_center.setEnabled(true);
    EXPECT_EQ(m_center.mode(), HotKeyCenter::Mode::menuOpen);
    m_menu->close();
    EXPECT_EQ(m_center.mode(), HotKeyCenter::Mode::normal);
    EXPECT_THAT(m_system.registered, SizeIs(1));
}

TEST_F(HotKeysAndMenus, MenuMayOutliveTheCenter) {
    snapvane::null::NullHotKeys system;
    auto center = std::make_unique<HotKeyCenter>(system);
    m_menu->popup({0, 0});
    EXPECT_TRUE(center->isMenuOpen());
    center.reset();
    m_menu->close();
    EXPECT_FALSE(m_center.isMenuOpen());
}

} // namespace KeyboardShortcuts
