#include "upload/FerryboxAPIKeyStore.h"

#include "platform/null/NullSecretStore.h"
#include "upload/FerryboxKeychainError.h"

#include <gmock/gmock.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using ::testing::_;
using ::testing::InSequence;
using ::testing::Optional;
using ::testing::Return;

const null::NullSecretStore::Identity identity = {u"app.snapvane.Snapvane"_s, u"ferrybox"_s};

class FerryboxAPIKeyStoreTest : public ::testing::Test {
protected:
    std::optional<QString> load() { return FerryboxAPIKeyStore::loadKey(m_store); }
    void save(const QString& key) { FerryboxAPIKeyStore::saveKey(m_store, key); }
    /// The text of the error with which saving ends.
    QString errorOfSaving(const QString& key) {
        try {
            save(key);
        } catch (const FerryboxKeychainError& error) {
            return error.localizedDescription();
        }
        return {};
    }

    null::NullSecretStore m_store;
};

TEST_F(FerryboxAPIKeyStoreTest, HasNoKeyAtFirst) {
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyStoreTest, GivesTheKeyThatWasSaved) {
    save(u"key"_s);
    EXPECT_THAT(load(), Optional(u"key"_s));
}

TEST_F(FerryboxAPIKeyStoreTest, StoresUnderTheApplicationAndTheService) {
    save(u"key"_s);
    ASSERT_EQ(m_store.items.size(), 1U);
    EXPECT_EQ(m_store.items.begin()->first, identity);
}

TEST_F(FerryboxAPIKeyStoreTest, StoresUtf8) {
    save(u"schl\u00fcssel"_s);
    EXPECT_EQ(m_store.items[identity], "schl\xc3\xbcssel");
}

TEST_F(FerryboxAPIKeyStoreTest, ReplacesTheKey) {
    save(u"old"_s);
    save(u"new"_s);
    EXPECT_THAT(load(), Optional(u"new"_s));
}

TEST_F(FerryboxAPIKeyStoreTest, HasNoKeyOnceItIsDeleted) {
    save(u"key"_s);
    FerryboxAPIKeyStore::deleteKey(m_store);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyStoreTest, DeletesNothingWhereThereIsNothing) {
    FerryboxAPIKeyStore::deleteKey(m_store);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyStoreTest, LeavesOtherItemsAlone) {
    const null::NullSecretStore::Identity another = {u"app.snapvane.Snapvane"_s, u"another"_s};
    m_store.items[another] = "another";
    save(u"key"_s);
    FerryboxAPIKeyStore::deleteKey(m_store);
    EXPECT_EQ(m_store.items[another], "another");
}

TEST_F(FerryboxAPIKeyStoreTest, DoesNotTrimWhatItReads) {
    m_store.items[identity] = " key\n";
    EXPECT_THAT(load(), Optional(u" key\n"_s));
}

TEST_F(FerryboxAPIKeyStoreTest, KeepsAByteOrderMarkThatItReads) {
    m_store.items[identity] = "\xef\xbb\xbfkey";
    EXPECT_THAT(load(), Optional(u"\ufeffkey"_s));
}

TEST_F(FerryboxAPIKeyStoreTest, ReadsAReplacementCharacterThatWasStored) {
    m_store.items[identity] = "\xef\xbf\xbdkey";
    EXPECT_THAT(load(), Optional(u"\ufffdkey"_s));
}

TEST_F(FerryboxAPIKeyStoreTest, SavesAlthoughTheOldKeyCannotBeDeleted) {
    m_store.removeStatus = 5;
    save(u"key"_s);
    EXPECT_THAT(load(), Optional(u"key"_s));
}

TEST_F(FerryboxAPIKeyStoreTest, HasLostTheOldKeyWhenTheNewOneCannotBeStored) {
    save(u"old"_s);
    m_store.addStatus = 5;
    EXPECT_THROW(save(u"new"_s), FerryboxKeychainError);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(FerryboxAPIKeyStoreTest, NamesNoKeyInAnError) {
    m_store.addStatus = 5;
    EXPECT_FALSE(errorOfSaving(u"the key"_s).contains(u"the key"_s));
}

struct Trimmed {
    const char* name;
    QString typed;
    QString stored;
};

void PrintTo(const Trimmed& row, std::ostream* stream) {
    *stream << row.name;
}

class FerryboxAPIKeyTrimmingTest : public FerryboxAPIKeyStoreTest,
                                   public ::testing::WithParamInterface<Trimmed> {};

TEST_P(FerryboxAPIKeyTrimmingTest, StoresWhatIsLeft) {
    save(GetParam().typed);
    EXPECT_EQ(m_store.items[identity], GetParam().stored.toUtf8());
    EXPECT_THAT(load(), Optional(GetParam().stored));
}

INSTANTIATE_TEST_SUITE_P(
    All, FerryboxAPIKeyTrimmingTest,
    ::testing::Values(Trimmed{"Nothing", u"key"_s, u"key"_s},
                      Trimmed{"LeadingSpacesTrailingBreak", u"  key\n"_s, u"key"_s},
                      Trimmed{"WindowsBreaks", u"\r\nkey\r\n"_s, u"key"_s},
                      Trimmed{"Tabs", u"\tkey\t"_s, u"key"_s},
                      Trimmed{"VerticalTabAndFormFeed", u"\vkey\f"_s, u"key"_s},
                      Trimmed{"NextLine", u"\u0085key\u0085"_s, u"key"_s},
                      Trimmed{"NoBreakSpace", u"\u00a0key\u00a0"_s, u"key"_s},
                      Trimmed{"IdeographicSpace", u"\u3000key\u3000"_s, u"key"_s},
                      Trimmed{"LineAndParagraphSeparators", u"\u2028key\u2029"_s, u"key"_s},
                      Trimmed{"SpacesWithin", u" one two "_s, u"one two"_s},
                      Trimmed{"BreakWithin", u"one\ntwo\n"_s, u"one\ntwo"_s},
                      Trimmed{"ByteOrderMark", u" \ufeffkey "_s, u"\ufeffkey"_s},
                      Trimmed{"ZeroWidthSpace", u" \u200bkey "_s, u"\u200bkey"_s}),
    [](const auto& row) { return row.param.name; });

struct Blank {
    const char* name;
    QString typed;
};

void PrintTo(const Blank& row, std::ostream* stream) {
    *stream << row.name;
}

class FerryboxAPIKeyBlankTest : public FerryboxAPIKeyStoreTest,
                                public ::testing::WithParamInterface<Blank> {};

TEST_P(FerryboxAPIKeyBlankTest, IsRefusedAndKeepsTheKey) {
    save(u"old"_s);
    EXPECT_EQ(errorOfSaving(GetParam().typed), u"The API key cannot be empty."_s);
    EXPECT_THAT(load(), Optional(u"old"_s));
}

INSTANTIATE_TEST_SUITE_P(All, FerryboxAPIKeyBlankTest,
                         ::testing::Values(Blank{"Null", QString()}, Blank{"Empty", u""_s},
                                           Blank{"Spaces", u"   "_s}, Blank{"Breaks", u"\r\n\n"_s},
                                           Blank{"NoBreakSpaces", u"\u00a0\u3000"_s}),
                         [](const auto& row) { return row.param.name; });

struct Data {
    const char* name;
    QByteArray bytes;
};

void PrintTo(const Data& row, std::ostream* stream) {
    *stream << row.name;
}

class FerryboxAPIKeyUnreadableTest : public FerryboxAPIKeyStoreTest,
                                     public ::testing::WithParamInterface<Data> {};

TEST_P(FerryboxAPIKeyUnreadableTest, IsNoKey) {
    m_store.items[identity] = GetParam().bytes;
    EXPECT_EQ(load(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(All, FerryboxAPIKeyUnreadableTest,
                         ::testing::Values(Data{"Empty", ""}, Data{"NoUtf8", "key\xff"},
                                           Data{"LoneContinuation", "\x80key"},
                                           Data{"CutOff", "key\xe2\x82"},
                                           Data{"Overlong", "\xc0\xaf"},
                                           Data{"Surrogate", "\xed\xa0\x80"},
                                           Data{"BeyondUnicode", "\xf5\x80\x80\x80"},
                                           Data{"Utf16", QByteArrayLiteral("\xff\xfek\0e\0y\0")}),
                         [](const auto& row) { return row.param.name; });

class FerryboxAPIKeyStatusTest : public FerryboxAPIKeyStoreTest,
                                 public ::testing::WithParamInterface<SecretStore::Status> {};

TEST_P(FerryboxAPIKeyStatusTest, OfReadingMeansThatThereIsNoKey) {
    save(u"key"_s);
    m_store.copyStatus = GetParam();
    EXPECT_EQ(load(), std::nullopt);
}

TEST_P(FerryboxAPIKeyStatusTest, OfDeletingIsIgnored) {
    m_store.removeStatus = GetParam();
    EXPECT_NO_THROW(FerryboxAPIKeyStore::deleteKey(m_store));
}

TEST_P(FerryboxAPIKeyStatusTest, OfStoringIsInTheText) {
    m_store.addStatus = GetParam();
    EXPECT_EQ(errorOfSaving(u"key"_s), u"Could not store the API key in Keychain (status "_s +
                                           QString::number(GetParam()) + u")."_s);
}

INSTANTIATE_TEST_SUITE_P(All, FerryboxAPIKeyStatusTest,
                         ::testing::Values(2, 19, 25'300, SecretStore::itemNotFound,
                                           SecretStore::failed, SecretStore::closed, -25'299,
                                           std::numeric_limits<SecretStore::Status>::max(),
                                           std::numeric_limits<SecretStore::Status>::min()));

class StrictStore : public SecretStore {
public:
    MOCK_METHOD(Status, copy, (const QString&, const QString&, QByteArray&), (override));
    MOCK_METHOD(Status, add, (const QString&, const QString&, const QByteArray&), (override));
    MOCK_METHOD(Status, remove, (const QString&, const QString&), (override));
    MOCK_METHOD(void, close, (), (override));
};

TEST(FerryboxAPIKeyCallsTest, SavingDeletesBeforeItAdds) {
    ::testing::StrictMock<StrictStore> store;
    const InSequence sequence;
    EXPECT_CALL(store, remove(identity.first, identity.second)).WillOnce(Return(0));
    EXPECT_CALL(store, add(identity.first, identity.second, QByteArray("key"))).WillOnce(Return(0));
    FerryboxAPIKeyStore::saveKey(store, u"key"_s);
}

TEST(FerryboxAPIKeyCallsTest, AnEmptyKeyDoesNotReachTheStore) {
    ::testing::StrictMock<StrictStore> store;
    EXPECT_THROW(FerryboxAPIKeyStore::saveKey(store, u" "_s), FerryboxKeychainError);
}

TEST(FerryboxAPIKeyCallsTest, TheBytesThatWereStoredAreWiped) {
    ::testing::NiceMock<StrictStore> store;
    QByteArray handedOver;
    EXPECT_CALL(store, add(_, _, _)).WillOnce([&](const auto&, const auto&, const auto& bytes) {
        handedOver = bytes;
        return 0;
    });
    FerryboxAPIKeyStore::saveKey(store, u"key"_s);
    EXPECT_EQ(handedOver, QByteArray(3, '\0'));
}

TEST(FerryboxAPIKeyCallsTest, TheBytesThatCouldNotBeStoredAreWiped) {
    ::testing::NiceMock<StrictStore> store;
    QByteArray handedOver;
    EXPECT_CALL(store, add(_, _, _)).WillOnce([&](const auto&, const auto&, const auto& bytes) {
        handedOver = bytes;
        return 5;
    });
    EXPECT_THROW(FerryboxAPIKeyStore::saveKey(store, u"key"_s), FerryboxKeychainError);
    EXPECT_EQ(handedOver, QByteArray(3, '\0'));
}

TEST(FerryboxAPIKeyCallsTest, TheBytesThatWereReadAreWiped) {
    ::testing::NiceMock<StrictStore> store;
    QByteArray kept(QByteArrayView("key").toByteArray());
    EXPECT_CALL(store, copy(_, _, _)).WillOnce([&](const auto&, const auto&, auto& bytes) {
        bytes = kept;
        return 0;
    });
    EXPECT_THAT(FerryboxAPIKeyStore::loadKey(store), Optional(u"key"_s));
    EXPECT_EQ(kept, QByteArray(3, '\0'));
}

TEST(FerryboxAPIKeyCallsTest, TheKeyOfTheCallerIsNotWiped) {
    ::testing::NiceMock<StrictStore> store;
    const QString key = QString::fromUtf8("key");
    FerryboxAPIKeyStore::saveKey(store, key);
    EXPECT_EQ(key, u"key"_s);
}

TEST(FerryboxKeychainErrorTest, KnowsItsCaseAndStatus) {
    const auto error = FerryboxKeychainError::storeFailed(-25);
    EXPECT_EQ(error.errorCase(), FerryboxKeychainError::Case::storeFailed);
    EXPECT_EQ(error.status(), -25);
    EXPECT_EQ(FerryboxKeychainError::emptyKey().errorCase(), FerryboxKeychainError::Case::emptyKey);
}

} // namespace

} // namespace snapvane
