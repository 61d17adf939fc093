#include "app/StatusItem.h"

#include "platform/null/NullPlatform.h"
#include "selection/LogCapture.h"
#include "selection/SessionFakes.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

QImage picture(const QIcon& icon) {
    return icon.pixmap(32, 32).toImage();
}

bool isEmpty(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) {
                return false;
            }
        }
    }
    return true;
}

class StatusItemTest : public ::testing::Test {
protected:
    std::unique_ptr<StatusItem> make() {
        return std::make_unique<StatusItem>(
            host, [this](StatusMenuAction action) { chosen.push_back(action); });
    }
    void setPresent(bool present) {
        host.present = present;
        if (present) {
            Q_EMIT host.appeared();
        } else {
            Q_EMIT host.disappeared();
        }
        testing::settle();
    }

    null::NullTrayHost host;
    std::vector<StatusMenuAction> chosen;
};

TEST_F(StatusItemTest, WithoutAHostThereIsNoIconButTheMenuIsThere) {
    const testing::LogCapture log;
    const auto item = make();
    EXPECT_FALSE(item->hasButton());
    EXPECT_EQ(item->menu().menu().actions().size(), 7);
    EXPECT_EQ(log.texts(QtInfoMsg).size(), 1U) << "somebody who misses the icon finds out why";
    EXPECT_TRUE(log.errors().empty());
}

TEST_F(StatusItemTest, WithAHostTheIconIsMadeAtOnce) {
    host.present = true;
    EXPECT_TRUE(make()->hasButton());
}

TEST_F(StatusItemTest, TheIconFollowsTheHost) {
    const auto item = make();
    setPresent(true);
    EXPECT_TRUE(item->hasButton());
    setPresent(false);
    EXPECT_FALSE(item->hasButton());
    setPresent(true);
    EXPECT_TRUE(item->hasButton());
    setPresent(true);
    EXPECT_TRUE(item->hasButton()) << "a host that replaced another one";
    EXPECT_EQ(item->menu().menu().actions().size(), 7);
}

TEST_F(StatusItemTest, HostsMayOutliveTheItem) {
    make().reset();
    setPresent(true);
    setPresent(false);
    EXPECT_TRUE(chosen.empty());
}

TEST_F(StatusItemTest, ChosenEntriesReachTheHandler) {
    const auto item = make();
    item->menu().action(StatusMenuAction::OpenAbout).trigger();
    EXPECT_THAT(chosen, ::testing::ElementsAre(StatusMenuAction::OpenAbout));
}

TEST(StatusItem, TheButtonShowsTheCamera) {
    const QImage camera = picture(StatusItem::buttonImage(QStringLiteral("camera.viewfinder")));
    EXPECT_FALSE(isEmpty(camera));
    EXPECT_NE(camera, picture(StatusItem::buttonImage(QStringLiteral("no.such.symbol"))));
}

TEST(StatusItem, WithoutThatDrawingItShowsLetters) {
    const QIcon letters = StatusItem::buttonImage(QStringLiteral("no.such.symbol"));
    ASSERT_FALSE(letters.isNull());
    for (const int side : {16, 22, 24, 32, 48}) {
        const QImage image = letters.pixmap(side, side).toImage();
        EXPECT_EQ(image.width(), side);
        EXPECT_FALSE(isEmpty(image));
        // Two letters side by side: ink in both halves.
        EXPECT_FALSE(isEmpty(image.copy(0, 0, side / 2, side)));
        EXPECT_FALSE(isEmpty(image.copy(side / 2, 0, side / 2, side)));
    }
}

} // namespace

} // namespace snapvane
