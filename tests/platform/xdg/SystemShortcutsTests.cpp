#include "platform/xdg/SystemShortcuts.h"

#include "platform/xdg/FakeBusService.h"
#include "platform/xdg/KdeShortcutInfo.h"
#include "platform/xdg/UsKeys.h"

#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QThread>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::Combination;
using ::snapvane::testing::combinations;
using ::snapvane::testing::FakeBusService;
using ::snapvane::testing::KdeShortcutInfo;
using ::snapvane::testing::KdeShortcutInfos;
using ::snapvane::testing::usKeyOfSymbol;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

const QString kde = u"org.kde.kglobalaccel"_s;
const QString xfce = u"org.xfce.Xfconf"_s;

const Combination ofCloseInGnome = {118, CarbonModifier::option};

void answerAsKde(const QDBusMessage& message, const QDBusConnection& connection) {
    connection.send(message.createReply(
        message.member() == u"allComponents"_s
            ? QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(u"/component"_s)})
            : QVariant::fromValue(KdeShortcutInfos{{.keys = {Qt::Key_F12}, .defaultKeys = {}}})));
}

void answerAsXfce(const QDBusMessage& message, const QDBusConnection& connection) {
    connection.send(message.createReply(
        QVariant(QVariantMap{{u"/xfwm4/default/<Super>F6"_s, u"something"_s}})));
}

void stayAway(const QDBusMessage&, const QDBusConnection&) {}

class SystemShortcutsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { testing::registerKdeTypes(); }
    void TearDown() override { qunsetenv("XDG_CURRENT_DESKTOP"); }

    static std::vector<Combination> shortcuts() {
        return combinations(systemShortcuts(usKeyOfSymbol));
    }
};

TEST_F(SystemShortcutsTest, AreThoseOfAllDesktops) {
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    const FakeBusService kdeService(kde, answerAsKde);
    const FakeBusService xfceService(xfce, answerAsXfce);
    EXPECT_THAT(shortcuts(), IsSupersetOf({ofCloseInGnome, Combination(111, 0),
                                           Combination(97, CarbonModifier::command)}));
}

TEST_F(SystemShortcutsTest, OnNoneOfTheDesktopsThereAreNone) {
    EXPECT_THAT(shortcuts(), IsEmpty());
}

TEST_F(SystemShortcutsTest, SilentServicesTakeNothingFromTheOthersAndLittleTime) {
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    const FakeBusService kdeService(kde, stayAway);
    const FakeBusService xfceService(xfce, stayAway);
    QElapsedTimer clock;
    clock.start();
    EXPECT_THAT(shortcuts(), Contains(ofCloseInGnome));
    EXPECT_LT(clock.elapsed(), 1500);
}

TEST_F(SystemShortcutsTest, ASilentServiceLeavesTheNextItsTime) {
    const FakeBusService kdeService(kde, stayAway);
    const FakeBusService xfceService(
        xfce, [](const QDBusMessage& message, const QDBusConnection& connection) {
            QThread::msleep(50);
            answerAsXfce(message, connection);
        });
    EXPECT_THAT(shortcuts(), Contains(Combination(97, CarbonModifier::command)));
}

} // namespace

} // namespace snapvane::xdg
