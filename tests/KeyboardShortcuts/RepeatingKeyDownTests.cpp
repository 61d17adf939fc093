#include "Consumer.h"
#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using namespace std::chrono_literals;

/// Really waits; the limits leave room for slow machines.
class RepeatingKeyDown : public NamedShortcutsFixture {
protected:
    void waitForRepeats() {
        const std::size_t before = m_consumer->received.size();
        for (int round = 0; round < 500 && m_consumer->received.size() < before + 2; ++round) {
            runEventLoopFor(10ms);
        }
        ASSERT_GE(m_consumer->received.size(), before + 2);
    }
    /// True when nothing comes for longer than the delay before the first repeat.
    bool isSilent() {
        const std::string before = m_consumer->received;
        runEventLoopFor(700ms);
        return m_consumer->received == before;
    }

    Name m_name = withShortcut("x", commandA);
    std::shared_ptr<Consumer> m_consumer = consume(m_shortcuts.repeatingKeyDownEvents(m_name));
};

} // namespace

TEST_F(RepeatingKeyDown, BeginsWithThePress) {
    m_system.press(commandA);
    EXPECT_EQ(m_consumer->received, "d");
}

TEST_F(RepeatingKeyDown, APressIsNoHold) {
    m_system.press(commandA);
    QElapsedTimer clock;
    clock.start();
    while (m_consumer->received.size() == 1 && clock.elapsed() < 5'000) {
        runEventLoopFor(1ms);
    }
    EXPECT_GE(clock.elapsed(), 400);
    EXPECT_EQ(m_consumer->received, "dd");
    m_system.release(commandA);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, GoesOnUntilTheRelease) {
    m_system.press(commandA);
    waitForRepeats();
    waitForRepeats();
    m_system.release(commandA);
    EXPECT_EQ(m_consumer->received.find('u'), std::string::npos);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, EachPressBeginsAnew) {
    m_system.press(commandA);
    m_system.release(commandA);
    m_system.press(commandA);
    EXPECT_EQ(m_consumer->received, "dd");
    runEventLoopFor(200ms);
    EXPECT_EQ(m_consumer->received, "dd");
    waitForRepeats();
}

TEST_F(RepeatingKeyDown, EndsWithTheStream) {
    m_system.press(commandA);
    waitForRepeats();
    m_consumer->stream->end();
    EXPECT_TRUE(m_consumer->received.ends_with('.'));
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, StreamMayGoOnARepeat) {
    int events = 0;
    m_consumer->onEvent = [this, &events] {
        if (++events == 3) {
            m_consumer->stream.reset();
        }
    };
    m_system.press(commandA);
    runEventLoopFor(900ms);
    EXPECT_EQ(m_consumer->received, "ddd.");
    EXPECT_TRUE(m_system.registered.empty());
}

TEST_F(RepeatingKeyDown, StopsWhenTheNameIsDisabled) {
    m_system.press(commandA);
    waitForRepeats();
    m_shortcuts.disable({m_name});
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, StopsOnAPause) {
    m_system.press(commandA);
    waitForRepeats();
    m_shortcuts.setPaused(true);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, StopsWhenTheModuleIsSwitchedOff) {
    m_system.press(commandA);
    waitForRepeats();
    m_shortcuts.setEnabled(false);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, StopsWhenTheShortcutIsCleared) {
    m_system.press(commandA);
    waitForRepeats();
    m_shortcuts.setShortcut(std::nullopt, m_name);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, StopsWhenAMenuOpens) {
    m_system.press(commandA);
    waitForRepeats();
    m_center.setMenuOpen(true);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, StopsWhenTheSystemTakesTheShortcut) {
    m_system.press(commandA);
    waitForRepeats();
    m_system.take(commandA);
    EXPECT_TRUE(isSilent());
}

/// The release may have gone to somebody else in the meantime.
TEST_F(RepeatingKeyDown, DoesNotGoOnAfterAPauseThatWasShort) {
    m_system.press(commandA);
    m_shortcuts.setPaused(true);
    m_shortcuts.setPaused(false);
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, DoesNotGoOnAfterItsNameWasDisabledForAMoment) {
    m_system.press(commandA);
    m_shortcuts.disable({m_name});
    m_shortcuts.enable({m_name});
    EXPECT_TRUE(isSilent());
}

TEST_F(RepeatingKeyDown, DoesNotGoOnAfterAMenuWasOpenForAMoment) {
    m_system.press(commandA);
    m_center.setMenuOpen(true);
    m_center.setMenuOpen(false);
    EXPECT_TRUE(isSilent());
}

} // namespace KeyboardShortcuts
