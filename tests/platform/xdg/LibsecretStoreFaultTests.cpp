// A keyring that is locked, absent or hangs, a bus that goes, a user who does not answer: every
// operation ends, in a status other than success.

#include "KeyringSession.h"
#include "Wait.h"
#include "platform/xdg/LibsecretStore.h"
#include "platform/xdg/SecretOperations.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::KeyringSession;
using ::snapvane::testing::KeyringUser;
using ::snapvane::testing::SecretServiceClient;
using ::snapvane::testing::slowness;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString service = u"app.snapvane.Snapvane"_s;
const QString account = u"ferrybox"_s;

constexpr SecretStore::Status isLocked = 2;       // SECRET_ERROR_IS_LOCKED
constexpr SecretStore::Status serviceUnknown = 2; // G_DBUS_ERROR_SERVICE_UNKNOWN
constexpr SecretStore::Status cancelled = 19;     // G_IO_ERROR_CANCELLED

struct Operation {
    const char* name;
    std::function<SecretStore::Status(SecretStore&)> run;
};

void PrintTo(const Operation& row, std::ostream* stream) {
    *stream << row.name;
}

SecretStore::Status copyValue(SecretStore& store) {
    QByteArray value = "untouched";
    const SecretStore::Status status = store.copy(service, account, value);
    EXPECT_TRUE(status == SecretStore::success || value == "untouched");
    return status;
}

SecretStore::Status addValue(SecretStore& store) {
    return store.add(service, account, "new");
}

SecretStore::Status removeValue(SecretStore& store) {
    return store.remove(service, account);
}

/// Each operation once. There is an item that says "old", wherever there is a keyring.
class LibsecretStoreFaultTest : public ::testing::TestWithParam<Operation> {
protected:
    SecretStore::Status run() { return run(m_store); }
    static SecretStore::Status run(SecretStore& store) {
        return SecretOperations::inThread([&store] { return GetParam().run(store); });
    }
    std::future<SecretStore::Status> start() {
        return SecretOperations::start([this] { return GetParam().run(m_store); });
    }

    void startLockedKeyring(KeyringUser user) {
        m_session.startKeyring(user);
        SecretServiceClient client = m_session.client();
        client.put(SecretServiceClient::keyAttributes(), "old");
        client.lockDefaultCollection();
    }
    /// By a keyring that starts anew, unlocked.
    QList<QByteArray> keysOnDisk() {
        m_session.startKeyring();
        return m_session.client().keys();
    }
    void waitForQuestion() {
        testing::require("a question to the user",
                         [this] { return m_session.keyring->isAsking(); });
    }
    static bool isStillRunning(std::future<SecretStore::Status>& operation) {
        return operation.wait_for(std::chrono::milliseconds(300)) == std::future_status::timeout;
    }
    bool isQuestionTakenBack() {
        return testing::waitUntil([this] { return !m_session.keyring->isAsking(); },
                                  std::chrono::seconds(5));
    }

    KeyringSession m_session;
    LibsecretStore m_store;
};

TEST_P(LibsecretStoreFaultTest, WithoutAServiceGivesTheCodeOfTheBus) {
    EXPECT_EQ(run(), serviceUnknown);
}

TEST_P(LibsecretStoreFaultTest, WithoutABusFails) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    EXPECT_NE(run(), SecretStore::success);
}

TEST_P(LibsecretStoreFaultTest, WithoutAnAddressOfABusFails) {
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_NE(run(), SecretStore::success);
}

TEST_P(LibsecretStoreFaultTest, LockedWithNobodyToAskFails) {
    startLockedKeyring(KeyringUser::Absent);
    EXPECT_EQ(run(), isLocked);
    EXPECT_THAT(keysOnDisk(), ElementsAre("old"));
}

TEST_P(LibsecretStoreFaultTest, LockedWhileTheUserRefusesFails) {
    startLockedKeyring(KeyringUser::Refuses);
    EXPECT_EQ(run(), isLocked);
    EXPECT_THAT(keysOnDisk(), ElementsAre("old"));
}

TEST_P(LibsecretStoreFaultTest, LockedSucceedsWhenTheUserUnlocks) {
    startLockedKeyring(KeyringUser::Unlocks);
    EXPECT_EQ(run(), SecretStore::success);
}

TEST_P(LibsecretStoreFaultTest, AQuestionThatNobodyAnswersIsTakenBackInTheEnd) {
    startLockedKeyring(KeyringUser::Ignores);
    LibsecretStore impatient(std::chrono::milliseconds(500));
    QElapsedTimer clock;
    clock.start();
    EXPECT_NE(run(impatient), SecretStore::success);
    EXPECT_GE(clock.elapsed(), 500);
    EXPECT_LT(clock.elapsed(), 5000 * slowness());
    EXPECT_TRUE(isQuestionTakenBack());
}

TEST_P(LibsecretStoreFaultTest, AnOpenQuestionLeavesTheOperationWaiting) {
    startLockedKeyring(KeyringUser::Ignores);
    auto operation = start();
    waitForQuestion();
    EXPECT_TRUE(isStillRunning(operation));
    m_store.close();
    EXPECT_EQ(operation.get(), SecretStore::closed);
    EXPECT_TRUE(isQuestionTakenBack());
}

TEST_P(LibsecretStoreFaultTest, AClosedStoreFailsAtOnce) {
    m_session.startKeyring();
    m_store.close();
    EXPECT_EQ(run(), SecretStore::closed);
}

TEST_P(LibsecretStoreFaultTest, AStoreThatGoesEndsWhatIsUnderWay) {
    startLockedKeyring(KeyringUser::Ignores);
    auto store = std::make_unique<LibsecretStore>();
    auto operation = SecretOperations::start([&] { return GetParam().run(*store); });
    waitForQuestion();
    QElapsedTimer clock;
    clock.start();
    store.reset();
    EXPECT_LT(clock.elapsed(), 5000 * slowness());
    EXPECT_EQ(operation.get(), SecretStore::closed);
}

TEST_P(LibsecretStoreFaultTest, AServiceThatHangsIsGivenUp) {
    m_session.startKeyring();
    m_session.keyring->freeze();
    LibsecretStore impatient(std::chrono::milliseconds(500));
    EXPECT_EQ(run(impatient), cancelled);
}

TEST_P(LibsecretStoreFaultTest, AServiceThatHangsWhileItAsksDoesNotKeepAStoreThatGoes) {
    startLockedKeyring(KeyringUser::Ignores);
    auto store = std::make_unique<LibsecretStore>();
    auto operation = SecretOperations::start([&] { return GetParam().run(*store); });
    waitForQuestion();
    m_session.keyring->freeze();
    QElapsedTimer clock;
    clock.start();
    store.reset();
    EXPECT_LT(clock.elapsed(), 2000 * slowness());
    EXPECT_EQ(operation.get(), SecretStore::closed);
}

TEST_P(LibsecretStoreFaultTest, AServiceThatDiesWhileItAsksEndsTheOperation) {
    startLockedKeyring(KeyringUser::Ignores);
    auto operation = start();
    waitForQuestion();
    m_session.keyring->kill();
    EXPECT_NE(operation.get(), SecretStore::success);
}

TEST_P(LibsecretStoreFaultTest, AServiceThatComesBackIsUsedAgain) {
    m_session.startKeyring();
    m_session.client().put(SecretServiceClient::keyAttributes(), "old");
    EXPECT_EQ(copyValue(m_store), SecretStore::success);
    m_session.keyring->kill();
    EXPECT_NE(run(), SecretStore::success);
    m_session.startKeyring();
    EXPECT_EQ(run(), SecretStore::success);
}

TEST_P(LibsecretStoreFaultTest, ABusThatGoesMeanwhileEndsTheOperationAndNotTheProgram) {
    startLockedKeyring(KeyringUser::Ignores);
    auto operation = start();
    waitForQuestion();
    m_session.bus.stop();
    EXPECT_NE(operation.get(), SecretStore::success);
    EXPECT_NE(run(), SecretStore::success);
}

INSTANTIATE_TEST_SUITE_P(All, LibsecretStoreFaultTest,
                         ::testing::Values(Operation{"Copy", copyValue}, Operation{"Add", addValue},
                                           Operation{"Remove", removeValue}),
                         [](const auto& row) { return row.param.name; });

} // namespace

} // namespace snapvane::xdg
