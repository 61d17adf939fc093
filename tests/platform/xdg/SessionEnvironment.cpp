#include "platform/xdg/SessionEnvironment.h"

#include "Wait.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString another = u"org.example.Another"_s;

QString mark(const QString& service) {
    return QDir::home().filePath(u"started-"_s + service);
}

QString dataFolder() {
    return QDir::home().filePath(u".local/share"_s);
}

void makeStartable(const QString& service) {
    const QString folder = dataFolder() + u"/dbus-1/services"_s;
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + u'/' + service + u".service"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    // A failure is the only end of which the bus knows that nothing will come of it any more.
    file.write(u"[D-BUS Service]\nName=%1\nExec=%2 -c \"touch '%3'; exit 1\"\n"_s
                   .arg(service, QStandardPaths::findExecutable(u"sh"_s), mark(service))
                   .toUtf8());
}

[[maybe_unused]] const auto* const environment =
    ::testing::AddGlobalTestEnvironment(new SessionEnvironment);

} // namespace

void SessionEnvironment::SetUp() {
    // Which desktop a test runs on is for the test to say.
    qunsetenv("XDG_CURRENT_DESKTOP");
    qputenv("GSETTINGS_BACKEND", "keyfile");
    // Otherwise the bus would look in the folder of whoever runs the tests, not in that of HOME.
    qputenv("XDG_DATA_HOME", dataFolder().toLocal8Bit());
    for (const QString& service : {u"org.kde.kglobalaccel"_s, u"org.xfce.Xfconf"_s, another}) {
        makeStartable(service);
    }
    m_bus = std::make_unique<PrivateBus>();
    ASSERT_TRUE(m_bus->isRunning());
}

void SessionEnvironment::TearDown() {
    m_bus.reset();
}

bool SessionEnvironment::wasStarted(const QString& service) {
    return QFile::exists(mark(service));
}

void SessionEnvironment::letTheBusStartAnother() {
    QFile::remove(mark(another));
    QDBusConnection::sessionBus().interface()->startService(another);
    require("a started service", [] { return wasStarted(another); });
}

} // namespace snapvane::testing
