#pragma once

#include "AgentProcess.h"
#include "Injector.h"
#include "QtPrinting.h"
#include "VirtualDesktop.h"
#include "X11Probe.h"

#include <gtest/gtest.h>

#include <QVariantMap>

#include <memory>

namespace snapvane::testing {

/// One desktop for all the tests of a suite, started in its SetUpTestSuite(), and an agent of its
/// own for each test, since it reads its preferences when it starts. Each test begins without
/// preferences, pictures and notices.
class AfterCaptureSuite : public ::testing::Test {
protected:
    static void startDesktop(const DesktopOptions& options = {});
    static void TearDownTestSuite();

    void SetUp() override;
    void TearDown() override;

    static VirtualDesktop& desktop() { return *s_desktop; }
    static X11Probe probe() { return X11Probe(s_desktop->connection()); }
    static Injector injector() { return Injector(s_desktop->connection()); }
    /// The agent of this test; it must have been started.
    AgentProcess& agent() { return *m_agent; }

    /// `lines` are those of the file's one section.
    static void writePreferences(const QByteArray& lines);
    void startAgent(const QByteArray& preferences, const AgentOptions& options = {});
    void endAgent() { m_agent.reset(); }
    /// What the preferences file says, apart from shortcuts, which are stored as the agent starts.
    [[nodiscard]] static QVariantMap storedPreferences();

    /// Selects for a capture and returns when nothing of the selection is on the screen.
    void select(const QRect& rect);
    /// Waits for a finished picture other than `known` and gives its path; throws when none comes.
    QString waitForPicture(const QStringList& known = {});

    /// The notice, once it is on the screen; throws when it does not come.
    static WindowInfo waitForNotice();
    static bool noticeIsShown();
    static void waitForNoNotice();

    /// The bytes of a file; empty when it cannot be read.
    static QByteArray contentsOf(const QString& path);

private:
    static void clearHome();

    static std::unique_ptr<VirtualDesktop> s_desktop;
    std::unique_ptr<AgentProcess> m_agent;
};

/// Preferences under which the named actions, comma-separated, are done with every capture.
QByteArray actionsPreference(const QByteArray& actions);

} // namespace snapvane::testing
