#include "upload/FerryboxAPIKeyTasks.h"

#include "base/Async.h"
#include "base/Await.h"
#include "platform/null/NullPlatform.h"
#include "upload/FerryboxKeychainError.h"

#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <gmock/gmock.h>

#include <atomic>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using ::testing::Optional;

class FerryboxAPIKeyTasksTest : public ::testing::Test {
protected:
    void save(const QString& key) { await(m_tasks->saveKey(key)); }
    std::optional<QString> load() { return await(m_tasks->loadKey()); }

    null::NullSecretStore m_store;
    std::optional<FerryboxAPIKeyTasks> m_tasks{std::in_place, m_store};
};

TEST_F(FerryboxAPIKeyTasksTest, LoadWhatWasSaved) {
    save(u" key "_s);
    EXPECT_THAT(load(), Optional(u"key"_s));
}

TEST_F(FerryboxAPIKeyTasksTest, LoadNothingWhereThereIsNothing) {
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyTasksTest, LoadNothingOnceItIsDeleted) {
    save(u"key"_s);
    await(m_tasks->deleteKey());
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyTasksTest, ThrowWhatSavingThrows) {
    EXPECT_THROW(save(u" "_s), FerryboxKeychainError);
    m_store.addStatus = 5;
    EXPECT_THROW(save(u"key"_s), FerryboxKeychainError);
}

TEST_F(FerryboxAPIKeyTasksTest, GiveAKeyThatNobodyShares) {
    save(u"key"_s);
    const std::optional<QString> key = load();
    EXPECT_TRUE(key && key->isDetached());
}

TEST_F(FerryboxAPIKeyTasksTest, LeaveACopyThatTheCallerKeepsAsItIs) {
    const QString key = QString::fromUtf8("key");
    save(key);
    EXPECT_EQ(key, u"key"_s);
}

TEST_F(FerryboxAPIKeyTasksTest, KeepTheMainThreadOutOfTheStore) {
    std::atomic<int> onTheMainThread = 0;
    std::atomic<int> operations = 0;
    m_store.beforeOperation = [&, main = QThread::currentThread()] {
        ++operations;
        onTheMainThread += QThread::currentThread() == main ? 1 : 0;
    };
    save(u"key"_s);
    load();
    await(m_tasks->deleteKey());
    EXPECT_EQ(operations, 4); // Saving deletes and adds.
    EXPECT_EQ(onTheMainThread, 0);
}

TEST_F(FerryboxAPIKeyTasksTest, LetTheMainLoopRunWhileTheStoreWaits) {
    QSemaphore answer;
    m_store.beforeOperation = [&answer] { answer.acquire(); };
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (++ticks == 5) {
            answer.release();
        }
    });
    timer.start(1);
    // Only the loop can let it come to an end.
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_GE(ticks, 5);
}

TEST_F(FerryboxAPIKeyTasksTest, DoNotOvertakeEachOther) {
    // A store that becomes faster and faster.
    std::atomic<int> pause = 20;
    m_store.beforeOperation = [&pause] {
        QThread::msleep(static_cast<unsigned long>(std::max(0, pause -= 2)));
    };
    auto first = m_tasks->saveKey(u"one"_s);
    auto afterFirst = m_tasks->loadKey();
    auto second = m_tasks->saveKey(u"two"_s);
    auto afterSecond = m_tasks->loadKey();
    auto third = m_tasks->deleteKey();
    auto afterThird = m_tasks->loadKey();

    EXPECT_EQ(await(std::move(afterThird)), std::nullopt);
    EXPECT_THAT(await(std::move(afterSecond)), Optional(u"two"_s));
    EXPECT_THAT(await(std::move(afterFirst)), Optional(u"one"_s));
    await(std::move(first));
    await(std::move(second));
    await(std::move(third));
}

TEST_F(FerryboxAPIKeyTasksTest, DoNotWaitForOtherWorkInTheBackground) {
    QSemaphore end;
    QThreadPool& others = backgroundPool();
    for (int i = 0; i < others.maxThreadCount(); ++i) {
        others.start([&end] { end.acquire(); });
    }
    EXPECT_EQ(load(), std::nullopt);
    end.release(others.maxThreadCount());
    others.waitForDone();
}

TEST_F(FerryboxAPIKeyTasksTest, LeaveRoomForOtherWorkWhileTheStoreWaits) {
    QSemaphore answer;
    m_store.beforeOperation = [&answer] { answer.acquire(); };
    auto loading = m_tasks->loadKey();
    EXPECT_EQ(backgroundPool().activeThreadCount(), 0);
    answer.release();
    await(std::move(loading));
}

TEST_F(FerryboxAPIKeyTasksTest, CloseTheStoreWhenTheyEnd) {
    m_tasks->end();
    EXPECT_TRUE(m_store.isClosed);
}

TEST_F(FerryboxAPIKeyTasksTest, EndWhatIsUnderWayBeforeTheirMakerGoes) {
    m_store.items[{u"app.snapvane.Snapvane"_s, u"ferrybox"_s}] = "key";
    m_store.beforeOperation = [this] {
        while (!m_store.isClosed) {
            QThread::msleep(1);
        }
    };
    auto loading = m_tasks->loadKey();
    auto saving = m_tasks->saveKey(u"another"_s);
    m_tasks.reset();

    EXPECT_EQ(await(std::move(loading)), std::nullopt);
    try {
        await(std::move(saving));
        ADD_FAILURE() << "saved";
    } catch (const FerryboxKeychainError& error) {
        EXPECT_EQ(error.status(), SecretStore::closed);
    }
}

TEST(FerryboxAPIKeySharedTasksTest, StandOnThePlatformsStore) {
    null::NullPlatform platform;
    Platform::install(&platform);
    await(FerryboxAPIKeyTasks::shared().saveKey(u"key"_s));
    FerryboxAPIKeyTasks::shared().end();
    Platform::install(nullptr);
    EXPECT_EQ(platform.secretStore().items.size(), 1U);
}

} // namespace

} // namespace snapvane
