// The saved picture is what stood on the glass, to the pixel, on every kind of desktop.

#include "AgentSuite.h"
#include "Flavours.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType> class Exactness : public AgentSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.compositor = FlavourType::compositor;
        options.screens = ScreenSet::TwoSideBySide;
        options.screenSize = {1280, 720};
        start(options);
    }

    static QString name(const char* what) {
        return u"exactness-%1-%2"_s.arg(QLatin1String(nameOf(FlavourType::compositor)),
                                        QLatin1String(what));
    }

    static TestClient::Options client(const QString& mode, const QRect& rect) {
        TestClient::Options options;
        options.mode = mode;
        options.rect = rect;
        return options;
    }
};

TYPED_TEST_SUITE(Exactness, EveryFlavourAndGl, FlavourNames);

template <typename FlavourType> class LiveExactness : public Exactness<FlavourType> {};

TYPED_TEST_SUITE(LiveExactness, EveryFlavour, FlavourNames);

TYPED_TEST(Exactness, DragInEachOfTheFourDirections) {
    // Title bar, frame, shadow and a window's inside are all in the rectangle.
    const TestClient window(this->desktop(), this->client(u"pattern"_s, {300, 200, 400, 300}));
    const QRect rect(250, 120, 333, 277);
    const QPoint topLeft = rect.topLeft();
    const QPoint bottomRight = topLeft + QPoint(rect.width(), rect.height());
    const QPoint topRight(bottomRight.x(), topLeft.y());
    const QPoint bottomLeft(topLeft.x(), bottomRight.y());
    this->expectExact(topLeft, bottomRight, rect, this->name("down-right"));
    this->expectExact(bottomRight, topLeft, rect, this->name("up-left"));
    this->expectExact(topRight, bottomLeft, rect, this->name("down-left"));
    this->expectExact(bottomLeft, topRight, rect, this->name("up-right"));
}

TYPED_TEST(Exactness, WindowsLyingOverEachOther) {
    const TestClient below(this->desktop(), this->client(u"pattern"_s, {100, 100, 500, 400}));
    TestClient::Options options = this->client(u"noise"_s, {400, 300, 300, 300});
    options.title = u"Above"_s;
    options.overrideRedirect = true;
    const TestClient above(this->desktop(), options);
    this->expectExact({80, 60}, {760, 660}, {80, 60, 680, 600}, this->name("pile"));
}

TYPED_TEST(Exactness, SlowlyRepaintingWindow) {
    const TestClient slow(this->desktop(), this->client(u"slow"_s, {300, 200, 500, 300}));
    this->expectExact({280, 150}, {850, 560}, {280, 150, 570, 410}, this->name("slow"));
}

TYPED_TEST(Exactness, SecondMonitor) {
    const TestClient window(this->desktop(), this->client(u"pattern"_s, {1500, 150, 400, 300}));
    this->expectExact({1450, 100}, {2000, 500}, {1450, 100, 550, 400}, this->name("second"));
    this->expectExact({2559, 719}, {2400, 600}, {2400, 600, 160, 120}, this->name("last-corner"));
}

TYPED_TEST(LiveExactness, LiveWindowIsOneWholeFrameOfItsOwnTime) {
    TestClient::Options options = this->client(u"live"_s, {300, 200, 400, 300});
    options.overrideRedirect = true;
    const TestClient live(this->desktop(), options);
    const QRect rect(320, 230, 350, 250);
    const auto frameOf = [&](const QImage& image) { return liveFrameOf(image.pixel(0, 0)); };
    const auto wholeFrame = [&](uint32_t frame) {
        QImage image(rect.size(), QImage::Format_RGB32);
        for (int y = 0; y < rect.height(); ++y) {
            for (int x = 0; x < rect.width(); ++x) {
                image.setPixel(x, y, 0xff000000U | livePixel(frame, x + 20, y + 30));
            }
        }
        return image;
    };
    require("the live window to be faded in", [&] {
        const QImage image = grabScreen(this->desktop().connection(), rect);
        return image == wholeFrame(frameOf(image));
    });

    this->beginSelection();
    // Long enough that a picture taken when the session began would be out of date.
    pause(std::chrono::milliseconds(600));
    this->injector().dragTo(rect.topLeft(), rect.topLeft() + QPoint(rect.width(), rect.height()));
    const uint32_t atRelease = live.frame();
    this->injector().release();
    const QImage picture(this->agent().waitForPicture());
    const uint32_t atEnd = live.frame();

    const uint32_t frame = frameOf(picture);
    EXPECT_TRUE(samePicture(wholeFrame(frame), picture, this->name("live")));
    // A compositor may lag behind the window by a few frames.
    constexpr uint32_t lag = 12;
    const uint32_t age = (frame + lag - atRelease) % liveFrameCount;
    EXPECT_LE(age, (atEnd + lag - atRelease) % liveFrameCount)
        << "frame " << frame << " is not of the time from " << atRelease << " to " << atEnd;
}

} // namespace

} // namespace snapvane::testing
