#include "ChoiceSuite.h"

#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

const std::vector<Closing>& everyWayOfClosing() {
    static const std::vector<Closing> all = {
        {"Copy", XK_1},
        {"Upload", XK_2},
        {"Save", XK_3},
        {"SavedDefaults", XK_4},
        {"Return", XK_Return},
        {"Escape", XK_Escape},
        {"CopyRow", XCB_NO_SYMBOL, ChoiceRow::Copy},
        {"CancelRow", XCB_NO_SYMBOL, ChoiceRow::Cancel},
    };
    return all;
}

void ChoiceSuite::startChoiceDesktop(Compositor compositor) {
    DesktopOptions options;
    options.compositor = compositor;
    options.screenSize = {1280, 800};
    startDesktop(options);
}

void ChoiceSuite::TearDown() {
    AfterCaptureSuite::TearDown();
    resetKeyboard();
}

void ChoiceSuite::resetKeyboard() {
    injector().releaseKeyCodes(probe().pressedKeys());
    if (m_isMapChanged) {
        // Without an empty option, options would be kept.
        setLayout({u"-layout"_s, u"us"_s, u"-variant"_s, QString(), u"-option"_s, QString()});
    }
    if ((probe().modifiers() & XCB_MOD_MASK_LOCK) != 0) {
        tap({serverKey::capsLock});
    }
    if ((probe().modifiers() & ~unsigned{XCB_MOD_MASK_LOCK}) != 0) {
        tap({serverKey::numLock});
    }
    EXPECT_EQ(probe().modifiers(), 0);
    EXPECT_TRUE(probe().pressedKeys().empty());
}

void ChoiceSuite::startAskingAgent(const QByteArray& savedDefaults, const AgentOptions& options) {
    startAgent(actionsPreference(savedDefaults) + "askMeAfterCapture=true\n", options);
}

WindowInfo ChoiceSuite::ask(const QRect& rect) {
    const auto before = choice().window();
    select(rect);
    return choice().waitForWindow(before ? before->id : xcb_window_t(XCB_WINDOW_NONE));
}

void ChoiceSuite::close(const Closing& closing) {
    if (closing.key != XCB_NO_SYMBOL) {
        injector().tapKey(closing.key);
    } else {
        click(card().row(closing.row));
    }
    require("the choice window to go", [] { return !choice().window().has_value(); });
}

void ChoiceSuite::tap(const Keys& keys) {
    injector().pressKeyCodes(keys);
    injector().releaseKeyCodes(keys);
}

void ChoiceSuite::setLayout(const QStringList& arguments) {
    m_isMapChanged = true;
    desktop().run(u"setxkbmap"_s, arguments);
}

void ChoiceSuite::setKeys(const QStringList& expressions) {
    m_isMapChanged = true;
    QStringList arguments;
    for (const QString& expression : expressions) {
        arguments << u"-e"_s << expression;
    }
    desktop().run(u"xmodmap"_s, arguments);
}

ChoiceOutcome ChoiceSuite::waitForOutcome() {
    waitForNotice();
    ClipboardReader clipboard(desktop().display());
    return {.isCopied = clipboard.targets().contains(u"image/png"_s),
            .files = static_cast<int>(agent().filesInPictureFolder().size())};
}

void ChoiceSuite::expectDiscarded() {
    EXPECT_TRUE(choice().waitUntilGone());
    // Long enough for what should not be.
    EXPECT_FALSE(waitUntil([] { return noticeIsShown(); }, std::chrono::milliseconds(300)));
    EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
    EXPECT_TRUE(ClipboardReader(desktop().display()).targets().isEmpty());
    EXPECT_FALSE(agent().loggedError()) << agent().log().toStdString();
    EXPECT_TRUE(agent().process().isRunning());
}

} // namespace snapvane::testing
