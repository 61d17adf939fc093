#include "actions/AfterCapturePasteboard.h"

#include "platform/null/NullPlatform.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

CaptureResult capture() {
    CaptureResult result;
    result.pngData = "picture";
    result.image.bitmap = QImage(3, 2, QImage::Format_RGB32);
    result.image.bitmap.fill(Qt::red);
    return result;
}

PasteboardContents written(bool includeImage, const std::optional<QString>& link) {
    null::NullPasteboard pasteboard;
    AfterCapturePasteboard::write(pasteboard, capture(), includeImage, link);
    EXPECT_EQ(pasteboard.writes.size(), 1U);
    return pasteboard.writes.at(0);
}

struct LinkCase {
    const char* name;
    QString link;
    bool isUrl;

    friend void PrintTo(const LinkCase& example, std::ostream* stream) {
        *stream << example.link.toStdString();
    }
};

const LinkCase links[] = {
    {"Plain", QStringLiteral("https://ferrybox.example/f/1"), true},
    {"QueryAndFragment", QStringLiteral("https://ferrybox.example/f?a=1&b=2#top"), true},
    {"PercentEncoded", QStringLiteral("https://ferrybox.example/a%20b%2Fc"), true},
    {"EncodedDomain", QStringLiteral("https://xn--bcher-kva.example/"), true},
    {"OneWord", QStringLiteral("hello"), true},
    {"Space", QStringLiteral("https://ferrybox.example/a b"), false},
    {"SpaceInHost", QStringLiteral("https://ferry box.example/"), false},
    {"StrayPercent", QStringLiteral("https://ferrybox.example/50%"), false},
    {"BadPort", QStringLiteral("https://ferrybox.example:port/"), false},
    {"OpenBracket", QStringLiteral("http://["), false},
    {"Words", QStringLiteral("no link at all"), false},
    {"Empty", QStringLiteral(""), false},
};

class PasteboardLink : public ::testing::TestWithParam<LinkCase> {};

} // namespace

TEST_P(PasteboardLink, IsTextAndWhereItIsOneAlsoAUrl) {
    const LinkCase& example = GetParam();
    for (const bool includeImage : {false, true}) {
        const PasteboardContents contents = written(includeImage, example.link);
        EXPECT_EQ(contents.text, example.link);
        ASSERT_EQ(contents.url.has_value(), example.isUrl);
        if (contents.url) {
            EXPECT_EQ(QString::fromUtf8(contents.url->toEncoded()), example.link);
        }
        EXPECT_EQ(contents.png.has_value(), includeImage);
    }
}

INSTANTIATE_TEST_SUITE_P(Table, PasteboardLink, ::testing::ValuesIn(links),
                         [](const auto& example) { return std::string(example.param.name); });

TEST(AfterCapturePasteboard, TakesLettersOfAllLanguagesInALink) {
    const QString link = QStringLiteral("https://b\u00fccher.example/\u65e5\u672c");
    const PasteboardContents contents = written(false, link);
    EXPECT_EQ(contents.text, link);
    ASSERT_TRUE(contents.url.has_value());
    EXPECT_EQ(QString::fromUtf8(contents.url->toEncoded()),
              QStringLiteral("https://xn--bcher-kva.example/%E6%97%A5%E6%9C%AC"));
}

TEST(AfterCapturePasteboard, OffersThePictureAsBytesAndAsAnImage) {
    const PasteboardContents contents = written(true, std::nullopt);
    EXPECT_EQ(contents.png, "picture");
    EXPECT_EQ(contents.image, capture().image.bitmap);
    EXPECT_EQ(contents.text, std::nullopt);
    EXPECT_EQ(contents.url, std::nullopt);
}

TEST(AfterCapturePasteboard, LeavesThePictureOutWhenItIsNotWanted) {
    const PasteboardContents contents = written(false, QStringLiteral("https://ferrybox.example/"));
    EXPECT_EQ(contents.png, std::nullopt);
    EXPECT_EQ(contents.image, std::nullopt);
}

TEST(AfterCapturePasteboard, ClearsTheClipboardAlsoForNothing) {
    const PasteboardContents contents = written(false, std::nullopt);
    EXPECT_EQ(contents.png, std::nullopt);
    EXPECT_EQ(contents.image, std::nullopt);
    EXPECT_EQ(contents.text, std::nullopt);
    EXPECT_EQ(contents.url, std::nullopt);
}

} // namespace snapvane
