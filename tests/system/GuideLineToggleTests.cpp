// The entry of the status menu that turns the guide lines on and off, chosen in the menu of a
// desktop panel, which draws it in a process of its own.

#include "PointerAidsSuite.h"
#include "XfcePanel.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QSettings>

#include <ctime>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QPoint pointer(640, 360);

/// What the agent's menu looks like to a host, and a click on an entry of it.
class HostedMenu {
public:
    /// Throws std::runtime_error when no icon comes up.
    explicit HostedMenu(const VirtualDesktop& desktop)
        : m_bus(QDBusConnection::connectToBus(desktop.busAddress(), connectionName)) {
        require(
            "the icon on the panel", [this] { return !findItem().isEmpty(); },
            std::chrono::seconds(15));
        const QString item = findItem();
        const qsizetype slash = item.indexOf(u'/');
        m_service = item.left(slash);
        m_path = property(m_service, item.mid(slash), u"org.kde.StatusNotifierItem"_s, u"Menu"_s)
                     .value<QDBusObjectPath>()
                     .path();
    }
    ~HostedMenu() { QDBusConnection::disconnectFromBus(connectionName); }
    HostedMenu(const HostedMenu&) = delete;
    HostedMenu& operator=(const HostedMenu&) = delete;

    struct Entry {
        int id = -1;
        bool isChecked = false;
    };

    [[nodiscard]] Entry entry(const QString& label) const {
        QDBusMessage call =
            QDBusMessage::createMethodCall(m_service, m_path, menuInterface, u"GetLayout"_s);
        call << 0 << -1 << QStringList();
        const QVariantList answer = m_bus.call(call).arguments();
        Entry found;
        if (answer.size() == 2) {
            search(answer.at(1).value<QDBusArgument>(), label, found);
        }
        return found;
    }

    void click(const QString& label) const {
        QDBusMessage call =
            QDBusMessage::createMethodCall(m_service, m_path, menuInterface, u"Event"_s);
        call << entry(label).id << u"clicked"_s
             << QVariant::fromValue(QDBusVariant(QVariant(QString())))
             << static_cast<uint>(std::time(nullptr));
        EXPECT_EQ(m_bus.call(call).type(), QDBusMessage::ReplyMessage);
    }

private:
    static constexpr char menuInterfaceName[] = "com.canonical.dbusmenu";
    const QString menuInterface = QLatin1String(menuInterfaceName);
    static inline const QString connectionName = u"guide-line-toggle-test"_s;

    [[nodiscard]] QVariant property(const QString& service, const QString& path,
                                    const QString& interface, const QString& name) const {
        QDBusMessage question = QDBusMessage::createMethodCall(
            service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << interface << name;
        const QDBusReply<QDBusVariant> reply = m_bus.call(question);
        return reply.value().variant();
    }

    /// Bus name and object path in one, as hosts pass it on.
    [[nodiscard]] QString findItem() const {
        const QString watcher = u"org.kde.StatusNotifierWatcher"_s;
        return property(watcher, u"/StatusNotifierWatcher"_s, watcher,
                        u"RegisteredStatusNotifierItems"_s)
            .toStringList()
            .value(0);
    }

    static void search(const QDBusArgument& node, const QString& label, Entry& found) {
        int id = -1;
        QVariantMap properties;
        node.beginStructure();
        node >> id >> properties;
        if (properties.value(u"label"_s).toString() == label) {
            found = {id, properties.value(u"toggle-state"_s).toInt() == 1};
        }
        node.beginArray();
        while (!node.atEnd()) {
            QDBusVariant child;
            node >> child;
            search(child.variant().value<QDBusArgument>(), label, found);
        }
        node.endArray();
        node.endStructure();
    }

    QDBusConnection m_bus;
    QString m_service;
    QString m_path;
};

class GuideLineToggle : public PointerAidsSuite {
protected:
    static void SetUpTestSuite() {
        startTwoScreens(Compositor::None);
        s_panel = std::make_unique<XfcePanel>(desktop());
        s_panel->show();
        startAgent("showCrosshairLinesWhileCapturing=false\n");
        s_menu = std::make_unique<HostedMenu>(desktop());
    }

    static void TearDownTestSuite() {
        s_menu.reset();
        endAgent();
        s_panel.reset();
        PointerAidsSuite::TearDownTestSuite();
    }

    static void toggle() { s_menu->click(label); }

    /// Checks what the menu and the preferences file say.
    static void expectTurned(bool on) {
        EXPECT_TRUE(waitUntil(
            [on] {
                const QSettings file(desktop().folders().path(u"config/Snapvane/Snapvane.conf"_s),
                                     QSettings::IniFormat);
                const QVariant value = file.value(u"showCrosshairLinesWhileCapturing"_s);
                return value.isValid() && value.toBool() == on;
            },
            std::chrono::seconds(3)))
            << "the preferences file does not say " << on;
        EXPECT_TRUE(waitUntil([on] { return s_menu->entry(label).isChecked == on; },
                              std::chrono::seconds(3)))
            << "the entry's check mark is not " << on;
    }

    static inline const QString label = u"Show crosshair lines while capturing"_s;

private:
    static std::unique_ptr<XfcePanel> s_panel;
    static std::unique_ptr<HostedMenu> s_menu;
};

std::unique_ptr<XfcePanel> GuideLineToggle::s_panel;
std::unique_ptr<HostedMenu> GuideLineToggle::s_menu;

TEST_F(GuideLineToggle, ShowsAndHidesTheLinesOfARunningSelection) {
    beginSelection(pointer);
    EXPECT_TRUE(loupe().shows(pointer, background()));
    EXPECT_EQ(lines().windowCount(), 0);
    toggle();
    EXPECT_TRUE(lines().show(pointer));
    expectTurned(true);
    injector().moveTo({1500, 500});
    expectAidsAt({1500, 500});
    toggle();
    EXPECT_TRUE(lines().areGone());
    expectTurned(false);
    injector().moveTo(pointer);
    EXPECT_TRUE(loupe().shows(pointer, background()));
    EXPECT_TRUE(lines().windows().empty());
    expectVeiledDesktop();

    toggle();
    EXPECT_TRUE(lines().show(pointer));
    expectExactDrag({900, 300}, {400, 719}, {400, 300, 500, 420}, u"guide-line-toggle"_s);
    toggle();
    expectTurned(false);
}

TEST_F(GuideLineToggle, ShowsNoLinesWithoutASelection) {
    toggle();
    expectTurned(true);
    pause(std::chrono::milliseconds(300));
    EXPECT_TRUE(lines().windows().empty());
    EXPECT_TRUE(samePicture(background(), settledGlass(), u"guide-line-toggle-idle"_s));
    beginSelection(pointer);
    expectAidsAt(pointer);
    cancel();
    toggle();
    expectTurned(false);
    beginSelection(pointer);
    EXPECT_TRUE(loupe().shows(pointer, background()));
    EXPECT_TRUE(lines().windows().empty());
    cancel();
}

} // namespace

} // namespace snapvane::testing
