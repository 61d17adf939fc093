// What other programs read from the clipboard after a capture.

#include "AfterCaptureSuite.h"
#include "ClipboardOwner.h"
#include "ClipboardReader.h"
#include "PngFile.h"
#include "ScreenGrab.h"
#include "TestClient.h"
#include "Wait.h"

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

// A screen full of noise makes a picture of more than the 16 MiB that the server takes at once, so
// that its owner has to hand it over in parts.
constexpr QSize largeScreen(3840, 2160);
constexpr QRect firstArea(100, 100, 200, 100);
constexpr QRect secondArea(400, 300, 300, 150);
constexpr char png[] = "image/png";

class Clipboard : public AfterCaptureSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screenSize = largeScreen;
        startDesktop(options);
    }

    static ClipboardReader reader() { return ClipboardReader(desktop().display()); }

    /// Selects and returns when the notice says that all of it is done.
    void selectAndFinish(const QRect& rect) {
        waitForNoNotice();
        select(rect);
        waitForNotice();
    }

    static QImage pictureOf(const std::optional<QByteArray>& bytes) {
        return QImage::fromData(bytes.value_or(QByteArray()));
    }
};

TEST_F(Clipboard, HoldsTheBytesOfTheSavedFile) {
    startAgent(actionsPreference("copyToClipboard, saveToFolder"));
    selectAndFinish(firstArea);
    const QByteArray file = contentsOf(waitForPicture());
    const auto copied = reader().read(png);
    ASSERT_TRUE(copied.has_value());
    EXPECT_EQ(*copied, file);
    EXPECT_TRUE(readWholePng(*copied).has_value());
}

TEST_F(Clipboard, OffersThePictureAndNoText) {
    startAgent(actionsPreference("copyToClipboard"));
    selectAndFinish(firstArea);
    const QStringList targets = reader().targets();
    EXPECT_TRUE(targets.contains(u"image/png"_s)) << targets.join(u' ').toStdString();
    for (const char* text : {"UTF8_STRING", "STRING", "TEXT", "text/plain", "text/uri-list"}) {
        EXPECT_FALSE(targets.contains(QLatin1String(text))) << text;
        EXPECT_FALSE(reader().read(text).has_value()) << text;
    }
}

TEST_F(Clipboard, CopyWithoutSavingLeavesNoFile) {
    startAgent(actionsPreference("copyToClipboard"));
    selectAndFinish(firstArea);
    EXPECT_EQ(pictureOf(reader().read(png)).size(), firstArea.size());
    EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
}

TEST_F(Clipboard, NewPictureLeavesNothingOfTheOldOne) {
    startAgent(actionsPreference("copyToClipboard"));
    selectAndFinish(firstArea);
    const QStringList targets = reader().targets();
    ASSERT_EQ(pictureOf(reader().read(png)).size(), firstArea.size());
    const QImage screen = grabSettledScreen(desktop().connection(), secondArea);
    selectAndFinish(secondArea);
    EXPECT_EQ(reader().targets(), targets);
    EXPECT_EQ(pictureOf(reader().read(png)).convertToFormat(QImage::Format_RGB32), screen);
}

TEST_F(Clipboard, TextOfAnotherProgramIsReplaced) {
    const ClipboardOwner other(desktop().display());
    startAgent(actionsPreference("copyToClipboard"));
    selectAndFinish(firstArea);
    EXPECT_FALSE(other.owns());
    EXPECT_EQ(pictureOf(reader().read(png)).size(), firstArea.size());
}

class ClipboardLeftAlone
    : public Clipboard,
      public ::testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(ClipboardLeftAlone, BelongsToWhomItBelonged) {
    const ClipboardOwner other(desktop().display());
    startAgent(actionsPreference(GetParam().second));
    selectAndFinish(firstArea);
    EXPECT_TRUE(other.owns());
}

INSTANTIATE_TEST_SUITE_P(WithoutCopy, ClipboardLeftAlone,
                         ::testing::Values(std::pair("FailedUpload", "uploadFerrybox"),
                                           std::pair("FailedUploadAndSave",
                                                     "saveToFolder, uploadFerrybox"),
                                           std::pair("Save", "saveToFolder"),
                                           std::pair("NothingSelected", "@Invalid()")),
                         [](const auto& row) { return std::string(row.param.first); });

TEST_F(Clipboard, FailedUploadDoesNotKeepThePictureFromIt) {
    startAgent(actionsPreference("copyToClipboard, uploadFerrybox"));
    selectAndFinish(firstArea);
    EXPECT_EQ(pictureOf(reader().read(png)).size(), firstArea.size());
    EXPECT_FALSE(reader().targets().contains(u"UTF8_STRING"_s));
}

/// The whole large screen full of noise, which no encoder makes small.
class LargeClipboard : public Clipboard {
protected:
    void SetUp() override {
        Clipboard::SetUp();
        TestClient::Options options;
        options.mode = u"noise"_s;
        options.rect = QRect({0, 0}, largeScreen);
        options.overrideRedirect = true;
        m_noise = std::make_unique<TestClient>(desktop(), options);
    }

    void TearDown() override {
        m_noise.reset();
#ifdef SNAPVANE_SANITIZED
        // The toolkit keeps what a reader has stopped asking for five seconds long, and frees it
        // only then: an agent that ends sooner would count as leaking.
        pause(std::chrono::milliseconds(6000));
#endif
        Clipboard::TearDown();
    }

    static QRect wholeScreen() {
        return {QPoint(0, 0), largeScreen - QSize(1, 1)};
    }

private:
    std::unique_ptr<TestClient> m_noise;
};

TEST_F(LargeClipboard, PictureInManyPartsArrivesWhole) {
    startAgent(actionsPreference("copyToClipboard, saveToFolder"));
    selectAndFinish(wholeScreen());
    const QByteArray file = contentsOf(waitForPicture());
    ASSERT_GT(file.size(), 16 * 1024 * 1024);
    ClipboardReader first = reader();
    const auto copied = first.read(png);
    ASSERT_TRUE(copied.has_value());
    EXPECT_TRUE(*copied == file) << copied->size() << " bytes instead of " << file.size();

    // Once more for another reader, after one who has lost interest.
    const auto part = reader().readFirstPart(png);
    ASSERT_TRUE(part.has_value());
    EXPECT_TRUE(file.startsWith(*part));
    const auto again = first.read(png);
    ASSERT_TRUE(again.has_value());
    EXPECT_TRUE(*again == file);
    EXPECT_TRUE(agent().process().isRunning());
}

TEST_F(LargeClipboard, AnotherProgramMayTakeItWhileAPictureIsServed) {
    startAgent(actionsPreference("copyToClipboard"));
    selectAndFinish(wholeScreen());
    ClipboardReader halfWay = reader();
    ASSERT_TRUE(halfWay.readFirstPart(png).has_value());
    const ClipboardOwner other(desktop().display());
    EXPECT_TRUE(other.owns());
    pause(std::chrono::milliseconds(200));
    ASSERT_TRUE(agent().process().isRunning());
    EXPECT_TRUE(other.owns());

    selectAndFinish(firstArea);
    EXPECT_FALSE(other.owns());
    EXPECT_EQ(pictureOf(reader().read(png)).size(), firstArea.size());
}

TEST_F(Clipboard, AnotherProgramMayTakeItWhileItIsWritten) {
    startAgent(actionsPreference("copyToClipboard"));
    std::atomic<bool> stop = false;
    std::thread thief([&] {
        ClipboardOwner other(desktop().display());
        while (!stop) {
            other.take();
            std::this_thread::sleep_for(std::chrono::microseconds(300));
        }
    });
    for (int round = 0; round < 2; ++round) {
        selectAndFinish(firstArea);
        EXPECT_TRUE(agent().process().isRunning());
    }
    stop = true;
    thief.join();

    selectAndFinish(secondArea);
    EXPECT_EQ(pictureOf(reader().read(png)).size(), secondArea.size());
}

} // namespace

} // namespace snapvane::testing
