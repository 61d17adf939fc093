// The guide lines cross at the pointer, on its screen only, in their place among all windows, and
// take no clicks.

#include "PointerAidsSuite.h"

#include <csignal>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString overlayName = u"Snapvane Selection"_s;
const QString loupeName = u"Snapvane Magnifier"_s;
const QString lineName = u"Snapvane Crosshair"_s;

template <typename FlavourType> class GuideLines : public FlavouredPointerAids<FlavourType> {};

TYPED_TEST_SUITE(GuideLines, OpaqueAndTranslucent, FlavourNames);

TYPED_TEST(GuideLines, GoWithTheLoupeFromScreenToScreen) {
    this->beginSelection({1279, 360});
    this->expectAidsAt({1279, 360});
    for (const QPoint& pointer : {QPoint(1280, 360), QPoint(1279, 361), QPoint(2000, 100),
                                  QPoint(30, 700), QPoint(1285, 715)}) {
        this->injector().moveTo(pointer);
        this->expectAidsAt(pointer);
    }
    this->expectVeiledDesktop();
    this->cancel();
}

TYPED_TEST(GuideLines, ReachTheLastColumnAndRow) {
    this->beginSelection({640, 360});
    for (const QRect& screen : {this->desktop().screenRect(0), this->desktop().screenRect(1)}) {
        for (const QPoint& corner :
             {screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight()}) {
            this->injector().moveTo(corner);
            EXPECT_TRUE(this->lines().show(corner));
        }
    }
    this->expectVeiledDesktop();
    this->cancel();
}

/// The names of the top-level windows that can be seen, the bottom first.
std::vector<QString> stack(const XcbConnection& connection) {
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, connection.root()), nullptr));
    const auto windows = X11Probe(connection).windows();
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    std::vector<QString> names;
    for (int place = 0; place < xcb_query_tree_children_length(tree.get()); ++place) {
        const auto window = std::ranges::find(windows, children[place], &WindowInfo::id);
        // Those of the last selection may be off the desktop for a while instead of gone.
        if (window != windows.end() && window->viewable &&
            window->rect.intersects(connection.rootRect())) {
            names.push_back(window->name);
        }
    }
    return names;
}

/// Whether there are windows of both names, each of the one below each of the other.
bool isBelow(const XcbConnection& connection, const QString& lower, const QString& upper) {
    // In one look: what goes meanwhile moves what is above it.
    const std::vector<QString> names = stack(connection);
    const auto highest = std::ranges::find(names.rbegin(), names.rend(), lower);
    const auto lowest = std::ranges::find(names, upper);
    return highest != names.rend() && lowest != names.end() && highest.base() <= lowest;
}

TYPED_TEST(GuideLines, StandAboveTheOverlayAndBelowTheLoupe) {
    const XcbConnection& connection = this->desktop().connection();
    this->beginSelection({500, 400});
    this->expectAidsAt({500, 400});
    EXPECT_TRUE(isBelow(connection, overlayName, lineName));
    EXPECT_TRUE(isBelow(connection, lineName, loupeName));
    this->injector().moveTo({2000, 400});
    this->expectAidsAt({2000, 400});
    EXPECT_TRUE(isBelow(connection, overlayName, lineName));
    EXPECT_TRUE(isBelow(connection, lineName, loupeName));
    this->cancel();
}

TYPED_TEST(GuideLines, ComeOverAWindowThatAppearsDuringTheSelection) {
    const XcbConnection& connection = this->desktop().connection();
    this->beginSelection({500, 400});
    this->expectAidsAt({500, 400});
    {
        TestClient::Options options;
        options.rect = QRect(300, 100, 500, 500);
        options.title = u"Popup"_s;
        options.overrideRedirect = true;
        const TestClient popup(this->desktop(), options);
        this->injector().moveTo({510, 410});
        EXPECT_TRUE(waitUntil([&] { return isBelow(connection, options.title, lineName); },
                              std::chrono::seconds(2)));
        EXPECT_TRUE(isBelow(connection, options.title, loupeName));
        EXPECT_TRUE(isBelow(connection, lineName, loupeName));
        this->expectAidsAt({510, 410});
    }
    this->cancel();
}

/// The topmost window at the pointer that takes a click.
QString windowUnderPointer(const XcbConnection& connection) {
    const Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        connection, xcb_query_pointer(connection, connection.root()), nullptr));
    for (const WindowInfo& window : X11Probe(connection).windows()) {
        if (reply && window.id == reply->child) {
            return window.name;
        }
    }
    return {};
}

TYPED_TEST(GuideLines, LetEveryClickThroughAndSoDoesTheLoupe) {
    this->beginSelection({500, 400});
    this->expectAidsAt({500, 400});
    const QPoint underLoupe = this->loupe().place({500, 400}).center();
    const QPoint underLine(900, 400);
    // Nothing gets out of the pointer's way meanwhile.
    this->agent().process().sendSignal(SIGSTOP);
    for (const QPoint& pointer : {underLoupe, underLine}) {
        this->injector().moveTo(pointer);
        EXPECT_EQ(windowUnderPointer(this->desktop().connection()), overlayName);
    }
    this->injector().moveTo(underLoupe);
    this->injector().press();
    this->injector().moveTo(underLoupe + QPoint(120, 90));
    this->agent().process().sendSignal(SIGCONT);
    const QRect rect(underLoupe, QSize(120, 90));
    this->expectAidsAt(underLoupe + QPoint(120, 90));
    this->injector().release();
    EXPECT_TRUE(samePicture(this->background().copy(rect), this->takePicture(),
                            this->name("click-through")));
    EXPECT_TRUE(this->agent().waitForOverlayGone());
}

} // namespace

} // namespace snapvane::testing
