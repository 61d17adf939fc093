// What goes over the wire when all is well.

#include "UploadFixture.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using testing::answering;
using testing::FerryboxServer;
using testing::RecordedRequest;
using UploadWire = testing::UploadTest;

QByteArray hostOf(const QUrl& url) {
    return "Host: 127.0.0.1:" + QByteArray::number(url.port());
}

} // namespace

TEST_F(UploadWire, GivesThePublicLink) {
    const FerryboxServer server;
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
}

TEST_F(UploadWire, AsksOnceAndPutsOnce) {
    FerryboxServer server;
    upload(server);
    ASSERT_EQ(server.server().requests().size(), 2U);
    EXPECT_EQ(server.server().requests()[0].method(), "POST");
    EXPECT_EQ(server.server().requests()[1].method(), "PUT");
}

TEST_F(UploadWire, PresignCarriesTheseHeadersAndNoOthers) {
    const FerryboxServer server;
    upload(server);
    const RecordedRequest request = server.presigns().at(0);
    EXPECT_TRUE(request.head.startsWith("POST /api/presign HTTP/1.1\r\n"));
    EXPECT_THAT(request.headers(),
                ::testing::UnorderedElementsAre(
                    "Content-Type: application/json", "X-API-Key: key-0123456789",
                    "Content-Length: " + QByteArray::number(request.body.size()),
                    hostOf(server.baseURL()), "Connection: close"));
}

TEST_F(UploadWire, PresignSaysNameTypeAndSize) {
    const FerryboxServer server;
    upload(server);
    EXPECT_EQ(QJsonDocument::fromJson(server.presigns().at(0).body).object(),
              QJsonObject({{u"filename"_s, filename()},
                           {u"contentType"_s, u"image/png"_s},
                           {u"fileSize"_s, pictureBytes().size()}}));
}

TEST_F(UploadWire, PutCarriesTheseHeadersAndNoKey) {
    const FerryboxServer server;
    upload(server);
    const RecordedRequest request = server.puts().at(0);
    EXPECT_THAT(request.headers(),
                ::testing::UnorderedElementsAre("Content-Type: image/png",
                                                "Content-Length: " +
                                                    QByteArray::number(pictureBytes().size()),
                                                hostOf(server.baseURL()), "Connection: close"));
}

TEST_F(UploadWire, PutGoesToTheAddressAsItWasGiven) {
    const FerryboxServer server;
    upload(server);
    EXPECT_TRUE(server.puts().at(0).head.startsWith(
        "PUT /bucket/file%20one?X-Signature=a%2Fb%2Bc%3D&X-Expires=60 HTTP/1.1\r\n"))
        << server.puts().at(0).head.constData();
}

TEST_F(UploadWire, PutsThePictureByteForByte) {
    const FerryboxServer server;
    upload(server);
    EXPECT_EQ(server.puts().at(0).body, pictureBytes());
}

TEST_F(UploadWire, PutsALargePictureByteForByte) {
    QByteArray large(24 * 1024 * 1024 + 7, '\0');
    for (qsizetype i = 0; i < large.size(); ++i) {
        large[i] = static_cast<char>(i * 31 + i / 4093);
    }
    const FerryboxServer server;
    upload(server.baseURL(), large);
    EXPECT_TRUE(server.puts().at(0).body == large);
}

TEST_F(UploadWire, PutsAnEmptyPicture) {
    const FerryboxServer server;
    upload(server.baseURL(), QByteArray());
    EXPECT_EQ(server.puts().at(0).header("Content-Length"), "0");
    EXPECT_EQ(server.puts().at(0).body, QByteArray());
}

TEST_F(UploadWire, KeyAndPresignAreAskedForAnewEachTime) {
    const FerryboxServer server;
    upload(server);
    key.key = u"another"_s;
    upload(server);
    EXPECT_EQ(key.loads, 2);
    ASSERT_EQ(server.presigns().size(), 2U);
    EXPECT_EQ(server.presigns()[0].header("X-API-Key"), "key-0123456789");
    EXPECT_EQ(server.presigns()[1].header("X-API-Key"), "another");
}

TEST_F(UploadWire, KeyIsSentAsItIsStored) {
    const FerryboxServer server;
    key.key = u"a:b  \u00fc\"c\\"_s;
    upload(server);
    EXPECT_THAT(server.presigns().at(0).headers(),
                ::testing::Contains(QByteArray("X-API-Key: a:b  \xc3\xbc\"c\\")));
}

TEST_F(UploadWire, CookiesOfTheServiceAreNeitherKeptNorSent) {
    const QByteArray cookie = "HTTP/1.1 200 OK\r\nSet-Cookie: a=b; Path=/\r\n";
    QByteArray presigned;
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        return testing::sending(cookie + "Content-Length: " + QByteArray::number(presigned.size()) +
                                "\r\n\r\n" + presigned);
    }});
    presigned = QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson();
    upload(server);
    upload(server);
    for (const RecordedRequest& request : server.server().requests()) {
        EXPECT_EQ(request.header("Cookie"), std::nullopt);
    }
}

} // namespace snapvane
