#include "platform/xdg/QtPasteboard.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace snapvane {

namespace {

QImage redPicture() {
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

const QUrl link(QStringLiteral("https://ferrybox.example/a%20b"));

class QtPasteboardTest : public ::testing::Test {
protected:
    /// What other programs are offered after the write.
    const QMimeData& offered(const PasteboardContents& contents) {
        m_pasteboard.write(contents);
        return *QGuiApplication::clipboard()->mimeData();
    }

    xdg::QtPasteboard m_pasteboard;
};

} // namespace

TEST_F(QtPasteboardTest, OffersThePicturesOwnBytesAndNoOtherForm) {
    const QMimeData& data =
        offered({.png = "picture", .image = redPicture(), .text = {}, .url = {}});
    EXPECT_EQ(data.formats(), QStringList(QStringLiteral("image/png")));
    EXPECT_EQ(data.data(QStringLiteral("image/png")), "picture");
}

TEST_F(QtPasteboardTest, OffersTheImageWhereThereAreNoBytes) {
    for (const std::optional<QByteArray>& png :
         {std::optional<QByteArray>(), std::optional(QByteArray())}) {
        const QMimeData& data = offered({.png = png, .image = redPicture(), .text = {}, .url = {}});
        ASSERT_TRUE(data.hasImage());
        EXPECT_EQ(data.imageData().value<QImage>(), redPicture());
    }
}

TEST_F(QtPasteboardTest, OffersNoPictureWhereThereIsNone) {
    const QMimeData& data =
        offered({.png = QByteArray(), .image = QImage(), .text = {}, .url = {}});
    EXPECT_FALSE(data.hasImage());
    EXPECT_EQ(data.formats(), QStringList());
}

TEST_F(QtPasteboardTest, OffersALinkAsTextAndAsAUrl) {
    const QMimeData& data = offered({.png = {},
                                     .image = {},
                                     .text = QStringLiteral("https://ferrybox.example/a%20b"),
                                     .url = link});
    EXPECT_EQ(data.text(), QStringLiteral("https://ferrybox.example/a%20b"));
    EXPECT_EQ(data.urls(), QList<QUrl>{link});
    EXPECT_EQ(data.data(QStringLiteral("text/uri-list")).trimmed(),
              "https://ferrybox.example/a%20b");
    EXPECT_FALSE(data.hasImage());
}

TEST_F(QtPasteboardTest, OffersWordsAsTextAlone) {
    const QMimeData& data =
        offered({.png = {}, .image = {}, .text = QStringLiteral("no link"), .url = {}});
    EXPECT_EQ(data.text(), QStringLiteral("no link"));
    EXPECT_FALSE(data.hasUrls());
}

TEST_F(QtPasteboardTest, OffersEverythingTogether) {
    const QMimeData& data = offered({.png = "picture",
                                     .image = redPicture(),
                                     .text = QStringLiteral("https://ferrybox.example/a%20b"),
                                     .url = link});
    EXPECT_EQ(data.data(QStringLiteral("image/png")), "picture");
    EXPECT_EQ(data.text(), QStringLiteral("https://ferrybox.example/a%20b"));
    EXPECT_EQ(data.urls(), QList<QUrl>{link});
}

TEST_F(QtPasteboardTest, ReplacesWhatWasThere) {
    offered({.png = "picture", .image = {}, .text = QStringLiteral("text"), .url = link});
    EXPECT_EQ(offered({.png = "other", .image = {}, .text = {}, .url = {}}).formats(),
              QStringList(QStringLiteral("image/png")));
    EXPECT_EQ(offered({}).formats(), QStringList());
}

} // namespace snapvane
