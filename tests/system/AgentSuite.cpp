#include "AgentSuite.h"

#include <QFile>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

std::unique_ptr<VirtualDesktop> AgentSuite::s_desktop;
std::unique_ptr<AgentProcess> AgentSuite::s_agent;

void AgentSuite::start(const DesktopOptions& desktopOptions, const AgentOptions& agentOptions) {
    s_desktop = std::make_unique<VirtualDesktop>(desktopOptions);
    s_agent = std::make_unique<AgentProcess>(*s_desktop, agentOptions);
}

void AgentSuite::TearDownTestSuite() {
    s_agent.reset();
    s_desktop.reset();
}

void AgentSuite::SetUp() {
    ASSERT_TRUE(s_desktop && s_agent) << "the suite has no desktop";
    ASSERT_TRUE(s_agent->process().isRunning()) << "the agent is gone";
    s_agent->clearPictures();
    logAtStart = s_agent->logMark();
}

void AgentSuite::TearDown() {
    // A failed test must not spoil the next one.
    if (s_agent && HasFailure() && s_agent->overlayCount() > 0) {
        injector().release();
        injector().tapKey(XK_Escape);
        s_agent->waitForOverlayGone();
    }
}

QImage AgentSuite::reference() {
    require("the last notice to go",
            [] { return !probe().viewableWindowNamed(u"Snapvane Notice"_s).has_value(); });
    // Longer than a compositor takes for one step of a fade, also beside other work. What draws by
    // OpenGL in software takes long.
    const int calmMs = desktop().compositor() == Compositor::PicomGlFading ? 1500 : 400;
    return grabSettledScreen(desktop().connection(), desktop().rect(), calmMs);
}

void AgentSuite::beginSelection() {
    agent().activateAction(u"capture-area"_s);
    agent().waitForOverlay();
}

void AgentSuite::expectExact(const QPoint& from, const QPoint& to, const QRect& rect,
                             const QString& name) {
    const QImage expected = reference().copy(rect);
    const QImage actual = agent().capture(from, to);
    EXPECT_TRUE(samePicture(expected, actual, name));
    EXPECT_TRUE(isPlainRgb(agent().savedPictures().value(0)));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

void AgentSuite::expectCancelled() {
    EXPECT_TRUE(agent().waitForOverlayGone());
    // Long enough for a picture that should not be.
    pause(std::chrono::milliseconds(300));
    EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
    EXPECT_FALSE(agent().loggedError(logAtStart)) << agent().log(logAtStart).toStdString();
    EXPECT_TRUE(agent().process().isRunning());
}

::testing::AssertionResult isPlainRgb(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return ::testing::AssertionFailure() << "cannot read " << path.toStdString();
    }
    const auto header = readWholePng(file.readAll());
    if (!header) {
        return ::testing::AssertionFailure() << "not a whole PNG: " << path.toStdString();
    }
    if (header->bitDepth != 8 || header->colourType != 2 || header->hasTransparency) {
        return ::testing::AssertionFailure()
               << "bit depth " << header->bitDepth << ", colour type " << header->colourType
               << (header->hasTransparency ? ", transparency" : "");
    }
    return ::testing::AssertionSuccess();
}

QByteArray plainPreferences(double dimAmount) {
    return "[General]\nshowSelectionMagnifier=false\nshowCrosshairLinesWhileCapturing=false\n"
           "selectionDimAmount=" +
           QByteArray::number(dimAmount) + '\n';
}

} // namespace snapvane::testing
