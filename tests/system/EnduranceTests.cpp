// Two hundred captures in a row leave the agent as it was.

#include "AgentSuite.h"
#include "ServerResources.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr int warmUpCount = 10;
constexpr int captureCount = 200;

#ifdef SNAPVANE_SANITIZED
// A sanitizer keeps freed memory aside on purpose.
constexpr bool memoryCounts = false;
#else
constexpr bool memoryCounts = true;
#endif

/// What the agent holds once it has been left alone for a moment.
struct Holdings {
    qint64 privateMemoryKiB = 0;
    int threads = 0;
    ResourceCounts serverResources;
};

class Endurance : public AgentSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screenSize = {1280, 720};
        start(options);
    }

    static void captureTimes(int count) {
        for (int round = 0; round < count; ++round) {
            const QImage picture = agent().capture({200, 150}, {800, 550}, 3);
            ASSERT_EQ(picture.size(), QSize(600, 400)) << "capture " << round;
            ASSERT_TRUE(agent().waitForOverlayGone()) << "capture " << round;
        }
    }

    static Holdings holdings() {
        require("the last notice to go",
                [] { return !probe().viewableWindowNamed(u"Snapvane Notice"_s).has_value(); });
        pause(std::chrono::milliseconds(500));
        return {agent().privateMemoryKiB(), agent().threadCount(),
                serverResourcesOf(desktop().connection(), agent().id())};
    }
};

TEST_F(Endurance, TwoHundredCapturesLeakNothing) {
    captureTimes(warmUpCount);
    const Holdings before = holdings();
    captureTimes(captureCount);
    const Holdings after = holdings();

    ASSERT_GT(before.privateMemoryKiB, 0);
    const qint64 growth = after.privateMemoryKiB - before.privateMemoryKiB;
    std::printf("private memory: %lld KiB before, %+lld KiB after %d captures\n",
                static_cast<long long>(before.privateMemoryKiB), static_cast<long long>(growth),
                captureCount);
    if (memoryCounts) {
        EXPECT_LE(growth, 4 * 1024);
    }
    ASSERT_FALSE(before.serverResources.empty());
    for (const auto& [type, count] : after.serverResources) {
        const auto known = before.serverResources.find(type);
        EXPECT_LE(count, known == before.serverResources.end() ? 0U : known->second)
            << "the server keeps more of type " << type.toStdString();
    }
    EXPECT_EQ(agent().overlayCount(), 0);
    EXPECT_FALSE(agent().loggedError(logAtStart)) << agent().log(logAtStart).toStdString();
}

} // namespace

} // namespace snapvane::testing
