#include "app/ApplicationService.h"

#include "app/AppDelegateFixture.h"
#include "base/AppIdentity.h"
#include "selection/LogCapture.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QThread>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const QString name = QLatin1String(applicationIdentifier);
const QString path = QLatin1String(applicationObjectPath);
const QString interface = QStringLiteral("org.freedesktop.Application");

class ApplicationServiceTest : public testing::DelegateTest {
protected:
    static void SetUpTestSuite() { s_bus = std::make_unique<testing::PrivateBus>(); }
    static void TearDownTestSuite() { s_bus.reset(); }

    void SetUp() override { ASSERT_TRUE(s_bus->isRunning()); }
    void TearDown() override {
        QDBusConnection::sessionBus().unregisterService(name);
        QDBusConnection::disconnectFromBus(QStringLiteral("other"));
    }

    /// Calls the service as another program would, and waits for the answer while it is served.
    QDBusMessage call(const QString& method, const QVariantList& arguments) {
        return call(interface, method, arguments);
    }
    QDBusMessage call(const QString& ofInterface, const QString& method,
                      const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(name, path, ofInterface, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = other().asyncCall(message, 5000);
        QElapsedTimer clock;
        clock.start();
        while (!pending.isFinished() && clock.elapsed() < 6000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        testing::settle();
        return pending.reply();
    }
    QDBusMessage activateAction(const QString& action) {
        return call(QStringLiteral("ActivateAction"), {action, QVariantList(), QVariantMap()});
    }
    QDBusConnection other() { return s_bus->connect(QStringLiteral("other")); }

    static inline std::unique_ptr<testing::PrivateBus> s_bus;
};

TEST_F(ApplicationServiceTest, TheFirstOneTakesTheName) {
    EXPECT_FALSE(other().interface()->isServiceRegistered(name).value());
    ApplicationService service(*delegate);
    EXPECT_EQ(service.claim(), ApplicationService::Claim::First);
    EXPECT_TRUE(other().interface()->isServiceRegistered(name).value());
}

TEST_F(ApplicationServiceTest, NobodyCanTakeTheNameAway) {
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    const auto reply =
        other().interface()->registerService(name, QDBusConnectionInterface::ReplaceExistingService,
                                             QDBusConnectionInterface::AllowReplacement);
    EXPECT_NE(reply.value(), QDBusConnectionInterface::ServiceRegistered);
}

/// Another instance: owns the name on a connection and a thread of its own, and keeps what it is
/// asked.
class OtherInstance : public QDBusVirtualObject {
public:
    explicit OtherInstance(const QDBusConnection& connection) : m_connection(connection) {
        moveToThread(&m_thread);
        m_connection.registerVirtualObject(path, this);
        m_connection.registerService(name);
        m_thread.start();
    }
    ~OtherInstance() override {
        m_connection.unregisterService(name);
        m_connection.unregisterObject(path);
        m_thread.quit();
        m_thread.wait();
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        {
            const std::scoped_lock lock(m_mutex);
            m_calls.push_back((message.interface() + QLatin1Char('.') + message.member() +
                               QLatin1Char(' ') + message.signature())
                                  .toStdString());
        }
        return connection.send(message.createReply());
    }
    std::vector<std::string> calls() const {
        const std::scoped_lock lock(m_mutex);
        return m_calls;
    }

private:
    QDBusConnection m_connection;
    QThread m_thread;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
};

TEST_F(ApplicationServiceTest, ASecondOneAsksTheFirstToShowItsSettings) {
    const OtherInstance first(other());
    ApplicationService service(*delegate);
    EXPECT_EQ(service.claim(), ApplicationService::Claim::AlreadyRunning);
    EXPECT_THAT(first.calls(), ElementsAre("org.freedesktop.Application.Activate a{sv}"));
}

TEST_F(ApplicationServiceTest, TheNameIsFreeAgainWhenTheOtherIsGone) {
    { const OtherInstance first(other()); }
    ApplicationService service(*delegate);
    EXPECT_EQ(service.claim(), ApplicationService::Claim::First);
}

TEST_F(ApplicationServiceTest, CaptureAreaGoesThroughTheGate) {
    launch();
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    EXPECT_EQ(activateAction(QStringLiteral("capture-area")).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(isSelecting());
    EXPECT_EQ(platform.overlays().menuWaits, 1);
}

TEST_F(ApplicationServiceTest, CaptureAreaWithoutPermissionStartsNothing) {
    launch(false);
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    activateAction(QStringLiteral("capture-area"));
    EXPECT_FALSE(isSelecting());
    EXPECT_EQ(alerts.shown.size(), 1U);
}

TEST_F(ApplicationServiceTest, SettingsAndAboutAreAnswered) {
    launch();
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    (void)news();
    const testing::LogCapture log;
    EXPECT_EQ(activateAction(QStringLiteral("settings")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(activateAction(QStringLiteral("about")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(QStringLiteral("Activate"), {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(QStringLiteral("Open"), {QStringList(), QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_THAT(log.errors(), IsEmpty());
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(ApplicationServiceTest, QuitEndsTheEventLoop) {
    launch();
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    QTimer::singleShot(0, delegate.get(), [this] {
        QDBusMessage message =
            QDBusMessage::createMethodCall(name, path, interface, QStringLiteral("ActivateAction"));
        message.setArguments({QStringLiteral("quit"), QVariantList(), QVariantMap()});
        other().send(message);
    });
    QTimer::singleShot(5000, delegate.get(), [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(ApplicationServiceTest, UnknownActionsAreLogged) {
    launch();
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    const testing::LogCapture log;
    EXPECT_EQ(activateAction(QStringLiteral("fly")).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(log.errors(), ElementsAre(HasSubstr("fly")));
    EXPECT_FALSE(isSelecting());
}

TEST_F(ApplicationServiceTest, WrongArgumentsAreAnError) {
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    EXPECT_EQ(call(QStringLiteral("ActivateAction"), {QStringLiteral("settings")}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(QStringLiteral("NoSuchMethod"), {}).type(), QDBusMessage::ErrorMessage);
}

/// The part of the introspection that describes one method.
std::string method(const std::string& xml, const std::string& named) {
    const std::size_t start = xml.find("<method name=\"" + named + "\"");
    const std::size_t end = xml.find("</method>", start);
    return start == std::string::npos ? "" : xml.substr(start, end - start);
}

std::string signature(const std::string& methodXml) {
    std::string result;
    const std::string key = " type=\"";
    for (std::size_t at = methodXml.find(key); at != std::string::npos;
         at = methodXml.find(key, at)) {
        at += key.size();
        result += methodXml.substr(at, methodXml.find('"', at) - at);
    }
    return result;
}

TEST_F(ApplicationServiceTest, HasTheStandardInterface) {
    ApplicationService service(*delegate);
    ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    const QDBusMessage reply = call(QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                    QStringLiteral("Introspect"), {});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage);
    const std::string xml = reply.arguments().value(0).toString().toStdString();
    EXPECT_THAT(xml, HasSubstr("<interface name=\"org.freedesktop.Application\">"));
    EXPECT_EQ(signature(method(xml, "Activate")), "a{sv}");
    EXPECT_EQ(signature(method(xml, "Open")), "asa{sv}");
    EXPECT_EQ(signature(method(xml, "ActivateAction")), "sava{sv}");
}

TEST_F(ApplicationServiceTest, AServiceThatGoesIsSilent) {
    launch();
    {
        ApplicationService service(*delegate);
        ASSERT_EQ(service.claim(), ApplicationService::Claim::First);
    }
    EXPECT_EQ(activateAction(QStringLiteral("capture-area")).type(), QDBusMessage::ErrorMessage);
    EXPECT_FALSE(isSelecting());
}

} // namespace

} // namespace snapvane
