#include "platform/null/NullPlatform.h"

#include "base/Await.h"
#include "platform/PlatformError.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace snapvane {

TEST(NullCapturer, AnswersEveryQueryAlike) {
    null::NullCapturer capturer;
    capturer.content.displays = {{1, {{0, 0}, {10, 10}}}, {2, {{10, 0}, {10, 10}}}};
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(await(capturer.shareableContent({})).displays.size(), 2U);
    }
    EXPECT_EQ(capturer.queries.size(), 3U);
}

TEST(NullCapturer, ListsWindowsWhenAsked) {
    null::NullCapturer capturer;
    capturer.content.windows = {{1, std::nullopt}, {2, RunningApplication{QStringLiteral("A")}}};
    EXPECT_EQ(await(capturer.shareableContent({})).windows, capturer.content.windows);
    EXPECT_TRUE(await(capturer.shareableContent({.listsWindows = false})).windows.empty());
}

TEST(NullCapturer, DrawsThePictureThatWasAskedFor) {
    null::NullCapturer capturer;
    StreamConfiguration configuration;
    configuration.outputSize = {30, 20};
    EXPECT_EQ(await(capturer.screenshot({1}, configuration)).size(), QSize(30, 20));
    capturer.screenshotFailure = std::make_exception_ptr(PlatformError(QStringLiteral("no")));
    EXPECT_THROW(await(capturer.screenshot({1}, configuration)), PlatformError);
}

TEST(NullPanels, RememberWhetherTheyAreShown) {
    null::NullPanels panels;
    const auto panel = panels.create(std::make_unique<QWidget>(), {});
    EXPECT_FALSE(panel->isVisible());
    panel->showAt({10, 10});
    EXPECT_TRUE(panel->isVisible());
    panel->hide();
    EXPECT_FALSE(panel->isVisible());
}

TEST(NullPanels, KnowWhichPanelsThereAre) {
    null::NullPanels panels;
    auto first = panels.create(std::make_unique<QWidget>(), {});
    PanelOptions options;
    options.level = 25;
    const auto second = panels.create(std::make_unique<QWidget>(), options);
    ASSERT_EQ(panels.panels.size(), 2U);
    EXPECT_EQ(panels.panels[1]->options.level, 25);
    first.reset();
    ASSERT_EQ(panels.panels.size(), 1U);
    EXPECT_EQ(panels.panels[0], second.get());
    EXPECT_EQ(panels.created, 2);
}

TEST(NullPanels, RememberTheirPlaceWhenShownAgain) {
    null::NullPanels panels;
    const auto panel = panels.create(std::make_unique<QWidget>(), {});
    panel->showAt({10, 20});
    panel->hide();
    panel->show();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panels.panels[0]->origin, (GlobalPoint{10, 20}));
    EXPECT_EQ(panels.panels[0]->raised, 2);
    EXPECT_TRUE(panel->isCurrent());
}

TEST(NullPasteboard, KeepsEveryWrite) {
    null::NullPasteboard pasteboard;
    pasteboard.write({.png = "picture", .image = {}, .text = {}, .url = {}});
    pasteboard.write({});
    ASSERT_EQ(pasteboard.writes.size(), 2U);
    EXPECT_EQ(pasteboard.writes[0].png, "picture");
    EXPECT_EQ(pasteboard.writes[1].png, std::nullopt);
}

TEST(NullLoginItem, ThrowsWhenToldTo) {
    null::NullLoginItem item;
    item.registerItem();
    EXPECT_TRUE(item.isRegistered());
    item.failure = std::make_exception_ptr(PlatformError(QStringLiteral("no")));
    EXPECT_THROW(item.unregisterItem(), PlatformError);
    EXPECT_TRUE(item.isRegistered());
}

} // namespace snapvane
