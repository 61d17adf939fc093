#include "platform/xdg/SystemShortcuts.h"

#include "platform/xdg/UsKeys.h"

#include <QDBusConnection>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace snapvane::xdg {

namespace {

TEST(SystemShortcutsWithoutBusTest, AreNone) {
    const QTemporaryDir folder;
    // Named outright: the library would look for one in the usual places otherwise.
    qputenv("DBUS_SESSION_BUS_ADDRESS",
            "unix:path=" + folder.filePath(QStringLiteral("no-bus")).toLocal8Bit());
    qunsetenv("XDG_CURRENT_DESKTOP");
    ASSERT_FALSE(QDBusConnection::sessionBus().isConnected());
    EXPECT_TRUE(systemShortcuts(testing::usKeyOfSymbol).empty());
}

} // namespace

} // namespace snapvane::xdg
