// What stays of the key in the memory of the process once nobody needs it any more.

#include "KeyringSession.h"
#include "base/Await.h"
#include "base/Wipe.h"
#include "platform/xdg/LibsecretStore.h"
#include "upload/FerryboxAPIKeyTasks.h"
#include "upload/OwnMemory.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using ::snapvane::testing::countInOwnMemory;
using ::snapvane::testing::inverted;
using ::snapvane::testing::KeyringSession;

/// A key that stands nowhere in the program but, turned round, here.
class FerryboxAPIKeyMemoryTest : public ::testing::Test {
protected:
    void SetUp() override { m_session.startKeyring(); }

    QString makeKey() const {
        QString key(m_invertedKey.size(), Qt::Uninitialized);
        for (qsizetype i = 0; i < key.size(); ++i) {
            key[i] = QLatin1Char(static_cast<char>(~m_invertedKey.at(i)));
        }
        return key;
    }
    int copiesInMemory() const {
        return countInOwnMemory(m_invertedKey) + countInOwnMemory(m_invertedUtf16);
    }

    const QByteArray m_invertedKey = QByteArray::fromHex("94fae6d29acdc99aa6bca7aeb9a5cfd0c8");
    const QByteArray m_invertedUtf16 = [this] {
        QByteArray wide;
        for (const char byte : m_invertedKey) {
            wide.append(byte).append('\xff');
        }
        return wide;
    }();
    KeyringSession m_session;
    xdg::LibsecretStore m_store;
    FerryboxAPIKeyTasks m_tasks{m_store};
};

TEST_F(FerryboxAPIKeyMemoryTest, FindsAKeyThatIsThere) {
    QString key = makeKey();
    EXPECT_EQ(copiesInMemory(), 1);
    QByteArray utf8 = key.toUtf8();
    EXPECT_EQ(copiesInMemory(), 2);
    wipe(key);
    EXPECT_EQ(copiesInMemory(), 1);
    wipe(utf8);
    EXPECT_EQ(copiesInMemory(), 0);
}

TEST_F(FerryboxAPIKeyMemoryTest, HasNoCopyOfAKeyThatWasSaved) {
    await(m_tasks.saveKey(makeKey()));
    EXPECT_EQ(copiesInMemory(), 0);
}

TEST_F(FerryboxAPIKeyMemoryTest, HasNoCopyButTheCallersOfAKeyThatWasLoaded) {
    await(m_tasks.saveKey(makeKey()));
    std::optional<QString> key = await(m_tasks.loadKey());
    ASSERT_TRUE(key);
    EXPECT_EQ(copiesInMemory(), 1);
    wipe(*key);
    EXPECT_EQ(copiesInMemory(), 0);
}

} // namespace

} // namespace snapvane
