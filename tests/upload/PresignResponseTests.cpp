#include "upload/PresignResponse.h"

#include "support/QtPrinting.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

QByteArray answer(const QByteArray& expiresIn = "60", const QByteArray& more = {}) {
    return R"({"uploadUrl": "https://bucket.example/x", "publicUrl": "https://f.example/1",)"
           R"("s3Key": "uploads/1.png", "shortId": "1", "expiresIn": )" +
           expiresIn + more + '}';
}

/// A good answer in which one member has another value, in JSON; none takes the member away.
QByteArray answerWith(const QString& member, const QByteArray& value) {
    QJsonObject object = QJsonDocument::fromJson(answer()).object();
    if (value.isEmpty()) {
        object.remove(member);
    } else {
        object[member] = QJsonDocument::fromJson("[" + value + "]")[0];
    }
    return QJsonDocument(object).toJson();
}

QString failure(const QByteArray& json) {
    try {
        PresignResponse::decoded(json);
    } catch (const PresignDecodingError& error) {
        return error.localizedDescription();
    }
    return {};
}

const QStringList textMembers = {u"uploadUrl"_s, u"publicUrl"_s, u"s3Key"_s, u"shortId"_s};
const QString notJson = u"The response from Ferrybox is not a JSON object."_s;
const QString noInteger =
    u"\u201cexpiresIn\u201d in the response from Ferrybox is not an integer."_s;

} // namespace

TEST(PresignResponse, HasItsFiveMembers) {
    const PresignResponse response = PresignResponse::decoded(answer());
    EXPECT_EQ(response.uploadUrl, u"https://bucket.example/x"_s);
    EXPECT_EQ(response.publicUrl, u"https://f.example/1"_s);
    EXPECT_EQ(response.s3Key, u"uploads/1.png"_s);
    EXPECT_EQ(response.shortId, u"1"_s);
    EXPECT_EQ(response.expiresIn, 60);
}

TEST(PresignResponse, TextsMayBeAnything) {
    const PresignResponse response =
        PresignResponse::decoded(answerWith(u"publicUrl"_s, R"("a\u00fc\n\ud83d\ude00\u0000b")"));
    EXPECT_EQ(response.publicUrl, QString::fromUtf8("a\u00fc\n\U0001F600\0b", 10));
    EXPECT_EQ(PresignResponse::decoded(answerWith(u"s3Key"_s, "\"\"")).s3Key, QString());
}

TEST(PresignResponse, OtherMembersAreIgnored) {
    EXPECT_EQ(PresignResponse::decoded(answer("60", R"(, "x": {"uploadUrl": 1}, "Expiresin": "y")"))
                  .expiresIn,
              60);
}

TEST(PresignResponse, LastOfSeveralCounts) {
    EXPECT_EQ(PresignResponse::decoded(answer("60", R"(, "expiresIn": 61)")).expiresIn, 61);
}

TEST(PresignResponse, NamesAreTakenLiterally) {
    QByteArray json = answer();
    json.replace("shortId", "shortid");
    EXPECT_EQ(failure(json), u"The response from Ferrybox lacks \u201cshortId\u201d."_s);
}

class PresignMembers : public ::testing::TestWithParam<QString> {};

TEST_P(PresignMembers, MayNotBeMissing) {
    const QString text = u"The response from Ferrybox lacks \u201c%1\u201d."_s.arg(GetParam());
    EXPECT_EQ(failure(answerWith(GetParam(), {})), text);
    EXPECT_EQ(failure(answerWith(GetParam(), "null")), text);
}

INSTANTIATE_TEST_SUITE_P(All, PresignMembers,
                         ::testing::ValuesIn(textMembers + QStringList(u"expiresIn"_s)),
                         [](const auto& row) { return row.param.toStdString(); });

class PresignTexts : public ::testing::TestWithParam<std::tuple<QString, const char*>> {};

TEST_P(PresignTexts, AreTexts) {
    const auto& [member, value] = GetParam();
    EXPECT_EQ(failure(answerWith(member, value)),
              u"\u201c%1\u201d in the response from Ferrybox is not a text."_s.arg(member));
}

INSTANTIATE_TEST_SUITE_P(WrongTypes, PresignTexts,
                         ::testing::Combine(::testing::ValuesIn(textMembers),
                                            ::testing::Values("1", "0.5", "true", "false", "{}",
                                                              "[]", R"(["x"])", R"({"x": "y"})")),
                         [](const auto& row) { return std::to_string(row.index); });

class PresignIntegers
    : public ::testing::TestWithParam<std::pair<const char*, std::optional<std::int64_t>>> {};

TEST_P(PresignIntegers, AreReadAsTheyAreMeant) {
    const auto& [json, value] = GetParam();
    if (value) {
        EXPECT_EQ(PresignResponse::decoded(answer(json)).expiresIn, *value);
    } else {
        EXPECT_EQ(failure(answer(json)), noInteger);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, PresignIntegers,
    ::testing::Values(
        std::pair("0", std::optional<std::int64_t>(0)),
        std::pair("-0", std::optional<std::int64_t>(0)),
        std::pair("-1", std::optional<std::int64_t>(-1)),
        std::pair("3600", std::optional<std::int64_t>(3600)),
        std::pair("3600.0", std::optional<std::int64_t>(3600)),
        std::pair("3.6e3", std::optional<std::int64_t>(3600)),
        std::pair("36000e-1", std::optional<std::int64_t>(3600)),
        std::pair("9007199254740993", std::optional<std::int64_t>(9007199254740993)),
        std::pair("9223372036854775807",
                  std::optional<std::int64_t>(std::numeric_limits<std::int64_t>::max())),
        std::pair("-9223372036854775808",
                  std::optional<std::int64_t>(std::numeric_limits<std::int64_t>::min())),
        std::pair("9223372036854775808", std::optional<std::int64_t>()),
        std::pair("1e300", std::optional<std::int64_t>()),
        std::pair("-1e300", std::optional<std::int64_t>()),
        std::pair("3600.5", std::optional<std::int64_t>()),
        std::pair("1e-9", std::optional<std::int64_t>()),
        std::pair("\"3600\"", std::optional<std::int64_t>()),
        std::pair("true", std::optional<std::int64_t>()),
        std::pair("false", std::optional<std::int64_t>()),
        std::pair("[60]", std::optional<std::int64_t>()),
        std::pair("{}", std::optional<std::int64_t>())),
    [](const auto& row) { return std::to_string(row.index); });

class NoPresignAnswers : public ::testing::TestWithParam<QByteArray> {};

TEST_P(NoPresignAnswers, AreRefused) {
    EXPECT_EQ(failure(GetParam()), notJson);
}

INSTANTIATE_TEST_SUITE_P(Shapes, NoPresignAnswers,
                         ::testing::Values("", " ", "null", "true", "60", "\"text\"", "[]",
                                           "[" + answer() + "]", "<html></html>", "{", "}",
                                           answer().chopped(1), answer() + "x", answer() + answer(),
                                           "{'uploadUrl': 1}", "{\"uploadUrl\": }", answer("NaN"),
                                           answer("Infinity"), answer("0x10"), answer("+1"),
                                           answer("60,"), answer().replace('"', '\''),
                                           answer("60", ", \"bad\": \"\xff\""), QByteArray(4, '\0'),
                                           QByteArray(200'000, '['),
                                           "{\"a\":" + QByteArray(200'000, '[')),
                         [](const auto& row) { return std::to_string(row.index); });

TEST(PresignResponse, TextsOfFailuresNeverRepeatTheAnswer) {
    const QByteArray secret = "geheim4711";
    for (const QByteArray& json :
         {secret, "{\"" + secret, answer('"' + secret + '"'), "{\"" + secret + "\": 1}",
          answerWith(u"uploadUrl"_s, "[\"" + secret + "\"]")}) {
        const QString text = failure(json);
        EXPECT_FALSE(text.isEmpty()) << json.constData();
        EXPECT_FALSE(text.contains(QString::fromLatin1(secret))) << text.toStdString();
    }
}

} // namespace snapvane
