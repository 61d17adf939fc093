#include "base/Symbols.h"

#include "TestPalette.h"
#include "base/SystemColors.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QPainter>

namespace snapvane {

namespace {

constexpr const char* symbolNames[] = {
    "arrow.up.doc",
    "arrow.up.right",
    "camera.viewfinder",
    "doc.on.clipboard",
    "folder",
    "gearshape",
    "globe",
    "hand.raised",
    "info.circle",
    "plus.viewfinder",
    "power",
    "square.and.arrow.down",
    "viewfinder",
    "square.stack.3d.up",
    "xmark.circle",
};

QString nameOf(const char* name) {
    return QString::fromLatin1(name);
}

struct Coverage {
    int opaque = 0;
    int empty = 0;
    int foreign = 0;
};

/// Counts the pixels that are fully covered, not covered, and of another colour than the one given.
Coverage coverageOf(const QImage& picture, const QColor& color) {
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    Coverage coverage;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            coverage.opaque += qAlpha(pixel) == 255 ? 1 : 0;
            coverage.empty += qAlpha(pixel) == 0 ? 1 : 0;
            // Faint pixels lose their exact colour to premultiplication.
            const bool judged = qAlpha(pixel) > 200;
            const bool same = qAbs(qRed(pixel) - color.red()) <= 1 &&
                              qAbs(qGreen(pixel) - color.green()) <= 1 &&
                              qAbs(qBlue(pixel) - color.blue()) <= 1;
            coverage.foreign += judged && !same ? 1 : 0;
        }
    }
    return coverage;
}

QImage iconImage(const QIcon& icon, int size, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(size, size), mode).toImage();
}

} // namespace

TEST(Symbols, AreThereForEveryName) {
    for (const char* name : symbolNames) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(Symbols::exists(nameOf(name)));
        EXPECT_TRUE(Symbols::icon(nameOf(name), Symbols::Use::Plain).has_value());
    }
}

TEST(Symbols, AreNotThereForOtherNames) {
    for (const char* name : {"", "nosuchsymbol", "Folder", "folder.svg", "folder ", "folder/"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(Symbols::exists(nameOf(name)));
        EXPECT_TRUE(Symbols::render(nameOf(name), 16, Qt::red).isNull());
        EXPECT_FALSE(Symbols::icon(nameOf(name), Symbols::Use::Plain).has_value());
    }
}

TEST(Symbols, RenderInTheGivenColorOnly) {
    const QColor color(0x12, 0x9a, 0x34);
    for (const char* name : symbolNames) {
        for (const int pixels : {14, 16, 26, 44, 128}) {
            SCOPED_TRACE(::testing::Message() << name << " at " << pixels);
            const QImage image = Symbols::render(nameOf(name), pixels, color);
            ASSERT_EQ(image.size(), QSize(pixels, pixels));
            const Coverage coverage = coverageOf(image, color);
            EXPECT_EQ(coverage.foreign, 0);
            EXPECT_GT(coverage.empty, 0);
            if (pixels >= 26) {
                EXPECT_GT(coverage.opaque, 0);
            }
        }
    }
}

TEST(Symbols, DifferFromEachOther) {
    std::vector<QImage> seen;
    for (const char* name : symbolNames) {
        const QImage image = Symbols::render(nameOf(name), 44, Qt::black);
        for (const QImage& other : seen) {
            EXPECT_NE(image, other) << name;
        }
        seen.push_back(image);
    }
}

TEST(Symbols, RenderNothingWithoutPixels) {
    EXPECT_TRUE(Symbols::render(nameOf("folder"), 0, Qt::red).isNull());
    EXPECT_TRUE(Symbols::render(nameOf("folder"), -4, Qt::red).isNull());
}

TEST(Symbols, IconsFollowThePaletteWhenItChanges) {
    const auto icon = Symbols::icon(nameOf("power"), Symbols::Use::Plain);
    ASSERT_TRUE(icon.has_value());
    const QColor colors[] = {QColor(0x20, 0x10, 0x00), QColor(0xf0, 0xe0, 0xd0)};
    for (const QColor& text : colors) {
        const TestPalette palette(text, Qt::gray);
        const Coverage coverage = coverageOf(iconImage(*icon, 64), text);
        EXPECT_GT(coverage.opaque, 0);
        EXPECT_EQ(coverage.foreign, 0);
    }
}

TEST(Symbols, IconsTakeTheColorOfTheirState) {
    const QColor text(0x20, 0x10, 0x00);
    const TestPalette palette(text, Qt::white);
    struct Case {
        Symbols::Use use = Symbols::Use::Plain;
        QIcon::Mode mode = QIcon::Normal;
        QColor color;
    };
    const Case cases[] = {
        {Symbols::Use::Plain, QIcon::Normal, text},
        {Symbols::Use::Plain, QIcon::Disabled, TestPalette::disabledText()},
        {Symbols::Use::Plain, QIcon::Active, text},
        {Symbols::Use::Plain, QIcon::Selected, TestPalette::highlightedText()},
        {Symbols::Use::MenuItem, QIcon::Normal, text},
        {Symbols::Use::MenuItem, QIcon::Disabled, TestPalette::disabledText()},
        {Symbols::Use::MenuItem, QIcon::Active, TestPalette::highlightedText()},
        {Symbols::Use::MenuItem, QIcon::Selected, TestPalette::highlightedText()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message()
                     << static_cast<int>(c.use) << " " << static_cast<int>(c.mode));
        const auto icon = Symbols::icon(nameOf("power"), c.use);
        ASSERT_TRUE(icon.has_value());
        EXPECT_EQ(coverageOf(iconImage(*icon, 64, c.mode), c.color).foreign, 0);
    }
}

TEST(Symbols, IconsPaintAtTheDensityOfTheirDevice) {
    const QIcon icon = Symbols::icon(nameOf("folder"), Symbols::Use::Plain).value_or(QIcon());
    const QColor text(0, 0, 0);
    const TestPalette palette(text, Qt::white);
    QImage dense(64, 64, QImage::Format_ARGB32_Premultiplied);
    dense.setDevicePixelRatio(2);
    dense.fill(Qt::transparent);
    QPainter painter(&dense);
    icon.paint(&painter, QRect(0, 0, 32, 32));
    painter.end();
    QImage expected = Symbols::render(nameOf("folder"), 64, text);
    expected.setDevicePixelRatio(2);
    EXPECT_EQ(dense, expected);
}

TEST(Symbols, PlaceholderIsADiscInTheSecondaryLabelColor) {
    const TestPalette palette(QColor(0x00, 0x40, 0x80), Qt::white);
    const QImage image =
        iconImage(Symbols::placeholderIcon(16), 32).convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(image.size(), QSize(32, 32));
    const int radius = 16;
    const int alpha = SystemColors::secondaryLabel().alpha();
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const double distance = std::hypot(x + 0.5 - radius, y + 0.5 - radius);
            if (distance < radius - 1.5) {
                EXPECT_EQ(qAlpha(image.pixel(x, y)), alpha) << x << "," << y;
            } else if (distance > radius + 1.5) {
                EXPECT_EQ(qAlpha(image.pixel(x, y)), 0) << x << "," << y;
            }
        }
    }
    EXPECT_NEAR(image.pixelColor(16, 16).blue(), 0x80, 1);
    EXPECT_NEAR(image.pixelColor(16, 16).red(), 0, 1);
}

} // namespace snapvane
