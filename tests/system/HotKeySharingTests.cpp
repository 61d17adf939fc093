// The global shortcut when another program has the combination, and when the display goes.

#include "HotKeySuite.h"

#include <X11/keysym.h>

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr unsigned controlShift = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;

using HotKeySharing = HotKeySuite;

TEST_F(HotKeySharing, WhatAnotherProgramHoldsIsLeftToItUntilTheNextRegistration) {
    auto other = std::make_unique<ForeignHotKey>(desktop(), serverKey::p, controlShift);
    ASSERT_TRUE(other->isHeld());
    AgentProcess agent(desktop());
    EXPECT_TRUE(agent.waitForLogLine(u"\\] error: .*refused the shortcut"_s));
    require("the tray icon", [] { return icon().has_value(); });
    for (const WindowInfo& window : probe().windowsOfClass(u"Snapvane"_s)) {
        EXPECT_TRUE(!window.viewable || window.id == icon()->id)
            << "a window of " << window.name.toStdString();
    }
    tap(hotKey);
    expectNoSelection(agent);
    EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
    EXPECT_TRUE(agent.waitForOverlayGone());

    other.reset();
    // Nobody asks for it again and again.
    pause(std::chrono::milliseconds(2000));
    tap(hotKey);
    expectNoSelection(agent);
    EXPECT_TRUE(isFree(desktop()));

    openMenu();
    closeMenu();
    expectStartsSoon(agent, std::chrono::seconds(2));
}

TEST_F(HotKeySharing, TakenByAnotherProgramWhileTheMenuIsOpen) {
    AgentProcess agent(desktop());
    expectStartsSoon(agent, std::chrono::seconds(3));
    const qsizetype mark = agent.logMark();
    openMenu();
    auto other = std::make_unique<ForeignHotKey>(desktop(), serverKey::p, controlShift);
    ASSERT_TRUE(other->isHeld());
    closeMenu();
    EXPECT_TRUE(agent.waitForLogLine(u"\\] error: .*refused the shortcut"_s, mark));
    tap(hotKey);
    expectNoSelection(agent);
    other.reset();
    openMenu();
    closeMenu();
    expectStartsSoon(agent, std::chrono::seconds(2));
}

/// With the lock keys in other states than the other program's.
TEST_F(HotKeySharing, ACombinationHeldInPartIsNotTakenInPart) {
    const ForeignHotKey other(desktop(), serverKey::p, controlShift | XCB_MOD_MASK_2);
    ASSERT_TRUE(other.isHeld());
    AgentProcess agent(desktop());
    EXPECT_TRUE(agent.waitForLogLine(u"\\] error: .*refused the shortcut"_s));
    EXPECT_TRUE(ForeignHotKey(desktop(), serverKey::p, controlShift).isHeld());
    tap(hotKey);
    expectNoSelection(agent);
}

TEST_F(HotKeySharing, IsGivenUpWhenNumLockMovesOntoWhatAnotherProgramHolds) {
    AgentProcess agent(desktop());
    expectStartsSoon(agent, std::chrono::seconds(3));
    const qsizetype mark = agent.logMark();
    const ForeignHotKey other(desktop(), serverKey::p, controlShift | XCB_MOD_MASK_3);
    ASSERT_TRUE(other.isHeld());
    setModifiers({u"clear mod2"_s, u"clear mod3"_s, u"add mod3 = Num_Lock"_s});
    EXPECT_TRUE(agent.waitForLogLine(u"\\] error: .*refused the shortcut"_s, mark));
    tap(hotKey);
    expectNoSelection(agent);
    EXPECT_TRUE(isFree(desktop()));
}

TEST_F(HotKeySharing, IsFreeAfterTheAgentHasLeft) {
    AgentProcess agent(desktop());
    expectStartsSoon(agent, std::chrono::seconds(3));
    ASSERT_FALSE(isFree(desktop()));
    const ChildProcess::Exit exit = agent.terminate();
    EXPECT_EQ(exit.code, 0);
    EXPECT_EQ(exit.signal, 0);
    EXPECT_TRUE(isFree(desktop()));
}

TEST_F(HotKeySharing, IsFreeAfterTheAgentWasKilled) {
    AgentProcess agent(desktop());
    expectStartsSoon(agent, std::chrono::seconds(3));
    ASSERT_FALSE(isFree(desktop()));
    agent.killHard();
    EXPECT_TRUE(waitUntil([] { return isFree(desktop()); }, std::chrono::seconds(2)));
}

/// A display besides the desktop's own, which can be taken away.
class ShortLivedDisplay {
public:
    explicit ShortLivedDisplay(const VirtualDesktop& desktop) {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        ChildProcess::Spec spec;
        spec.program = u"Xvfb"_s;
        spec.arguments = {u"-displayfd"_s, QString::number(ends[1]), u"-nolisten"_s, u"tcp"_s,
                          u"-noreset"_s};
        spec.environment = desktop.environment();
        spec.outputFile = desktop.folders().log(u"short-lived"_s);
        spec.inheritedDescriptor = ends[1];
        m_server = std::make_unique<ChildProcess>(spec);
        close(ends[1]);
        constexpr int patienceMs = 20000;
        char byte = 0;
        pollfd waiting = {ends[0], POLLIN, 0};
        while (poll(&waiting, 1, patienceMs) == 1 && read(ends[0], &byte, 1) == 1 && byte != '\n') {
            m_name += QLatin1Char(byte);
        }
        close(ends[0]);
    }

    [[nodiscard]] QString name() const { return u':' + m_name; }
    void end() { m_server->end(); }

private:
    std::unique_ptr<ChildProcess> m_server;
    QString m_name;
};

enum class Moment { Idle, HotKeyDown, Selection };

class DisplayThatGoes : public HotKeySuite, public ::testing::WithParamInterface<Moment> {};

TEST_P(DisplayThatGoes, EndsTheAgentInGoodOrder) {
    ShortLivedDisplay display(desktop());
    AgentOptions options;
    options.variables = {{u"DISPLAY"_s, display.name()}};
    AgentProcess agent(desktop(), options);
    {
        const XcbConnection connection(display.name());
        Injector hands(connection);
        // The agent has the hot key once that starts something.
        require("a selection", [&] {
            hands.pressKeyCodes(hotKey);
            hands.releaseKeyCodes(hotKey);
            return !X11Probe(connection).windowsNamed(u"Snapvane Selection"_s).empty();
        });
        if (GetParam() != Moment::Selection) {
            require("no selection", [&] {
                hands.tapKey(XK_Escape);
                return X11Probe(connection).windowsNamed(u"Snapvane Selection"_s).empty();
            });
        }
        if (GetParam() == Moment::HotKeyDown) {
            hands.pressKeyCodes(hotKey);
        }
    }
    display.end();
    const auto exit = agent.waitForEnd(std::chrono::seconds(5));
    ASSERT_TRUE(exit) << "it stays without a display";
    EXPECT_EQ(exit->signal, 0) << agent.log().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Table, DisplayThatGoes,
                         ::testing::Values(Moment::Idle, Moment::HotKeyDown, Moment::Selection));

} // namespace

} // namespace snapvane::testing
