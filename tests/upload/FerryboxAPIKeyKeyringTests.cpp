// The key in a real keyring, as the program and other programs see it.

#include "KeyringSession.h"
#include "Wait.h"
#include "base/Await.h"
#include "platform/xdg/LibsecretStore.h"
#include "upload/FerryboxAPIKeyStore.h"
#include "upload/FerryboxAPIKeyTasks.h"
#include "upload/FerryboxKeychainError.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <gmock/gmock.h>

#include <future>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using ::snapvane::testing::KeyringSession;
using ::snapvane::testing::KeyringUser;
using ::snapvane::testing::SecretServiceClient;
using ::snapvane::testing::slowness;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

class FerryboxAPIKeyKeyringTest : public ::testing::Test {
protected:
    void lock() { m_session.client().lockDefaultCollection(); }
    void put(const QByteArray& value) {
        m_session.client().put(SecretServiceClient::keyAttributes(), value);
    }
    QList<QByteArray> keys() { return m_session.client().keys(); }
    QString errorOfSaving(const QString& key) {
        try {
            await(m_tasks.saveKey(key));
        } catch (const FerryboxKeychainError& error) {
            return error.localizedDescription();
        }
        return {};
    }
    std::optional<QString> load() { return await(m_tasks.loadKey()); }

    KeyringSession m_session;
    xdg::LibsecretStore m_store;
    FerryboxAPIKeyTasks m_tasks{m_store};
};

TEST_F(FerryboxAPIKeyKeyringTest, IsStoredTrimmed) {
    m_session.startKeyring();
    await(m_tasks.saveKey(u"  key\n"_s));
    EXPECT_THAT(keys(), ElementsAre("key"));
    EXPECT_THAT(load(), Optional(u"key"_s));
}

TEST_F(FerryboxAPIKeyKeyringTest, IsGoneOnceDeleted) {
    m_session.startKeyring();
    await(m_tasks.saveKey(u"key"_s));
    await(m_tasks.deleteKey());
    EXPECT_THAT(keys(), IsEmpty());
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, IsKeptWhenABlankOneIsSaved) {
    m_session.startKeyring();
    await(m_tasks.saveKey(u"key"_s));
    EXPECT_EQ(errorOfSaving(u"   "_s), u"The API key cannot be empty."_s);
    EXPECT_THAT(keys(), ElementsAre("key"));
}

TEST_F(FerryboxAPIKeyKeyringTest, ReplacesAllThatThereWere) {
    m_session.startKeyring();
    put("one");
    put("two");
    await(m_tasks.saveKey(u"three"_s));
    EXPECT_THAT(keys(), ElementsAre("three"));
}

TEST_F(FerryboxAPIKeyKeyringTest, IsReadAsAnotherProgramStoredIt) {
    m_session.startKeyring();
    put(" key\n");
    EXPECT_THAT(load(), Optional(u" key\n"_s));
}

TEST_F(FerryboxAPIKeyKeyringTest, IsNoneWhenAnotherProgramStoredNothing) {
    m_session.startKeyring();
    put("");
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, IsNoneWhenAnotherProgramStoredNoText) {
    m_session.startKeyring();
    put("\xff\xfe");
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, CannotBeStoredWithoutAKeyring) {
    EXPECT_EQ(errorOfSaving(u"key"_s), u"Could not store the API key in Keychain (status 2)."_s);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, CannotBeStoredInALockedKeyring) {
    m_session.startKeyring();
    put("old");
    lock();
    EXPECT_EQ(errorOfSaving(u"key"_s), u"Could not store the API key in Keychain (status 2)."_s);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, CannotBeStoredWhenTheUserRefusesToUnlock) {
    m_session.startKeyring(KeyringUser::Refuses);
    put("old");
    lock();
    EXPECT_EQ(errorOfSaving(u"key"_s), u"Could not store the API key in Keychain (status 2)."_s);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, IsReadOnceTheUserUnlocks) {
    m_session.startKeyring(KeyringUser::Unlocks);
    put("key");
    lock();
    EXPECT_THAT(load(), Optional(u"key"_s));
}

TEST_F(FerryboxAPIKeyKeyringTest, IsReplacedOnceTheUserUnlocks) {
    m_session.startKeyring(KeyringUser::Unlocks);
    put("old");
    lock();
    await(m_tasks.saveKey(u"new"_s));
    EXPECT_THAT(keys(), ElementsAre("new"));
}

TEST_F(FerryboxAPIKeyKeyringTest, KeepsTheMainLoopRunningWhileTheUserIsAsked) {
    m_session.startKeyring(KeyringUser::Ignores);
    put("key");
    lock();
    auto loading = m_tasks.loadKey();
    testing::require("a question to the user", [this] { return m_session.keyring->isAsking(); });
    QElapsedTimer clock;
    clock.start();
    int ticks = 0;
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (++ticks == 20) {
            loop.quit();
        }
    });
    timer.start(10);
    loop.exec();
    EXPECT_LT(clock.elapsed(), 2000 * slowness());
    EXPECT_FALSE(loading.isReady());

    clock.restart();
    m_tasks.end();
    EXPECT_LT(clock.elapsed(), 5000 * slowness());
    EXPECT_EQ(await(std::move(loading)), std::nullopt);
}

TEST_F(FerryboxAPIKeyKeyringTest, IsOneOfThoseThatSeveralThreadsSave) {
    m_session.startKeyring();
    constexpr int threads = 4;
    std::vector<std::future<bool>> outcomes;
    outcomes.reserve(threads);
    for (int i = 0; i < threads; ++i) {
        outcomes.push_back(std::async(std::launch::async, [this, i] {
            bool allRead = true;
            for (int turn = 0; turn < 5; ++turn) {
                FerryboxAPIKeyStore::saveKey(m_store, u"key %1"_s.arg(i));
                const auto read = FerryboxAPIKeyStore::loadKey(m_store);
                // Nothing, for a moment, while another thread replaces it.
                allRead = allRead && (!read || read->startsWith(u"key "_s));
            }
            return allRead;
        }));
    }
    for (auto& outcome : outcomes) {
        EXPECT_TRUE(outcome.get());
    }
    EXPECT_THAT(keys(), ElementsAre(::testing::AnyOf("key 0", "key 1", "key 2", "key 3")));
}

TEST_F(FerryboxAPIKeyKeyringTest, IsInNoFile) {
    m_session.startKeyring();
    const QString key = u"not to be found"_s;
    await(m_tasks.saveKey(key));
    ASSERT_THAT(load(), Optional(key));
    const QByteArray utf16(reinterpret_cast<const char*>(key.constData()), key.size() * 2);
    int files = 0;
    QDirIterator all(m_session.folders.path(QString()), QDir::Files | QDir::Hidden,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        QFile file(all.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray contents = file.readAll();
        EXPECT_FALSE(contents.contains(key.toUtf8()) || contents.contains(utf16))
            << file.fileName().toStdString();
        ++files;
    }
    EXPECT_GT(files, 2);
}

} // namespace

} // namespace snapvane
