#include "selection/MagnifierLabel.h"

#include <gmock/gmock.h>

#include <QFontDatabase>
#include <QPainter>

#include <cmath>
#include <csignal>
#include <limits>

namespace snapvane {

namespace {

using ::testing::KilledBySignal;
using ::testing::Values;
using ::testing::ValuesIn;

struct TextCase {
    GlobalPoint place;
    GlobalSize selection;
    const char16_t* text;

    friend void PrintTo(const TextCase& example, std::ostream* stream) {
        *stream << example.place.x << ", " << example.place.y << " with " << example.selection.width
                << " x " << example.selection.height;
    }
};

class MagnifierLabelText : public ::testing::TestWithParam<TextCase> {};

TEST_P(MagnifierLabelText, TellsPlaceAndSelection) {
    EXPECT_EQ(MagnifierLabel::text(GetParam().place, GetParam().selection).toStdString(),
              QString::fromUtf16(GetParam().text).toStdString());
}

const TextCase textCases[] = {
    {{812, 430}, {}, u"812, 430"},
    {{812, 430}, {640, 480}, u"812, 430 \u00B7 640 \u00D7 480 pt"},
    {{0, 0}, {}, u"0, 0"},
    {{0.5, 1.5}, {}, u"1, 2"},
    {{0.49, 1.49}, {}, u"0, 1"},
    {{-0.4, -0.5}, {}, u"0, -1"},
    {{-1280, -0.49}, {}, u"-1280, 0"},
    {{-1.5, -2.5}, {}, u"-2, -3"},
    {{1, 2}, {99.5, 99.4}, u"1, 2 \u00B7 100 \u00D7 99 pt"},
    {{1, 2}, {0.2, 0.5}, u"1, 2 \u00B7 0 \u00D7 1 pt"},
    {{1, 2}, {0, 480}, u"1, 2"},
    {{1, 2}, {640, 0}, u"1, 2"},
    {{1, 2}, {-640, 480}, u"1, 2"},
    {{1, 2}, {640, -480}, u"1, 2"},
    {{123456, -123456}, {12345, 1000000}, u"123456, -123456 \u00B7 12345 \u00D7 1000000 pt"},
};

INSTANTIATE_TEST_SUITE_P(Table, MagnifierLabelText, ValuesIn(textCases));

TEST(MagnifierLabelDeathTest, ThePlaceMustBeFinite) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), infinite, -infinite}) {
        EXPECT_EXIT(MagnifierLabel::text({value, 0}, {}), KilledBySignal(SIGABRT), "not finite");
        EXPECT_EXIT(MagnifierLabel::text({0, value}, {}), KilledBySignal(SIGABRT), "not finite");
    }
}

QFont labelFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(11);
    return font;
}

/// A label drawn on nothing, at the foot of a view of 160 × 164 points.
struct Drawn {
    Drawn(const QString& text, double factor, float opacity = 0.72F)
        : scale(factor), measured(QFontMetricsF(labelFont()).horizontalAdvance(text),
                                  QFontMetricsF(labelFont()).height()),
          image(qRound(160 * scale), qRound(164 * scale), QImage::Format_ARGB32_Premultiplied) {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        const PixelSize view = {image.width(), image.height()};
        covered = MagnifierLabel().draw(painter, text, view, scale, opacity);
    }
    QColor at(int x, int y) const { return image.pixelColor(x, y); }
    /// Where there is something of the text, faint edges of its strokes left out.
    QRect ink() const {
        QRect result;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qRed(image.pixel(x, y)) > 60) {
                    result |= QRect(x, y, 1, 1);
                }
            }
        }
        return result;
    }
    QRect box() const { return covered.area.toQRect(); }

    double scale;
    QSizeF measured;
    QImage image;
    RoundedArea covered;
};

const QString shortText = QStringLiteral("812, 430");
const QString longText = MagnifierLabel::text({-123456, -123456}, {123456, 123456});

class MagnifierLabelPicture : public ::testing::TestWithParam<double> {
protected:
    const double scale = GetParam();
};

TEST_P(MagnifierLabelPicture, TheBoxIsTheTextAndItsPadding) {
    const Drawn label(shortText, scale);
    EXPECT_NEAR(label.box().width(), (label.measured.width() + 12) * scale, 0.51);
    EXPECT_NEAR(label.box().height(), (label.measured.height() + 4) * scale, 0.51);
    EXPECT_EQ(label.covered.radius, 6 * scale);
    // In the middle, six points above the lower end of the view.
    const int right = label.image.width() - label.box().x() - label.box().width();
    EXPECT_LE(std::abs(right - label.box().x()), 1);
    const int below = label.image.height() - label.box().y() - label.box().height();
    EXPECT_NEAR(below, 6 * scale, 1.0);
}

TEST_P(MagnifierLabelPicture, DrawsInTheBoxOnly) {
    for (const QString& text : {shortText, longText}) {
        const Drawn label(text, scale);
        EXPECT_TRUE(label.image.rect().contains(label.box()));
        for (int y = 0; y < label.image.height(); ++y) {
            for (int x = 0; x < label.image.width(); ++x) {
                if (!label.box().contains(x, y)) {
                    ASSERT_EQ(label.at(x, y).alpha(), 0) << x << ',' << y;
                }
            }
        }
    }
}

TEST_P(MagnifierLabelPicture, LeavesThirtySixPointsToTheCircle) {
    for (const QString& text : {shortText, longText}) {
        EXPECT_GE(Drawn(text, scale).box().top(), 128 * scale);
    }
}

TEST_P(MagnifierLabelPicture, HasABlackGroundOfTheOpacityAskedFor) {
    for (const auto& [opacity, alpha] : {std::pair(0.72F, 184), {1.0F, 255}}) {
        const Drawn label(shortText, scale, opacity);
        const int padding = static_cast<int>(std::floor(5 * scale));
        for (int x = 1; x < padding; ++x) {
            const QPoint place(label.box().left() + x, label.box().center().y());
            EXPECT_EQ(label.at(place.x(), place.y()), QColor(0, 0, 0, alpha)) << x;
        }
    }
}

TEST_P(MagnifierLabelPicture, HasRoundCorners) {
    const QRect box = Drawn(shortText, scale).box();
    const Drawn label(shortText, scale);
    for (const QPoint corner :
         {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()}) {
        EXPECT_EQ(label.at(corner.x(), corner.y()).alpha(), 0);
    }
    const int radius = static_cast<int>(std::ceil(6 * scale));
    EXPECT_EQ(label.at(box.left() + radius, box.top()).alpha(), 184);
    EXPECT_EQ(label.at(box.left(), box.top() + radius).alpha(), 184);
}

TEST_P(MagnifierLabelPicture, HasWhiteTextInsideItsPadding) {
    const Drawn label(shortText, scale);
    const QRect ink = label.ink();
    const QRect box = label.box();
    int white = 0;
    for (int y = 0; y < label.image.height(); ++y) {
        for (int x = 0; x < label.image.width(); ++x) {
            const QColor color = label.at(x, y);
            white += color.red() > 200 ? 1 : 0;
            EXPECT_TRUE(color.red() == color.green() && color.green() == color.blue())
                << "coloured fringe at " << x << ',' << y;
        }
    }
    EXPECT_GT(white, 10 * scale);
    EXPECT_GE(ink.left(), box.left() + std::floor(6 * scale) - 1);
    EXPECT_LE(ink.right(), box.right() - std::floor(6 * scale) + 1);
    EXPECT_GE(ink.top(), box.top() + std::floor(2 * scale) - 1);
    EXPECT_LE(ink.bottom(), box.bottom() - std::floor(2 * scale) + 1);
    EXPECT_GT(ink.width(), 0.85 * label.measured.width() * scale);
    EXPECT_NEAR(ink.center().x(), label.image.width() / 2.0, 2.5 * scale);
    // Digits are as tall as they are at 11 points.
    EXPECT_GE(ink.height(), 7 * scale);
    EXPECT_LE(ink.height(), 13 * scale);
}

TEST_P(MagnifierLabelPicture, ATextThatIsTooWideIsMadeSmaller) {
    const Drawn label(longText, scale);
    ASSERT_GT(label.measured.width() + 12, 160) << "not a long text";
    const QRect ink = label.ink();
    // From end to end of the view, less a margin: nothing is cut off.
    EXPECT_GE(ink.left(), std::floor(4 * scale) - 1);
    EXPECT_LE(ink.right(), label.image.width() - std::floor(4 * scale));
    EXPECT_GT(ink.width(), 0.9 * 152 * scale);
    EXPECT_EQ(label.box().width(), label.image.width());
    EXPECT_NEAR(ink.center().y(), label.box().center().y(), 2 * scale);
}

TEST_P(MagnifierLabelPicture, ATextThatJustFitsKeepsItsSize) {
    // As many figures as there is room for.
    const double figure = QFontMetricsF(labelFont()).horizontalAdvance(QLatin1Char('0'));
    const int fitting = static_cast<int>(std::floor(152 / figure));
    const Drawn fits(QString(fitting, QLatin1Char('0')), scale);
    const Drawn wider(QString(fitting + 1, QLatin1Char('0')), scale);
    const Drawn shorter(QStringLiteral("00"), scale);
    EXPECT_NEAR(fits.ink().height(), shorter.ink().height(), 0.01);
    EXPECT_LE(wider.ink().height(), shorter.ink().height());
    EXPECT_TRUE(wider.image.rect().contains(wider.box()));
}

INSTANTIATE_TEST_SUITE_P(Scales, MagnifierLabelPicture, Values(1.0, 1.1, 1.25, 1.5, 2.0));

TEST(MagnifierLabel, AnEmptyTextIsNoTrouble) {
    const Drawn label({}, 1);
    EXPECT_EQ(label.box().width(), 12);
}

TEST(MagnifierLabel, LeavesThePainterAsItWas) {
    QImage image(160, 164, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::green);
    painter.setBrush(Qt::yellow);
    painter.translate(3, 4);
    const QTransform transform = painter.transform();
    const QPainter::RenderHints hints = painter.renderHints();
    MagnifierLabel().draw(painter, shortText, {160, 164}, 1, 1);
    EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
    EXPECT_EQ(painter.brush().color(), QColor(Qt::yellow));
    EXPECT_EQ(painter.transform(), transform);
    EXPECT_EQ(painter.renderHints(), hints);
}

TEST(MagnifierLabel, AFixedWidthFontKeepsTheLabelFromTrembling) {
    const Drawn ones(QStringLiteral("111, 111"), 1);
    const Drawn eights(QStringLiteral("888, 888"), 1);
    EXPECT_EQ(ones.box(), eights.box());
}

} // namespace

} // namespace snapvane
