// What the server and the clipboard hold after an upload, to the byte.

#include "PngFile.h"
#include "ScreenGrab.h"
#include "UploadSuite.h"
#include "Wait.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class UploadBytes : public UploadSuite {
protected:
    /// Captures and returns when all is done.
    void captureWith(const QByteArray& actions) {
        startService();
        m_screen = grabSettledScreen(desktop().connection(), area);
        startLoopbackAgent(actions);
        select(area);
        require("the upload", [this] { return service().puts().size() == 1; });
        waitForNotice();
    }
    const QImage& screen() const { return m_screen; }
    RecordedRequest presign() { return service().presigns().at(0); }
    RecordedRequest put() { return service().puts().at(0); }

private:
    QImage m_screen;
};

TEST_F(UploadBytes, ServerGetsThePictureOnTheScreen) {
    captureWith("uploadFerrybox");
    EXPECT_TRUE(readWholePng(put().body).has_value());
    EXPECT_EQ(QImage::fromData(put().body).convertToFormat(QImage::Format_RGB32), screen());
}

TEST_F(UploadBytes, ServerGetsTheSavedFileAndItsName) {
    captureWith("saveToFolder, uploadFerrybox");
    const QString file = waitForPicture();
    EXPECT_EQ(put().body, contentsOf(file));
    EXPECT_EQ(QJsonDocument::fromJson(presign().body).object()[u"filename"_s].toString(),
              QFileInfo(file).fileName());
}

TEST_F(UploadBytes, PresignIsWhatTheServiceExpects) {
    captureWith("uploadFerrybox");
    const QJsonObject body = QJsonDocument::fromJson(presign().body).object();
    const QRegularExpression name(uR"(^Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png$)"_s);
    EXPECT_EQ(body.keys(), QStringList({u"contentType"_s, u"fileSize"_s, u"filename"_s}));
    EXPECT_TRUE(name.match(body[u"filename"_s].toString()).hasMatch());
    EXPECT_EQ(body[u"contentType"_s], QJsonValue(u"image/png"_s));
    EXPECT_EQ(body[u"fileSize"_s], QJsonValue(put().body.size()));
    const QByteArray host = "127.0.0.1:" + QByteArray::number(SNAPVANE_LOOPBACK_PORT);
    EXPECT_EQ(presign().head, "POST /api/presign HTTP/1.1\r\nHost: " + host +
                                  "\r\nContent-Type: application/json\r\nContent-Length: " +
                                  QByteArray::number(presign().body.size()) +
                                  "\r\nX-API-Key: " + key + "\r\nConnection: close\r\n\r\n");
}

TEST_F(UploadBytes, PutIsWhatTheBucketExpects) {
    captureWith("uploadFerrybox");
    const QByteArray host = "127.0.0.1:" + QByteArray::number(SNAPVANE_LOOPBACK_PORT);
    EXPECT_EQ(put().head,
              "PUT /bucket/file%20one?X-Signature=a%2Fb%2Bc%3D&X-Expires=60 HTTP/1.1\r\nHost: " +
                  host + "\r\nContent-Type: image/png\r\nContent-Length: " +
                  QByteArray::number(put().body.size()) + "\r\nConnection: close\r\n\r\n");
}

TEST_F(UploadBytes, ClipboardHoldsTheLinkAsTextAndAsAnAddress) {
    captureWith("uploadFerrybox");
    const QByteArray link = FerryboxServer::publicURL().toEncoded();
    EXPECT_EQ(clipboard().read("UTF8_STRING"), link);
    EXPECT_EQ(clipboard().read("text/plain"), link);
    EXPECT_EQ(clipboard().read("text/uri-list"), link + "\r\n");
    EXPECT_FALSE(clipboard().targets().contains(u"image/png"_s));
}

TEST_F(UploadBytes, ClipboardHoldsThePictureBesideTheLink) {
    captureWith("copyToClipboard, uploadFerrybox");
    const QByteArray link = FerryboxServer::publicURL().toEncoded();
    EXPECT_EQ(clipboard().read("UTF8_STRING"), link);
    EXPECT_EQ(clipboard().read("text/uri-list"), link + "\r\n");
    EXPECT_EQ(clipboard().read("image/png"), put().body);
}

} // namespace

} // namespace snapvane::testing
