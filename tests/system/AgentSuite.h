#pragma once

#include "AgentProcess.h"
#include "Injector.h"
#include "PictureCompare.h"
#include "PngFile.h"
#include "QtPrinting.h"
#include "ScreenGrab.h"
#include "TestClient.h"
#include "TestPattern.h"
#include "VirtualDesktop.h"
#include "Wait.h"
#include "X11Probe.h"

#include <gtest/gtest.h>

#include <memory>

namespace snapvane::testing {

/// One desktop and one agent for all the tests of a suite, which start them in their
/// SetUpTestSuite(). Each test begins with an idle agent and an empty picture folder.
class AgentSuite : public ::testing::Test {
protected:
    static void start(const DesktopOptions& desktopOptions, const AgentOptions& agentOptions = {});
    static void TearDownTestSuite();

    void SetUp() override;
    void TearDown() override;

    static VirtualDesktop& desktop() { return *s_desktop; }
    static AgentProcess& agent() { return *s_agent; }
    static X11Probe probe() { return X11Probe(s_desktop->connection()); }
    static Injector injector() { return Injector(s_desktop->connection()); }

    /// The screen as it stands, once nothing moves and no notice of ours is on it.
    static QImage reference();
    /// Starts a selection and returns when the overlay holds the input.
    static void beginSelection();
    /// Drags as told and checks that the saved picture is `rect` of the screen as it stood before,
    /// to the pixel, and a plain RGB file.
    static void expectExact(const QPoint& from, const QPoint& to, const QRect& rect,
                            const QString& name);
    /// Checks that the session is over and left nothing: no overlay, no picture, no error.
    void expectCancelled();

    qsizetype logAtStart = 0;

private:
    static std::unique_ptr<VirtualDesktop> s_desktop;
    static std::unique_ptr<AgentProcess> s_agent;
};

/// Whether the file is a whole PNG of eight bits a channel, RGB, without any transparency.
::testing::AssertionResult isPlainRgb(const QString& path);

/// Preferences under which nothing but veil, outline and label shows during a selection.
QByteArray plainPreferences(double dimAmount = 0.18);

} // namespace snapvane::testing
