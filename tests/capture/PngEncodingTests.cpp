#include "capture/PngEncoding.h"

#include "capture/CaptureServiceError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

namespace snapvane {

namespace {

struct Chunk {
    QByteArray type;
    QByteArray data;
};

/// Takes a PNG file apart; nothing when it is not well formed.
std::vector<Chunk> chunksOf(const QByteArray& png) {
    std::vector<Chunk> chunks;
    if (!png.startsWith(QByteArray::fromHex("89504e470d0a1a0a"))) {
        return {};
    }
    qsizetype position = 8;
    while (position + 12 <= png.size()) {
        const auto length =
            static_cast<qsizetype>(qFromBigEndian<quint32>(png.constData() + position));
        if (position + 12 + length > png.size()) {
            return {};
        }
        chunks.push_back({png.mid(position + 4, 4), png.mid(position + 8, length)});
        position += 12 + length;
    }
    return position == png.size() ? chunks : std::vector<Chunk>();
}

QImage noise(int width, int height, quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(width, height, QImage::Format_RGBX8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, 0xff000000U | random.generate());
        }
    }
    return image;
}

bool samePixels(const QImage& a, const QImage& b) {
    return a.convertToFormat(QImage::Format_RGB32) == b.convertToFormat(QImage::Format_RGB32);
}

} // namespace

TEST(PngEncoding, WritesRgbOf8BitsAndNothingBesides) {
    const auto chunks = chunksOf(pngData(noise(300, 7, 1)));
    ASSERT_GE(chunks.size(), 3U);
    const QByteArray header = chunks.front().data;
    EXPECT_EQ(chunks.front().type, "IHDR");
    ASSERT_EQ(header.size(), 13);
    EXPECT_EQ(qFromBigEndian<quint32>(header.constData()), 300U);
    EXPECT_EQ(qFromBigEndian<quint32>(header.constData() + 4), 7U);
    EXPECT_EQ(header[8], 8) << "bits a channel";
    EXPECT_EQ(header[9], 2) << "RGB";
    EXPECT_EQ(header.mid(10), QByteArray(3, '\0')) << "deflate, the usual filters, not interlaced";
    for (std::size_t i = 1; i + 1 < chunks.size(); ++i) {
        EXPECT_EQ(chunks[i].type, "IDAT");
    }
    EXPECT_EQ(chunks.back().type, "IEND");
    EXPECT_TRUE(chunks.back().data.isEmpty());
}

TEST(PngEncoding, WritesNothingBesidesForFlatAndGreyPicturesEither) {
    QImage image(64, 64, QImage::Format_RGBX8888);
    image.fill(QColor(0x80, 0x80, 0x80));
    for (const Chunk& chunk : chunksOf(pngData(image))) {
        EXPECT_THAT(chunk.type, ::testing::AnyOf("IHDR", "IDAT", "IEND"));
    }
}

TEST(PngEncoding, KeepsEveryPixel) {
    QRandomGenerator random(42);
    for (int i = 0; i < 40; ++i) {
        const int width = static_cast<int>(random.bounded(1, 400));
        const int height = static_cast<int>(random.bounded(1, 100));
        SCOPED_TRACE(::testing::Message() << width << " x " << height);
        const QImage image = noise(width, height, random.generate());
        const QImage decoded = QImage::fromData(pngData(image), "png");
        ASSERT_EQ(decoded.size(), image.size());
        EXPECT_TRUE(samePixels(decoded, image));
        EXPECT_FALSE(decoded.hasAlphaChannel());
    }
}

TEST(PngEncoding, IsReadAlikeByAnotherDecoder) {
    const QTemporaryDir folder;
    const QImage image = noise(37, 23, 7);
    QFile file(folder.filePath(QStringLiteral("picture.png")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(pngData(image));
    file.close();
    QProcess convert;
    convert.start(QStringLiteral("convert"), {file.fileName(), QStringLiteral("-depth"),
                                              QStringLiteral("8"), QStringLiteral("rgba:-")});
    ASSERT_TRUE(convert.waitForFinished()) << convert.errorString().toStdString();
    EXPECT_EQ(convert.exitCode(), 0) << convert.readAllStandardError().toStdString();
    const QByteArray pixels(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    EXPECT_EQ(convert.readAllStandardOutput(), pixels);
}

TEST(PngEncoding, FailsWithoutAPicture) {
    try {
        pngData({});
        FAIL() << "nothing was thrown";
    } catch (const CaptureServiceError& error) {
        EXPECT_EQ(error.errorCase(), CaptureServiceError::Case::pngEncodingFailed);
    }
}

} // namespace snapvane
