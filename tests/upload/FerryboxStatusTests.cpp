// What becomes of an upload by what the service answers.

#include "UploadFixture.h"

#include "selection/LogCapture.h"
#include "upload/PresignResponse.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using testing::answering;
using testing::FerryboxServer;
using testing::RecordedRequest;
using UploadStatus = testing::UploadTest;
using Kind = FerryboxUploadError::Kind;

QByteArray answerWith(const QString& member, const QJsonValue& value) {
    QJsonObject answer = FerryboxServer::presignAnswer(QUrl(u"https://bucket.example/x"_s));
    answer[member] = value;
    return QJsonDocument(answer).toJson();
}

/// Answers presign requests well, with the status.
FerryboxServer::Handler grantingWith(int status, const FerryboxServer& server) {
    return [status, &server](const RecordedRequest&) {
        return answering(status,
                         QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson());
    };
}

/// The error of an upload that must fail with one of the service's kind.
template <typename Upload> std::optional<FerryboxUploadError> errorOf(const Upload& upload) {
    try {
        upload();
    } catch (const FerryboxUploadError& error) {
        return error;
    }
    return std::nullopt;
}

} // namespace

class PresignSuccess : public testing::UploadTest, public ::testing::WithParamInterface<int> {};

TEST_P(PresignSuccess, IsFollowedByThePut) {
    const FerryboxServer server({.presign = grantingWith(GetParam(), server)});
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
    EXPECT_EQ(server.puts().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Statuses, PresignSuccess, ::testing::Values(200, 201, 202, 203, 226, 299),
                         ::testing::PrintToStringParamName());

class PresignFailure : public testing::UploadTest, public ::testing::WithParamInterface<int> {};

TEST_P(PresignFailure, SaysTheStatusAndPutsNothing) {
    const FerryboxServer server({.presign = grantingWith(GetParam(), server)});
    const auto error = errorOf([&] { upload(server); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), Kind::PresignFailed);
    EXPECT_EQ(error->status(), GetParam());
    EXPECT_EQ(error->localizedDescription(),
              u"Ferrybox presign failed (HTTP %1)."_s.arg(GetParam()));
    EXPECT_EQ(server.presigns().size(), 1U);
    EXPECT_TRUE(server.puts().empty());
}

INSTANTIATE_TEST_SUITE_P(Statuses, PresignFailure,
                         ::testing::Values(300, 301, 302, 303, 304, 305, 307, 308, 400, 401, 403,
                                           404, 407, 408, 409, 413, 418, 421, 425, 429, 451, 500,
                                           501, 502, 503, 504, 511, 599, 600, 999),
                         ::testing::PrintToStringParamName());

class PutFailure : public testing::UploadTest, public ::testing::WithParamInterface<int> {};

TEST_P(PutFailure, IsAFailedUpload) {
    const FerryboxServer server({.put = always(answering(GetParam(), "why", "text/plain"))});
    const auto error = errorOf([&] { upload(server); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), Kind::UploadFailed);
    EXPECT_EQ(error->status(), 0);
    EXPECT_EQ(error->localizedDescription(), u"Ferrybox upload failed."_s);
    EXPECT_EQ(server.puts().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Statuses, PutFailure,
                         ::testing::Values(201, 202, 204, 206, 299, 301, 302, 303, 304, 307, 308,
                                           400, 401, 403, 404, 407, 411, 412, 413, 500, 503, 999),
                         ::testing::PrintToStringParamName());

/// Redirects count by their status, and what they point at is never asked.
class Redirects : public testing::UploadTest, public ::testing::WithParamInterface<int> {
protected:
    Handler pointingElsewhere() {
        return always(testing::sending(
            "HTTP/1.1 " + QByteArray::number(GetParam()) + " Elsewhere\r\nLocation: " +
            elsewhere.url(u"/trap/presign"_s).toEncoded() + "\r\nContent-Length: 0\r\n\r\n"));
    }

    testing::TestHttpServer elsewhere{always(answering(200))};
};

TEST_P(Redirects, OfAPresignAreNotFollowed) {
    const FerryboxServer server({.presign = pointingElsewhere()});
    EXPECT_EQ(failureText(server), u"Ferrybox presign failed (HTTP %1)."_s.arg(GetParam()));
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_P(Redirects, OfAPutAreNotFollowed) {
    const FerryboxServer server({.put = pointingElsewhere()});
    EXPECT_EQ(failureText(server), u"Ferrybox upload failed."_s);
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Statuses, Redirects, ::testing::Values(301, 302, 303, 307, 308),
                         ::testing::PrintToStringParamName());

/// Challenges to authenticate are answers like any other: nothing is sent again.
class Challenges : public testing::UploadTest,
                   public ::testing::WithParamInterface<std::pair<int, const char*>> {
protected:
    Handler challenging() {
        const auto& [status, header] = GetParam();
        return always(testing::sending("HTTP/1.1 " + QByteArray::number(status) + " No\r\n" +
                                       header + "\r\nContent-Length: 2\r\n\r\nno"));
    }
};

TEST_P(Challenges, ToAPresignFailIt) {
    const FerryboxServer server({.presign = challenging()});
    EXPECT_EQ(failureText(server), u"Ferrybox presign failed (HTTP %1)."_s.arg(GetParam().first));
    EXPECT_EQ(server.presigns().size(), 1U);
    EXPECT_EQ(server.presigns()[0].header("Authorization"), std::nullopt);
}

TEST_P(Challenges, ToAPutFailIt) {
    const FerryboxServer server({.put = challenging()});
    EXPECT_EQ(failureText(server), u"Ferrybox upload failed."_s);
    EXPECT_EQ(server.puts().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Schemes, Challenges,
    ::testing::Values(std::pair(401, "WWW-Authenticate: Basic realm=\"x\""),
                      std::pair(401, "WWW-Authenticate: Digest realm=\"x\", nonce=\"y\""),
                      std::pair(401, "WWW-Authenticate: NTLM"),
                      std::pair(401, "WWW-Authenticate: Negotiate"),
                      std::pair(401, "WWW-Authenticate: Bearer"),
                      std::pair(407, "Proxy-Authenticate: Basic realm=\"x\"")),
    [](const auto& row) {
        return std::string(row.param.second).substr(0, 3) + std::to_string(row.index);
    });

TEST_F(UploadStatus, WithoutAKeyNothingIsSent) {
    const FerryboxServer server;
    for (const std::optional<QString>& none : {std::optional<QString>(), std::optional(u""_s)}) {
        key.key = none;
        const auto error = errorOf([&] { upload(server); });
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->kind(), Kind::MissingApiKey);
        EXPECT_EQ(error->localizedDescription(),
                  u"Ferrybox API key is not set. Add it in Settings."_s);
    }
    EXPECT_EQ(server.presigns().size(), 0U);
}

TEST_F(UploadStatus, KeyThatWouldMakeAHeaderOfItsOwnIsNotSent) {
    FerryboxServer server;
    key.key = u"key\r\nX-Other: 1"_s;
    EXPECT_EQ(failureText(server),
              u"The Ferrybox API key contains characters that cannot be sent."_s);
    EXPECT_EQ(server.server().connectionCount(), 0);
}

TEST_F(UploadStatus, AnnouncedStatusesBeforeTheFinalOneDoNotCount) {
    for (const char* interim : {"HTTP/1.1 100 Continue\r\n\r\n", "HTTP/1.1 102 Processing\r\n\r\n",
                                "HTTP/1.1 103 Early Hints\r\nLink: </x>\r\n\r\n"}) {
        const FerryboxServer server(
            {.put = always(testing::sending(interim + testing::httpAnswer(200)))});
        EXPECT_EQ(upload(server), FerryboxServer::publicURL()) << interim;
    }
}

TEST_F(UploadStatus, BodyOfThePutAnswerIsIgnored) {
    for (const auto& plan :
         {answering(200, "<html>", "text/html"), testing::sending("HTTP/1.1 200 OK\r\n\r\nx"),
          testing::sending("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nx"),
          testing::sending("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n"),
          testing::stalling("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n"),
          testing::sending("HTTP/1.0 200 OK\r\n\r\n")}) {
        const FerryboxServer server({.put = always(plan)});
        EXPECT_EQ(upload(server), FerryboxServer::publicURL()) << plan.steps[0].bytes.constData();
    }
}

TEST_F(UploadStatus, BodyOfAFailedPresignIsNotWaitedFor) {
    const FerryboxServer server({.presign = always(testing::stalling(
                                     "HTTP/1.1 503 Later\r\nContent-Length: 1000\r\n\r\n"))});
    EXPECT_EQ(failureText(server), u"Ferrybox presign failed (HTTP 503)."_s);
}

TEST_F(UploadStatus, TypeOfThePresignAnswerDoesNotMatter) {
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        return answering(200,
                         QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson(),
                         "text/html");
    }});
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
}

TEST_F(UploadStatus, PresignAnswerInChunksIsRead) {
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        const QByteArray body =
            QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson();
        QByteArray chunks;
        for (qsizetype at = 0; at < body.size(); at += 7) {
            const QByteArray part = body.mid(at, 7);
            chunks += QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
        }
        return testing::sending("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + chunks +
                                "0\r\n\r\n");
    }});
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
}

TEST_F(UploadStatus, PresignAnswerThatEndsWithTheConnectionIsRead) {
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        return testing::sending(
            "HTTP/1.1 200 OK\r\n\r\n" +
            QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson());
    }});
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
}

TEST_F(UploadStatus, WhatIsNoHttpIsNoResponse) {
    for (const char* garbage :
         {"SSH-2.0-OpenSSH_9.2\r\n", "220 mail.example ESMTP\r\n", "HTTP/one 200 OK\r\n\r\n",
          "HTTP/1.1 two OK\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n"}) {
        const FerryboxServer asked({.presign = always(testing::stalling(garbage))});
        EXPECT_EQ(failureText(asked), u"Unexpected response from Ferrybox."_s) << garbage;
        const FerryboxServer put({.put = always(testing::stalling(garbage))});
        EXPECT_EQ(failureText(put), u"Ferrybox upload failed."_s) << garbage;
    }
}

TEST_F(UploadStatus, PresignAnswerInBrokenChunksIsUnexpected) {
    const FerryboxServer server(
        {.presign = always(testing::stalling(
             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}{}\r\n"))});
    EXPECT_EQ(failureText(server), u"Unexpected response from Ferrybox."_s);
}

TEST_F(UploadStatus, PresignAnswerThatCannotBeDecodedIsSaid) {
    const testing::LogCapture log;
    const FerryboxServer server(
        {.presign = always(answering(200, answerWith(u"expiresIn"_s, u"secret-content"_s)))});
    try {
        upload(server);
        FAIL() << "it was decoded";
    } catch (const PresignDecodingError& error) {
        EXPECT_EQ(error.localizedDescription(),
                  u"\u201cexpiresIn\u201d in the response from Ferrybox is not an integer."_s);
    }
    EXPECT_TRUE(server.puts().empty());
    EXPECT_TRUE(log.lines().empty());
}

/// Answers whose addresses are no good.
class Addresses : public testing::UploadTest,
                  public ::testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(Addresses, ForThePutAreRefused) {
    const auto& [address, text] = GetParam();
    FerryboxServer server(
        {.presign = always(answering(200, answerWith(u"uploadUrl"_s, QLatin1String(address))))});
    EXPECT_EQ(failureText(server), QLatin1String(text));
    EXPECT_EQ(server.server().connectionCount(), 1);
}

constexpr char unexpected[] = "Unexpected response from Ferrybox.";
constexpr char unsupported[] = "Ferrybox gave an upload address that is not supported.";

INSTANTIATE_TEST_SUITE_P(
    NoGood, Addresses,
    ::testing::Values(std::pair("", unexpected), std::pair("http://[::1/x", unexpected),
                      std::pair("https://a b/x", unexpected),
                      std::pair("http://127.0.0.1:99999/x", unexpected),
                      std::pair("/bucket/x", unsupported), std::pair("bucket/x", unsupported),
                      std::pair("//127.0.0.1/x", unsupported), std::pair("?x=1", unsupported),
                      std::pair("http:///x", unsupported), std::pair("https:x", unsupported),
                      std::pair("ftp://127.0.0.1/x", unsupported),
                      std::pair("data:,x", unsupported), std::pair("qrc:/x", unsupported),
                      std::pair("javascript:alert(1)", unsupported),
                      std::pair("mailto:a@b.example", unsupported)),
    [](const auto& row) { return std::to_string(row.index); });

TEST_F(UploadStatus, FileIsNeverWritten) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"written.png"_s);
    const FerryboxServer server(
        {.presign = always(
             answering(200, answerWith(u"uploadUrl"_s, QUrl::fromLocalFile(path).toString())))});
    EXPECT_EQ(failureText(server), QLatin1String(unsupported));
    EXPECT_FALSE(QFile::exists(path));
}

class Links : public testing::UploadTest,
              public ::testing::WithParamInterface<std::pair<const char*, const char*>> {
protected:
    FerryboxServer server{{.presign = [this](const RecordedRequest&) {
        QJsonObject answer = FerryboxServer::presignAnswer(server.uploadURL());
        answer[u"publicUrl"_s] = QString::fromUtf8(GetParam().first);
        return answering(200, QJsonDocument(answer).toJson());
    }}};
};

using GoodLinks = Links;
using BadLinks = Links;

TEST_P(GoodLinks, AreGivenAsTheyAre) {
    EXPECT_EQ(upload(server).toEncoded(), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, GoodLinks,
    ::testing::Values(std::pair("https://ferrybox.example/f/1", "https://ferrybox.example/f/1"),
                      std::pair("https://ferrybox.example/a%20b?x=%2F#y",
                                "https://ferrybox.example/a%20b?x=%2F#y"),
                      std::pair("https://ferrybox.example/a b", "https://ferrybox.example/a%20b"),
                      std::pair("https://ferrybox.example/\xc3\xbc",
                                "https://ferrybox.example/%C3%BC")),
    [](const auto& row) { return std::to_string(row.index); });

TEST_P(BadLinks, AreFoundOutAfterThePut) {
    const auto error = errorOf([&] { upload(server); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), Kind::InvalidPublicUrl);
    EXPECT_EQ(error->localizedDescription(), u"Ferrybox returned an invalid link."_s);
    EXPECT_EQ(server.puts().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Addresses, BadLinks,
                         ::testing::Values(std::pair("", ""), std::pair("https://a b/", ""),
                                           std::pair("http://[::1", ""),
                                           std::pair("https://ferrybox.example:99999/", "")),
                         [](const auto& row) { return std::to_string(row.index); });

} // namespace snapvane
