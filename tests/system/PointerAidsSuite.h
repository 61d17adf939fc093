#pragma once

#include "AgentProcess.h"
#include "Flavours.h"
#include "GuideLineProbe.h"
#include "Injector.h"
#include "LoupeProbe.h"
#include "PictureCompare.h"
#include "QtPrinting.h"
#include "ScreenGrab.h"
#include "TestClient.h"
#include "VirtualDesktop.h"
#include "Wait.h"
#include "X11Probe.h"

#include <gtest/gtest.h>

#include <QRegion>

#include <memory>
#include <vector>

namespace snapvane::testing {

/// One desktop for all the tests of a suite and one agent, which shows a loupe and guide lines
/// unless told otherwise, started in its SetUpTestSuite(). Each test begins with an idle agent and
/// an empty picture folder.
class PointerAidsSuite : public ::testing::Test {
protected:
    static constexpr char bothOn[] =
        "showSelectionMagnifier=true\nshowCrosshairLinesWhileCapturing=true\n";

    static void startDesktop(const DesktopOptions& options);
    /// Two screens of 1280 x 720 pixels beside each other.
    static void startTwoScreens(Compositor compositor);
    /// `preferences` are the lines of the file's one section. The scales are those of the screens
    /// from the left.
    static void startAgent(const QByteArray& preferences = bothOn,
                           const std::vector<double>& scales = {1, 1});
    static void endAgent() { s_agent.reset(); }
    static void TearDownTestSuite();

    void SetUp() override;
    void TearDown() override;

    static VirtualDesktop& desktop() { return *s_desktop; }
    static AgentProcess& agent() { return *s_agent; }
    static X11Probe probe() { return X11Probe(s_desktop->connection()); }
    static Injector injector() { return Injector(s_desktop->connection()); }
    static LoupeProbe loupe() { return LoupeProbe(*s_desktop, s_scales); }
    static GuideLineProbe lines() { return GuideLineProbe(*s_desktop, loupe()); }

    /// The glass as it stands, once nothing moves and no notice of ours is on it.
    static QImage settledGlass();
    /// The glass as the desktop's background makes it; taken when first asked for.
    static const QImage& background();

    /// Starts a selection with the pointer there and returns when the overlay holds the input.
    static void beginSelection(const QPoint& pointer);
    /// Ends it by Escape and checks that nothing of it is left: the glass is `before` again.
    static void cancel(const QImage& before = background());
    /// Waits for loupe and lines as they belong to a pointer at that pixel.
    static void expectAidsAt(const QPoint& pointer, const QImage& before = background());
    /// Waits until the desktop can be seen, dimmed, wherever there is neither loupe nor lines.
    static void expectVeiledDesktop(const QImage& before = background());
    /// The picture of a drag that has just ended, once the notice of it is on the glass: from then
    /// on it can be waited for to go.
    static QImage takePicture();
    /// Lets a running selection be dragged and checks that the saved picture is `rect` of `before`.
    static void expectExactDrag(const QPoint& from, const QPoint& to, const QRect& rect,
                                const QString& name, const QImage& before = background());

    qsizetype logAtStart = 0;

private:
    static std::unique_ptr<VirtualDesktop> s_desktop;
    static std::unique_ptr<AgentProcess> s_agent;
    static std::vector<double> s_scales;
    static QImage s_background;
};

/// Without transparency and with it.
using OpaqueAndTranslucent =
    ::testing::Types<Flavour<Compositor::None>, Flavour<Compositor::Picom>>;

/// Two screens under a compositor of one kind.
template <typename FlavourType> class FlavouredPointerAids : public PointerAidsSuite {
protected:
    static void SetUpTestSuite() {
        startTwoScreens(FlavourType::compositor);
        startAgent();
    }

    static QString name(const char* what) {
        return QStringLiteral("pointer-aids-%1-%2")
            .arg(QLatin1String(nameOf(FlavourType::compositor)), QLatin1String(what));
    }
};

} // namespace snapvane::testing
