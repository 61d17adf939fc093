#include "hud/HUDContentView.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QFontMetricsF>
#include <QImage>

#include <cmath>

namespace snapvane {

namespace {

constexpr int sidePadding = 14;
constexpr int verticalPadding = 8;

const QString text = QStringLiteral("Image copied");

QFontMetricsF metricsOf(const QWidget& widget) {
    QFont font = widget.font();
    font.setPixelSize(13);
    font.setWeight(QFont::Medium);
    return QFontMetricsF(font);
}

/// What the view paints on nothing, as a desktop that shows transparency has it.
QImage pictureOf(HUDContentView& view) {
    view.setAttribute(Qt::WA_TranslucentBackground);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// Where there is anything of the text.
QRect textArea(const QImage& image) {
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qRed(image.pixel(x, y)) > 40) {
                area |= QRect(x, y, 1, 1);
            }
        }
    }
    return area;
}

int brightest(const QImage& image) {
    int value = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            value = std::max(value, qGreen(image.pixel(x, y)));
        }
    }
    return value;
}

bool isPlate(QRgb pixel) {
    // 0.82 of 255, and black.
    return std::abs(qAlpha(pixel) - 209) <= 1 && (pixel & RGB_MASK) == 0;
}

class HUDContentViewTest : public ::testing::Test {
protected:
    HUDContentView m_view{text};
};

} // namespace

TEST_F(HUDContentViewTest, IsAsLargeAsItsTextAndThePadding) {
    const QFontMetricsF metrics = metricsOf(m_view);
    const QString longer = QStringLiteral("Link copied \u00b7 Saved to Snapvane 2025-03-09 "
                                          "14.05.31.png \u00b7 Image copied");
    for (const QString& message : {text, longer, QStringLiteral("x")}) {
        SCOPED_TRACE(message.toStdString());
        m_view.setMessage(message);
        const QSize expected(static_cast<int>(std::ceil(metrics.horizontalAdvance(message))) +
                                 2 * sidePadding,
                             static_cast<int>(std::ceil(metrics.height())) + 2 * verticalPadding);
        EXPECT_EQ(m_view.size(), expected);
        EXPECT_EQ(m_view.sizeHint(), expected);
    }
}

TEST_F(HUDContentViewTest, IsAPlateWithRoundCorners) {
    const QImage picture = pictureOf(m_view);
    const int right = picture.width() - 1;
    const int bottom = picture.height() - 1;
    for (const QPoint corner :
         {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)}) {
        EXPECT_EQ(qAlpha(picture.pixel(corner)), 0) << corner.x() << ',' << corner.y();
    }
    const int middle = picture.height() / 2;
    for (const QPoint edge : {QPoint(0, middle), QPoint(right, middle), QPoint(right / 2, 0),
                              QPoint(right / 2, bottom), QPoint(5, 5)}) {
        EXPECT_TRUE(isPlate(picture.pixel(edge)))
            << edge.x() << ',' << edge.y() << ": " << std::hex << picture.pixel(edge);
    }
}

TEST_F(HUDContentViewTest, HasCornersOfTheirRadius) {
    EXPECT_EQ(HUDContentView::cornerRadius, 10);
    const QImage picture = pictureOf(m_view);
    // The circle crosses the diagonal 2.93 points from either edge and leaves the edge 10 points
    // from the corner.
    EXPECT_EQ(qAlpha(picture.pixel(1, 1)), 0);
    EXPECT_LT(qAlpha(picture.pixel(2, 2)), 60);
    EXPECT_GT(qAlpha(picture.pixel(3, 3)), 150);
    EXPECT_TRUE(isPlate(picture.pixel(4, 4)));
    EXPECT_LT(qAlpha(picture.pixel(5, 0)), 60);
    EXPECT_TRUE(isPlate(picture.pixel(10, 0)));
}

TEST_F(HUDContentViewTest, HasWhiteTextInItsMiddle) {
    const QImage picture = pictureOf(m_view);
    EXPECT_GT(brightest(picture), 200);
    const QRect area = textArea(picture);
    const QRect inside =
        picture.rect().adjusted(sidePadding, verticalPadding, -sidePadding, -verticalPadding);
    EXPECT_TRUE(inside.adjusted(-1, -1, 1, 1).contains(area))
        << area.x() << ' ' << area.y() << ' ' << area.width() << ' ' << area.height();
    EXPECT_GT(area.width(), inside.width() * 3 / 4);
}

TEST_F(HUDContentViewTest, HasNoMoreThanThePlateWithoutText) {
    m_view.setMessage(QString());
    const QImage picture = pictureOf(m_view);
    EXPECT_TRUE(textArea(picture).isEmpty());
    EXPECT_EQ(picture.width(), 2 * sidePadding);
}

TEST_F(HUDContentViewTest, TakesAmpersandsAndMarkupAsTheyAre) {
    m_view.setMessage(QStringLiteral("&&&&&&&&"));
    const QRect ampersands = textArea(pictureOf(m_view));
    EXPECT_GT(ampersands.width(), (m_view.width() - 2 * sidePadding) * 3 / 4);
    m_view.setMessage(QStringLiteral("<b></b><i></i>"));
    EXPECT_FALSE(textArea(pictureOf(m_view)).isEmpty());
}

TEST_F(HUDContentViewTest, KeepsLineBreaksAndTabsInItsOneLine) {
    const int lineHeight = m_view.height();
    m_view.setMessage(QStringLiteral("First\nSecond\tThird"));
    EXPECT_EQ(m_view.height(), lineHeight);
    const QImage picture = pictureOf(m_view);
    const QRect area = textArea(picture);
    EXPECT_GT(area.width(), (picture.width() - 2 * sidePadding) * 3 / 4);
    EXPECT_GE(area.left(), sidePadding - 1);
    EXPECT_LE(area.right(), picture.width() - sidePadding);
}

TEST_F(HUDContentViewTest, IsBlackWhereNothingShinesThrough) {
    QImage image(m_view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::green);
    m_view.render(&image, {}, {}, QWidget::DrawChildren);
    EXPECT_EQ(image.pixel(0, 0), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(image.width() / 2, 0), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(image.width() - 1, image.height() - 1), qRgb(0, 0, 0));
    EXPECT_GT(brightest(image), 200);
}

TEST_F(HUDContentViewTest, PaintsItsNewestMessage) {
    const QImage before = pictureOf(m_view);
    m_view.setMessage(QStringLiteral("Other words"));
    EXPECT_EQ(m_view.message(), QStringLiteral("Other words"));
    EXPECT_NE(pictureOf(m_view), before);
}

TEST_F(HUDContentViewTest, CanBeReadByAssistiveTools) {
    EXPECT_EQ(m_view.accessibleName(), text);
    m_view.setMessage(QStringLiteral("Other words"));
    EXPECT_EQ(m_view.accessibleName(), QStringLiteral("Other words"));
}

TEST_F(HUDContentViewTest, ReadsOutItsMessage) {
    m_view.setMessage(QStringLiteral("Other words"));
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&m_view);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->text(QAccessible::Name), QStringLiteral("Other words"));
}

TEST_F(HUDContentViewTest, TakesNoClicks) {
    EXPECT_TRUE(m_view.testAttribute(Qt::WA_TransparentForMouseEvents));
}

} // namespace snapvane
