#include "app/MenuTracking.h"

#include "selection/SessionFakes.h"

#include <QAction>
#include <QElapsedTimer>
#include <QMenu>

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A menu with one entry and what its tracking says of it.
struct TrackedMenu {
    TrackedMenu() {
        QObject::connect(&tracking, &MenuTracking::willOpen, &tracking,
                         [this] { journal.emplace_back("open"); });
        QObject::connect(&tracking, &MenuTracking::didClose, &tracking,
                         [this] { journal.emplace_back("close"); });
    }

    QMenu menu;
    QAction* entry = menu.addAction(QStringLiteral("Entry"));
    MenuTracking tracking{menu};
    testing::Journal journal;
};

TEST(MenuTracking, BeginsClosed) {
    const TrackedMenu tracked;
    EXPECT_FALSE(tracked.tracking.isOpen());
}

TEST(MenuTracking, OwnMenuOpensAndCloses) {
    TrackedMenu tracked;
    tracked.menu.popup({0, 0});
    EXPECT_TRUE(tracked.tracking.isOpen());
    EXPECT_THAT(tracked.journal, ElementsAre("open"));
    tracked.menu.close();
    EXPECT_FALSE(tracked.tracking.isOpen());
    tracked.menu.popup({0, 0});
    tracked.menu.close();
    EXPECT_THAT(tracked.journal, ElementsAre("open", "close", "open", "close"));
}

/// A host that draws the menu itself only ever says that it is about to be shown.
TEST(MenuTracking, HostsMenuClosesWithAChosenEntry) {
    TrackedMenu tracked;
    Q_EMIT tracked.menu.aboutToShow();
    EXPECT_TRUE(tracked.tracking.isOpen());
    tracked.entry->trigger();
    EXPECT_FALSE(tracked.tracking.isOpen());
    EXPECT_THAT(tracked.journal, ElementsAre("open", "close"));
}

TEST(MenuTracking, HostsThatReportTwiceAreToldOfOnce) {
    TrackedMenu tracked;
    Q_EMIT tracked.menu.aboutToShow();
    Q_EMIT tracked.menu.aboutToShow();
    EXPECT_THAT(tracked.journal, ElementsAre("open"));
    Q_EMIT tracked.menu.aboutToHide();
    tracked.entry->trigger();
    EXPECT_THAT(tracked.journal, ElementsAre("open", "close"));
}

TEST(MenuTracking, AnEntryOfAClosedMenuIsNoClosing) {
    TrackedMenu tracked;
    tracked.entry->trigger();
    Q_EMIT tracked.menu.aboutToHide();
    EXPECT_THAT(tracked.journal, IsEmpty());
}

/// Really waits: the limit is what keeps the shortcut from staying off for good.
TEST(MenuTracking, TenSecondsCountAsClosingWhereAHostNeverReportsIt) {
    TrackedMenu hosts;
    TrackedMenu own;
    TrackedMenu reopened;
    QElapsedTimer clock;
    clock.start();
    Q_EMIT hosts.menu.aboutToShow();
    own.menu.popup({0, 0});
    Q_EMIT reopened.menu.aboutToShow();
    qint64 closedAfter = 0;
    QObject::connect(&hosts.tracking, &MenuTracking::didClose, &hosts.tracking,
                     [&] { closedAfter = clock.elapsed(); });
    QTimer::singleShot(5000, &reopened.tracking, [&] { Q_EMIT reopened.menu.aboutToShow(); });
    while (clock.elapsed() < 10'700) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    EXPECT_FALSE(hosts.tracking.isOpen());
    EXPECT_NEAR(static_cast<double>(closedAfter), 10'000, 700);
    EXPECT_THAT(hosts.journal, ElementsAre("open", "close"));
    EXPECT_TRUE(own.tracking.isOpen())
        << "a menu of our own that is still shown reports for itself";
    EXPECT_TRUE(reopened.tracking.isOpen()) << "shown again, it has another ten seconds";
    own.menu.close();
    EXPECT_THAT(own.journal, ElementsAre("open", "close"));
}

} // namespace

} // namespace snapvane
