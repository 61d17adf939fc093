#include "choice/ChoiceActionRow.h"

#include "base/Contrast.h"
#include "base/TestPalette.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QEnterEvent>
#include <QFontMetricsF>
#include <QMouseEvent>

#include <cmath>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

ChoiceActionRowContents contents(bool isDestructive = false) {
    return {PostCaptureChoiceSymbol::folder,         u"Save PNG"_s, u"To chosen folder"_s, u"3"_s,
            u"Save PNG to the folder in Settings"_s, isDestructive};
}

double lineHeight(int size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return std::ceil(QFontMetricsF(font).height());
}

QRgb onWhite(const QColor& color) {
    return blended(color, Qt::white).rgb();
}

/// Up to rounding.
bool isNear(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) <= 1 && std::abs(qGreen(a) - qGreen(b)) <= 1 &&
           std::abs(qBlue(a) - qBlue(b)) <= 1;
}

class ChoiceActionRowTest : public ::testing::Test {
protected:
    ChoiceActionRowTest() { m_row.resize(376, m_row.sizeHint().height()); }

    QImage picture() {
        QImage image(m_row.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        m_row.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }
    void enter() {
        QEnterEvent event({5, 5}, {5, 5}, {5, 5});
        QApplication::sendEvent(&m_row, &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(&m_row, &event);
    }
    void button(QEvent::Type type, QPointF position) {
        QMouseEvent event(type, position, position, Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&m_row, &event);
    }

    TestPalette m_palette{Qt::black, Qt::white};
    ChoiceActionRow m_row{contents()};
};

} // namespace

TEST_F(ChoiceActionRowTest, IsAsHighAsItsTextsAndThePadding) {
    const double texts = lineHeight(16, QFont::DemiBold) + 2 + lineHeight(12, QFont::Normal);
    EXPECT_EQ(m_row.sizeHint().height(), std::max(36.0, texts) + 2 * 12);
}

TEST_F(ChoiceActionRowTest, IsHoveredWhileThePointerIsOverIt) {
    EXPECT_FALSE(m_row.isHovered());
    enter();
    EXPECT_TRUE(m_row.isHovered());
    leave();
    EXPECT_FALSE(m_row.isHovered());
}

TEST_F(ChoiceActionRowTest, HoveringChangesFillAndBorder) {
    const QImage idle = picture();
    enter();
    const QImage hovered = picture();
    // Between icon and border, where nothing but the fill is.
    EXPECT_TRUE(isNear(idle.pixel(6, 30), onWhite(ChoicePanelColors::row({}, false).fill)));
    EXPECT_TRUE(
        isNear(hovered.pixel(6, 30),
               onWhite(ChoicePanelColors::row(ChoicePanelColors::RowState::Hovered, false).fill)));
    EXPECT_NE(idle.pixelColor(0, 30), hovered.pixelColor(0, 30));
    leave();
    EXPECT_EQ(picture(), idle);
}

TEST_F(ChoiceActionRowTest, APressAnswers) {
    enter();
    const QImage hovered = picture();
    button(QEvent::MouseButtonPress, {5, 5});
    EXPECT_NE(picture(), hovered);
    button(QEvent::MouseButtonRelease, {5, 5});
    EXPECT_EQ(picture(), hovered);
}

TEST_F(ChoiceActionRowTest, AClickAnywhereInItCounts) {
    int clicks = 0;
    QObject::connect(&m_row, &ChoiceActionRow::clicked, &m_row, [&clicks] { ++clicks; });
    for (const QPointF place : {QPointF(0, 0), QPointF(375, 0), QPointF(200, 30)}) {
        button(QEvent::MouseButtonPress, place);
        button(QEvent::MouseButtonRelease, place);
    }
    EXPECT_EQ(clicks, 3);
}

TEST_F(ChoiceActionRowTest, AButtonThatComesUpElsewhereIsNoClick) {
    int clicks = 0;
    QObject::connect(&m_row, &ChoiceActionRow::clicked, &m_row, [&clicks] { ++clicks; });
    button(QEvent::MouseButtonPress, {5, 5});
    button(QEvent::MouseButtonRelease, {5, 500});
    EXPECT_EQ(clicks, 0);
}

TEST_F(ChoiceActionRowTest, HasNameDescriptionAndRoleForAssistiveTechnology) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&m_row);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Save PNG"_s);
    EXPECT_EQ(accessible->text(QAccessible::Description), u"Save PNG to the folder in Settings"_s);
    EXPECT_EQ(m_row.toolTip(), u"Save PNG to the folder in Settings"_s);
}

TEST_F(ChoiceActionRowTest, ShowsIconTextsAndKeyHintInTheirPlaces) {
    const QImage image = picture();
    const auto isUsed = [&image](int left, int right) {
        for (int x = left; x < right; ++x) {
            for (int y = 14; y < image.height() - 14; ++y) {
                if (image.pixel(x, y) != image.pixel(8, 30)) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_FALSE(isUsed(4, 14)) << "padding on the left";
    EXPECT_TRUE(isUsed(14, 50)) << "icon";
    EXPECT_FALSE(isUsed(50, 63)) << "between icon and texts";
    EXPECT_TRUE(isUsed(64, 180)) << "texts";
    EXPECT_FALSE(isUsed(260, 320)) << "the free space";
    EXPECT_TRUE(isUsed(340, 362)) << "key hint";
    EXPECT_FALSE(isUsed(362, 372)) << "padding on the right";
}

TEST_F(ChoiceActionRowTest, DestructiveOnesAreRed) {
    const auto reddest = [](ChoiceActionRow& row) {
        row.resize(376, row.sizeHint().height());
        QImage image(row.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        row.render(&image, {}, {}, QWidget::DrawChildren);
        int most = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 64; x < 200; ++x) {
                const QRgb pixel = image.pixel(x, y);
                most = std::max(most, qRed(pixel) - qGreen(pixel));
            }
        }
        return most;
    };
    ChoiceActionRow destructive(contents(true));
    EXPECT_GT(reddest(destructive), 100);
    EXPECT_LT(reddest(m_row), 20);
}

TEST_F(ChoiceActionRowTest, ATextThatDoesNotFitEndsBeforeTheKeyHint) {
    ChoiceActionRowContents wide = contents();
    wide.subtitle = QString(400, u'W');
    ChoiceActionRow row(wide);
    row.resize(376, row.sizeHint().height());
    QImage image(row.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    row.render(&image, {}, {}, QWidget::DrawChildren);
    const QImage plain = picture();
    EXPECT_EQ(image.copy(336, 0, 40, image.height()), plain.copy(336, 0, 40, plain.height()));
}

} // namespace snapvane
