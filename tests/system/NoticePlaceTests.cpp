// Where the notice hangs and how large it is, on two screens and at several scales.

#include "AfterCaptureSuite.h"
#include "NoticeBystander.h"
#include "ScreenGrab.h"
#include "Wait.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect onTheLeft(300, 500, 200, 100);
constexpr QRect onTheRight(2300, 500, 200, 100);

// Points.
constexpr double fromTheTop = 16;
constexpr double besideTheText = 14;

class NoticePlace : public AfterCaptureSuite, public ::testing::WithParamInterface<double> {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        startDesktop(options);
    }

    void startAgentAt(double scale) {
        AgentOptions options;
        options.variables = {{u"QT_SCALE_FACTOR"_s, QString::number(scale)}};
        startAgent(actionsPreference("copyToClipboard"), options);
    }

    QRect showNotice(const QRect& selection) {
        waitForNoNotice();
        select(selection);
        return waitForNotice().rect;
    }

    /// Checks that the notice hangs where it should when `reserved` pixels at the top are taken.
    static void expectAtTheTopOf(const QRect& screen, const QRect& notice, double scale,
                                 int reserved = 0) {
        EXPECT_NEAR(notice.top(), screen.top() + reserved + fromTheTop * scale, 0.51);
        const double centre = notice.left() + notice.width() / 2.0;
        EXPECT_NEAR(centre, screen.left() + screen.width() / 2.0, 1.0);
    }
};

TEST_P(NoticePlace, TopCentreOfTheScreenWithThePointer) {
    startAgentAt(GetParam());
    expectAtTheTopOf(desktop().screenRect(0), showNotice(onTheLeft), GetParam());
    expectAtTheTopOf(desktop().screenRect(1), showNotice(onTheRight), GetParam());
}

TEST_P(NoticePlace, BelowADock) {
    constexpr int height = 41;
    const NoticeBystander dock(desktop().display(), NoticeBystander::Kind::Dock,
                               {1920, 0, 1920, height});
    startAgentAt(GetParam());
    expectAtTheTopOf(desktop().screenRect(1), showNotice(onTheRight), GetParam(), height);
    // The dock is none of the other screen's business.
    expectAtTheTopOf(desktop().screenRect(0), showNotice(onTheLeft), GetParam());
}

/// What of the picture is brighter than any plate.
QRect brightPart(const QImage& picture) {
    constexpr int bright = 128;
    QRect found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qGray(picture.pixel(x, y)) > bright) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

TEST_P(NoticePlace, SizeFollowsTheTextAndTheScale) {
    const double scale = GetParam();
    startAgentAt(1);
    const QRect plain = showNotice(onTheLeft);
    endAgent();
    startAgentAt(scale);
    const QRect notice = showNotice(onTheLeft);
    EXPECT_NEAR(notice.width(), plain.width() * scale, 1.0 + scale);
    EXPECT_NEAR(notice.height(), plain.height() * scale, 1.0 + scale);

    // Round corners are the desktop's, so that only what is well inside counts.
    const int margin = static_cast<int>(std::ceil(4 * scale));
    const QRect inside = notice.adjusted(margin, margin, -margin, -margin);
    QRect text;
    require("the text", [&] {
        text = brightPart(grabScreen(desktop().connection(), inside)).translated(margin, margin);
        return !text.isEmpty();
    });
    // Letters have a little room of their own.
    EXPECT_NEAR(text.left(), besideTheText * scale, 2.5 * scale);
    EXPECT_NEAR(notice.width() - 1 - text.right(), besideTheText * scale, 2.5 * scale);
    EXPECT_NEAR(text.center().y(), notice.height() / 2.0, 3 * scale);
}

INSTANTIATE_TEST_SUITE_P(Scales, NoticePlace, ::testing::Values(1.0, 1.5, 2.0),
                         [](const auto& scale) {
                             return "Percent" + std::to_string(std::lround(100 * scale.param));
                         });

} // namespace

} // namespace snapvane::testing
