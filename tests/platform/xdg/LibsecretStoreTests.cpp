// Against a real keyring, in good times: what is stored how, and what is found again.

#include "platform/xdg/LibsecretStore.h"

#include "KeyringSession.h"
#include "platform/xdg/SecretOperations.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::KeyringSession;
using ::snapvane::testing::SecretServiceClient;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

const QString service = u"app.snapvane.Snapvane"_s;
const QString account = u"ferrybox"_s;

class LibsecretStoreTest : public ::testing::Test {
protected:
    void SetUp() override { m_session.startKeyring(); }

    KeyringSession m_session;
    LibsecretStore m_store;
};

TEST_F(LibsecretStoreTest, AddsAnItemThatOtherProgramsFindByItsIdentity) {
    ASSERT_EQ(m_store.add(service, account, "key"), SecretStore::success);

    SecretServiceClient client = m_session.client();
    const auto items = client.items({{u"service"_s, service}, {u"account"_s, account}});
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].attributes, SecretServiceClient::keyAttributes());
    EXPECT_EQ(items[0].label, u"Snapvane API key"_s);
    EXPECT_EQ(items[0].contentType, u"text/plain"_s);
    EXPECT_EQ(items[0].value, "key");
    EXPECT_TRUE(items[0].path.startsWith(client.defaultCollection() + u'/'));
}

TEST_F(LibsecretStoreTest, FindsNoItemWhereThereIsNone) {
    QByteArray value = "untouched";
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::itemNotFound);
    EXPECT_EQ(value, "untouched");
}

TEST_F(LibsecretStoreTest, FindsNoItemOfAnotherAccount) {
    m_store.add(service, u"another"_s, "key");
    QByteArray value;
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::itemNotFound);
}

TEST_F(LibsecretStoreTest, FindsNoItemOfAnotherService) {
    m_store.add(u"org.example.Another"_s, account, "key");
    QByteArray value;
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::itemNotFound);
}

TEST_F(LibsecretStoreTest, CopiesOneOfTwoItems) {
    SecretServiceClient client = m_session.client();
    client.put(SecretServiceClient::keyAttributes(), "one");
    client.put(SecretServiceClient::keyAttributes(), "two");
    ASSERT_THAT(client.keys(), UnorderedElementsAre("one", "two"));

    QByteArray value;
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::success);
    EXPECT_THAT(value, ::testing::AnyOf("one", "two"));
}

TEST_F(LibsecretStoreTest, RemovesAllItemsOfTheIdentityAndNoOther) {
    SecretServiceClient client = m_session.client();
    client.put(SecretServiceClient::keyAttributes(), "one");
    client.put(SecretServiceClient::keyAttributes(), "two");
    m_store.add(service, u"another"_s, "three");

    EXPECT_EQ(m_store.remove(service, account), SecretStore::success);
    EXPECT_THAT(client.keys(), IsEmpty());
    EXPECT_EQ(client.items({{u"account"_s, u"another"_s}}).size(), 1);
}

TEST_F(LibsecretStoreTest, TellsThatThereIsNothingToRemove) {
    EXPECT_EQ(m_store.remove(service, account), SecretStore::itemNotFound);
}

TEST_F(LibsecretStoreTest, KeepsItemsAcrossARestartOfTheKeyring) {
    ASSERT_EQ(m_store.add(service, account, "key"), SecretStore::success);
    m_session.startKeyring();
    QByteArray value;
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::success);
    EXPECT_EQ(value, "key");
}

TEST_F(LibsecretStoreTest, WorksOnThreadsWithoutAnEventLoopWhileTheMainThreadWaits) {
    EXPECT_EQ(SecretOperations::inThread([this] { return m_store.add(service, account, "key"); }),
              SecretStore::success);
    QByteArray value;
    EXPECT_EQ(SecretOperations::inThread([&] { return m_store.copy(service, account, value); }),
              SecretStore::success);
    EXPECT_EQ(value, "key");
    EXPECT_EQ(SecretOperations::inThread([this] { return m_store.remove(service, account); }),
              SecretStore::success);
}

TEST_F(LibsecretStoreTest, ServesSeveralThreadsAtATime) {
    constexpr int threads = 8;
    std::vector<std::future<SecretStore::Status>> statuses;
    statuses.reserve(threads);
    for (int i = 0; i < threads; ++i) {
        statuses.push_back(SecretOperations::start([this, i] {
            const QString own = QString::number(i);
            const SecretStore::Status added = m_store.add(service, own, own.toUtf8());
            QByteArray value;
            const SecretStore::Status copied = m_store.copy(service, own, value);
            return added != 0 ? added : copied != 0 || value == own.toUtf8() ? copied : 1000;
        }));
    }
    for (auto& status : statuses) {
        EXPECT_EQ(status.get(), SecretStore::success);
    }
}

struct Bytes {
    const char* name;
    QByteArray value;
};

void PrintTo(const Bytes& row, std::ostream* stream) {
    *stream << row.name;
}

class LibsecretStoreBytesTest : public LibsecretStoreTest,
                                public ::testing::WithParamInterface<Bytes> {};

TEST_P(LibsecretStoreBytesTest, ComeBackAsTheyWereAdded) {
    ASSERT_EQ(m_store.add(service, account, GetParam().value), SecretStore::success);
    QByteArray value = "something else";
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::success);
    EXPECT_EQ(value, GetParam().value);
}

TEST_P(LibsecretStoreBytesTest, ComeFromOtherProgramsAsTheyAre) {
    m_session.client().put(SecretServiceClient::keyAttributes(), GetParam().value);
    QByteArray value = "something else";
    EXPECT_EQ(m_store.copy(service, account, value), SecretStore::success);
    EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    All, LibsecretStoreBytesTest,
    ::testing::Values(Bytes{"Plain", "key"}, Bytes{"Empty", ""},
                      Bytes{"BeyondAscii", QByteArrayLiteral("schl\xc3\xbcssel \xf0\x9f\x94\x91")},
                      Bytes{"NoUtf8", QByteArrayLiteral("\xff\xfe\x80key")},
                      Bytes{"WithNul", QByteArrayLiteral("one\0two")},
                      Bytes{"Large", QByteArray(100'000, 'k')}),
    [](const auto& row) { return row.param.name; });

} // namespace

} // namespace snapvane::xdg
