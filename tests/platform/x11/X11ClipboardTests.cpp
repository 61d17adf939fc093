// What another program reads of a write, at sizes that no screen of the tests reaches.

#include "platform/xdg/QtPasteboard.h"

#include "X11TestDesktop.h"
#include "support/ClipboardReader.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <future>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

QByteArray randomBytes(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(20261121);
    for (char& byte : bytes) {
        byte = static_cast<char>(generator.generate());
    }
    return bytes;
}

/// The clipboard in one of its forms as another program gets it, while Qt serves it here.
std::optional<QByteArray> readElsewhere(std::string_view target) {
    auto reading = std::async(std::launch::async, [target] {
        testing::ClipboardReader reader(testDesktop().display());
        return reader.read(target);
    });
    const auto isDone = [&reading] {
        return reading.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    // The reader gives up by itself when it is left waiting.
    while (!waitForEvents(isDone)) {
    }
    return reading.get();
}

class X11ClipboardSizes : public ::testing::TestWithParam<qsizetype> {};

TEST_P(X11ClipboardSizes, ArriveByteForByte) {
    const QByteArray bytes = randomBytes(GetParam());
    xdg::QtPasteboard().write({.png = bytes, .image = {}, .text = {}, .url = {}});
    const auto read = readElsewhere("image/png");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->size(), bytes.size());
    EXPECT_TRUE(*read == bytes);
}

INSTANTIATE_TEST_SUITE_P(Table, X11ClipboardSizes,
                         ::testing::Values(1, 65'536, 262'144, 1'048'577, 60 * 1024 * 1024));

TEST(X11Clipboard, HoldsThePictureAndTheLinkTogether) {
    const QByteArray bytes = randomBytes(300'000);
    xdg::QtPasteboard().write({.png = bytes,
                               .image = {},
                               .text = u"https://example.org/a b"_s,
                               .url = QUrl(u"https://example.org/a%20b"_s)});
    EXPECT_TRUE(readElsewhere("image/png") == bytes);
    EXPECT_EQ(readElsewhere("UTF8_STRING"), "https://example.org/a b");
    EXPECT_EQ(readElsewhere("text/uri-list").value_or(QByteArray()).trimmed(),
              "https://example.org/a%20b");
}

} // namespace

} // namespace snapvane
