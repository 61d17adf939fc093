// Whatever a server answers, the decoder either refuses it or gives what it says.

#include "upload/PresignResponse.h"

#include "support/QtPrinting.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

constexpr int mutationsPerSeed = 10'000;

const std::array<QByteArray, 3> goodAnswers = {
    R"({"uploadUrl":"https://bucket.example/x?a=b%2F","publicUrl":"https://f.example/1",)"
    R"("s3Key":"uploads/1.png","shortId":"1","expiresIn":60})",
    R"( {"expiresIn" : 3.6e3, "more":[1,{"a":null}], "shortId":"\u00fc\n", "s3Key":"",)"
    "\n"
    R"("publicUrl":"x","uploadUrl":"\ud83d\ude00"} )",
    R"({"uploadUrl":"a","uploadUrl":"b","publicUrl":"c","s3Key":"d","shortId":"e",)"
    R"("expiresIn":-9223372036854775808})",
};

/// Pieces that bring a decoder into trouble more often than single bytes do.
const std::array<QByteArray, 22> pieces = {"{",
                                           "}",
                                           "[",
                                           "]",
                                           "\"",
                                           ",",
                                           ":",
                                           "\\",
                                           "\\u",
                                           "\\ud83d",
                                           "null",
                                           "true",
                                           "1e999",
                                           "-",
                                           "0.1",
                                           "9223372036854775808",
                                           "\xff",
                                           "\xc3",
                                           "\xef\xbb\xbf",
                                           "\"expiresIn\":",
                                           "\"uploadUrl\":{}",
                                           QByteArray(1, '\0')};

class Mutator {
public:
    explicit Mutator(unsigned seed) : m_engine(seed) {}

    QByteArray next() {
        QByteArray json = goodAnswers[below(goodAnswers.size())];
        for (std::size_t left = 1 + below(4); left > 0; --left) {
            mutate(json);
        }
        return json;
    }

private:
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_engine);
    }
    qsizetype place(const QByteArray& json) {
        return static_cast<qsizetype>(below(static_cast<std::size_t>(json.size()) + 1));
    }

    void mutate(QByteArray& json) {
        const qsizetype at = place(json);
        const qsizetype length = static_cast<qsizetype>(below(12));
        switch (below(6)) {
        case 0:
            json.remove(at, length);
            break;
        case 1:
            json.insert(at, pieces[below(pieces.size())]);
            break;
        case 2:
            json.replace(at, length, pieces[below(pieces.size())]);
            break;
        case 3:
            json.insert(at, json.mid(place(json), length));
            break;
        case 4:
            json.truncate(at);
            break;
        default:
            if (at < json.size()) {
                json[at] = static_cast<char>(below(256));
            }
        }
    }

    std::mt19937 m_engine;
};

/// Whether what was decoded is what another look at the same bytes finds there.
void expectFaithful(const PresignResponse& response, const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    EXPECT_EQ(object[u"uploadUrl"_s], QJsonValue(response.uploadUrl)) << json.toStdString();
    EXPECT_EQ(object[u"publicUrl"_s], QJsonValue(response.publicUrl)) << json.toStdString();
    EXPECT_EQ(object[u"s3Key"_s], QJsonValue(response.s3Key)) << json.toStdString();
    EXPECT_EQ(object[u"shortId"_s], QJsonValue(response.shortId)) << json.toStdString();
    EXPECT_EQ(object[u"expiresIn"_s].toDouble(), static_cast<double>(response.expiresIn))
        << json.toStdString();
}

/// The only texts a refusal may have: nothing of the answer can be in them.
bool isKnownText(const QString& text) {
    static const QStringList known = [] {
        QStringList texts(u"The response from Ferrybox is not a JSON object."_s);
        for (const QString& member :
             {u"uploadUrl"_s, u"publicUrl"_s, u"s3Key"_s, u"shortId"_s, u"expiresIn"_s}) {
            texts += u"The response from Ferrybox lacks \u201c%1\u201d."_s.arg(member);
            texts += u"\u201c%1\u201d in the response from Ferrybox is not a text."_s.arg(member);
            texts +=
                u"\u201c%1\u201d in the response from Ferrybox is not an integer."_s.arg(member);
        }
        return texts;
    }();
    return known.contains(text);
}

class PresignFuzz : public ::testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(PresignFuzz, IsRefusedOrDecodedFaithfully) {
    Mutator mutator(GetParam());
    int decoded = 0;
    for (int i = 0; i < mutationsPerSeed && !HasFailure(); ++i) {
        const QByteArray json = mutator.next();
        try {
            expectFaithful(PresignResponse::decoded(json), json);
            ++decoded;
        } catch (const PresignDecodingError& error) {
            EXPECT_TRUE(isKnownText(error.localizedDescription()))
                << error.what() << " for " << json.toStdString();
        }
    }
    // Mutations that are all refused, or all taken, would prove nothing.
    EXPECT_GT(decoded, mutationsPerSeed / 100);
    EXPECT_LT(decoded, mutationsPerSeed * 9 / 10);
}

INSTANTIATE_TEST_SUITE_P(Seeds, PresignFuzz, ::testing::Range(1U, 9U));

} // namespace snapvane
