#include "choice/ChoiceThumbnail.h"

#include "base/Async.h"
#include "base/TestPalette.h"
#include "choice/ChoicePictures.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPainter>
#include <QSemaphore>

#include <optional>

namespace snapvane {

namespace {

PlatformImage picture(QSize pixels, double scale = 1) {
    QImage bitmap(pixels, QImage::Format_RGB32);
    bitmap.fill(Qt::darkCyan);
    return {bitmap, {pixels.width() / scale, pixels.height() / scale}};
}

struct Fit {
    QSize pixels;
    QSize shown;
};

QImage rendered(ChoiceThumbnail& thumbnail, double scale) {
    thumbnail.resize(thumbnail.sizeHint());
    return testing::renderFinished(thumbnail, scale);
}

/// A fine pattern: pixels black and white in turn, in columns of that width.
PlatformImage columns(QSize pixels, int width) {
    PlatformImage image = picture(pixels);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            image.bitmap.setPixel(x, y, x / width % 2 == 0 ? 0xff000000 : 0xffffffff);
        }
    }
    return image;
}

/// All threads for work in the background are busy, as with a slow disk, while it lives.
class BusyBackground {
public:
    BusyBackground() {
        for (int i = 0; i < backgroundPool().maxThreadCount(); ++i) {
            backgroundPool().start([this] { m_end.acquire(); });
        }
    }
    ~BusyBackground() {
        m_end.release(backgroundPool().maxThreadCount());
        backgroundPool().waitForDone();
    }
    BusyBackground(const BusyBackground&) = delete;
    BusyBackground& operator=(const BusyBackground&) = delete;

private:
    QSemaphore m_end;
};

class ChoiceThumbnailFits : public ::testing::TestWithParam<Fit> {};

} // namespace

INSTANTIATE_TEST_SUITE_P(ChoiceThumbnail, ChoiceThumbnailFits,
                         ::testing::Values(Fit{{720, 280}, {360, 140}}, // as wide as high
                                           Fit{{1920, 1080}, {249, 140}},
                                           Fit{{3000, 300}, {360, 36}}, Fit{{300, 3000}, {14, 140}},
                                           Fit{{3840, 2}, {360, 1}}, Fit{{2, 3840}, {1, 140}},
                                           // Small ones are enlarged.
                                           Fit{{10, 10}, {140, 140}}, Fit{{4, 4}, {140, 140}},
                                           Fit{{36, 7}, {360, 70}}));

TEST_P(ChoiceThumbnailFits, KeepTheProportionsWithinTheSpace) {
    const ChoiceThumbnail thumbnail(picture(GetParam().pixels));
    EXPECT_EQ(thumbnail.sizeHint(), GetParam().shown);
}

TEST(ChoiceThumbnail, GoesByPointsNotByPixels) {
    EXPECT_EQ(ChoiceThumbnail(picture({400, 200}, 2)).sizeHint(),
              ChoiceThumbnail(picture({200, 100}, 1)).sizeHint());
}

TEST(ChoiceThumbnail, IsAPointWhereThereIsNoPicture) {
    ChoiceThumbnail thumbnail(PlatformImage{});
    EXPECT_EQ(thumbnail.sizeHint(), QSize(1, 1));
    EXPECT_FALSE(rendered(thumbnail, 1).isNull());
}

TEST(ChoiceThumbnail, MayBeLimitedFurther) {
    ChoiceThumbnail thumbnail(picture({720, 280}));
    thumbnail.setMaximumImageHeight(70);
    EXPECT_EQ(thumbnail.sizeHint(), QSize(180, 70));
    thumbnail.setMaximumImageHeight(500);
    EXPECT_EQ(thumbnail.sizeHint(), QSize(360, 140));
    thumbnail.setMaximumImageHeight(0);
    EXPECT_EQ(thumbnail.sizeHint().height(), 1);
}

TEST(ChoiceThumbnail, AveragesWhatItMakesSmaller) {
    // Columns far finer than the thumbnail's pixels come out as an even grey, not as some of them.
    const TestPalette palette(Qt::black, Qt::white);
    ChoiceThumbnail thumbnail(columns({2880, 1120}, 1));
    const QImage image = rendered(thumbnail, 1);
    for (int x = 20; x < 340; ++x) {
        EXPECT_NEAR(qGray(image.pixel(x, 70)), 127, 4) << x;
    }
}

TEST(ChoiceThumbnail, ShowsSomethingBeforeItIsScaledWell) {
    const TestPalette palette(Qt::black, Qt::white);
    ChoiceThumbnail thumbnail(columns({2880, 1120}, 1));
    thumbnail.resize(thumbnail.sizeHint());
    std::optional<BusyBackground> busy(std::in_place);
    EXPECT_EQ(thumbnail.grab().toImage().pixelColor(180, 70).alpha(), 255);
    EXPECT_FALSE(thumbnail.isFinal());
    busy.reset();
    EXPECT_TRUE(testing::finishThumbnails(thumbnail));
}

TEST(ChoiceThumbnail, MayGoWhileItIsScaled) {
    auto thumbnail = std::make_unique<ChoiceThumbnail>(picture({2880, 1120}));
    thumbnail->resize(thumbnail->sizeHint());
    std::optional<BusyBackground> busy(std::in_place);
    thumbnail->grab();
    thumbnail.reset();
    busy.reset();
    QCoreApplication::processEvents();
}

TEST(ChoiceThumbnail, DropsAPictureOfASizeItNoLongerHas) {
    ChoiceThumbnail thumbnail(picture({2880, 1120}));
    thumbnail.resize(thumbnail.sizeHint());
    std::optional<BusyBackground> busy(std::in_place);
    thumbnail.grab();
    thumbnail.takeScaled(QImage(7, 7, QImage::Format_RGB32));
    EXPECT_FALSE(thumbnail.isFinal());
    busy.reset();
    EXPECT_TRUE(testing::finishThumbnails(thumbnail));
}

TEST(ChoiceThumbnail, IsSharpAtScaleTwo) {
    // As many pixels as the display has: each is shown as it is.
    const TestPalette palette(Qt::black, Qt::white);
    ChoiceThumbnail thumbnail(columns({720, 280}, 1));
    const QImage image = rendered(thumbnail, 2);
    for (int x = 40; x < 680; ++x) {
        EXPECT_EQ(qGray(image.pixel(x, 140)), x % 2 == 0 ? 0 : 255) << x;
    }
}

TEST(ChoiceThumbnail, ShowsEnlargedPixelsAsTheyAre) {
    const TestPalette palette(Qt::black, Qt::white);
    ChoiceThumbnail thumbnail(columns({20, 8}, 1));
    const QImage image = rendered(thumbnail, 1);
    int changes = 0;
    for (int x = 20; x < 340; ++x) {
        const int gray = qGray(image.pixel(x, 70));
        EXPECT_TRUE(gray == 0 || gray == 255) << x;
        changes += gray != qGray(image.pixel(x - 1, 70)) ? 1 : 0;
    }
    // Every 17.5 pixels.
    EXPECT_EQ(changes, 18);
}

TEST(ChoiceThumbnail, HasRoundCornersAndAnOutline) {
    const TestPalette palette(Qt::black, Qt::white);
    ChoiceThumbnail thumbnail(picture({720, 280}));
    const QImage image = rendered(thumbnail, 1);
    EXPECT_EQ(image.pixelColor(0, 0), Qt::white);
    EXPECT_EQ(image.pixelColor(359, 139), Qt::white);
    EXPECT_EQ(image.pixelColor(180, 70), Qt::darkCyan);
    EXPECT_EQ(image.pixelColor(180, 1), Qt::darkCyan);
    // 12 % of black over it.
    EXPECT_NEAR(image.pixelColor(180, 0).green(), 128 * 0.88, 1);
    EXPECT_NEAR(image.pixelColor(0, 70).green(), 128 * 0.88, 1);
}

TEST(ChoiceThumbnail, OutlineIsCrispAtFractionalScales) {
    const TestPalette palette(Qt::black, Qt::white);
    for (const double scale : {1.25, 1.5, 1.75}) {
        ChoiceThumbnail thumbnail(picture({720, 280}));
        const QImage image = rendered(thumbnail, scale);
        const int y = image.height() / 2;
        const int width = std::max(1, qRound(scale));
        EXPECT_NEAR(image.pixelColor(width - 1, y).green(), 128 * 0.88, 1) << scale;
        EXPECT_EQ(image.pixelColor(width, y), Qt::darkCyan) << scale;
    }
}

} // namespace snapvane
