#include "Consumer.h"
#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::IsEmpty;

class ShortcutStreams : public NamedShortcutsFixture {
protected:
    Name m_name = withShortcut("x", commandA);
};

QCoro::Task<> receiveOne(EventStream* stream, std::string* received) {
    auto next = stream->next();
    const auto event = co_await next;
    *received += !event ? '.' : *event == EventType::keyDown ? 'd' : 'u';
}

} // namespace

TEST_F(ShortcutStreams, OfANameGiveBothEvents) {
    const auto consumer = consume(m_shortcuts.events(m_name));
    EXPECT_TRUE(isRegistered(commandA));
    tap(commandA);
    tap(commandA);
    EXPECT_EQ(consumer->received, "dudu");
}

TEST_F(ShortcutStreams, OfAShortcutNeedNoName) {
    const auto consumer = consume(m_shortcuts.events(shortcutOf(controlShiftP)));
    EXPECT_TRUE(isRegistered(controlShiftP));
    tap(controlShiftP);
    tap(commandA);
    EXPECT_EQ(consumer->received, "du");
}

TEST_F(ShortcutStreams, OfANameFollowItsShortcut) {
    const auto consumer = consume(m_shortcuts.events(m_name));
    m_shortcuts.setShortcut(shortcutOf(controlShiftP), m_name);
    EXPECT_FALSE(isRegistered(commandA));
    tap(controlShiftP);
    EXPECT_EQ(consumer->received, "du");
}

TEST_F(ShortcutStreams, OfANameWithoutAShortcutWait) {
    const auto consumer = consume(m_shortcuts.events(named("y")));
    EXPECT_THAT(m_system.registered, IsEmpty());
    withShortcut("y", controlShiftP);
    tap(controlShiftP);
    EXPECT_EQ(consumer->received, "du");
}

TEST_F(ShortcutStreams, OfADisabledNameAreSilent) {
    const auto consumer = consume(m_shortcuts.events(m_name));
    m_shortcuts.disable({m_name});
    EXPECT_THAT(m_system.registered, IsEmpty());
    tap(commandA);
    EXPECT_EQ(consumer->received, "");
    m_shortcuts.enable({m_name});
    tap(commandA);
    EXPECT_EQ(consumer->received, "du");
}

TEST_F(ShortcutStreams, OfADisabledNameStillGoToTheShortcuts) {
    const auto byName = consume(m_shortcuts.events(m_name));
    const auto byShortcut = consume(m_shortcuts.events(shortcutOf(commandA)));
    m_shortcuts.disable({m_name});
    tap(commandA);
    EXPECT_EQ(byName->received, "");
    EXPECT_EQ(byShortcut->received, "du");
}

TEST_F(ShortcutStreams, EndingTheLastUnregisters) {
    const auto consumer = consume(m_shortcuts.events(m_name));
    consumer->stream->end();
    EXPECT_EQ(consumer->received, ".");
    EXPECT_THAT(m_system.registered, IsEmpty());
    consumer->stream->end();
    EXPECT_EQ(consumer->received, ".");
}

TEST_F(ShortcutStreams, EndingAShortcutsStreamUnregisters) {
    const auto consumer = consume(m_shortcuts.events(shortcutOf(controlShiftP)));
    consumer->stream->end();
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(ShortcutStreams, EndingOneLeavesTheHotKeyToOthers) {
    const auto first = consume(m_shortcuts.events(m_name));
    const auto second = consume(m_shortcuts.events(shortcutOf(commandA)));
    first->stream->end();
    tap(commandA);
    EXPECT_EQ(first->received, ".");
    EXPECT_EQ(second->received, "du");
    EXPECT_EQ(m_system.registrations, 1);
}

TEST_F(ShortcutStreams, ClearingTheNameLeavesTheHotKeyToAShortcutsStream) {
    const auto consumer = consume(m_shortcuts.events(shortcutOf(commandA)));
    m_shortcuts.setShortcut(std::nullopt, m_name);
    tap(commandA);
    EXPECT_EQ(consumer->received, "du");
}

TEST_F(ShortcutStreams, RemovingHandlersLeavesStreams) {
    const auto consumer = consume(m_shortcuts.events(m_name));
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_shortcuts.removeHandler(m_name);
    m_shortcuts.removeAllHandlers();
    tap(commandA);
    EXPECT_EQ(consumer->received, "du");
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(ShortcutStreams, EachConsumerHasItsOwn) {
    const auto first = consume(m_shortcuts.events(m_name));
    const auto second = consume(m_shortcuts.events(m_name));
    m_system.press(commandA);
    second->stream->end();
    m_system.release(commandA);
    EXPECT_EQ(first->received, "du");
    EXPECT_EQ(second->received, "d.");
}

TEST_F(ShortcutStreams, KeepEventsForLaterWithoutLimit) {
    auto stream = m_shortcuts.events(m_name);
    constexpr std::size_t taps = 5'000;
    for (std::size_t count = 0; count < taps; ++count) {
        tap(commandA);
    }
    const auto consumer = consume(std::move(stream));
    EXPECT_EQ(consumer->received.size(), 2 * taps);
    EXPECT_TRUE(consumer->received.starts_with("dudu"));
}

TEST_F(ShortcutStreams, EventsBeforeTheEndAreStillGiven) {
    auto stream = m_shortcuts.events(m_name);
    tap(commandA);
    stream.end();
    EXPECT_EQ(consume(std::move(stream))->received, "du.");
}

TEST_F(ShortcutStreams, EventsBeforeAStreamAreNotItsOwn) {
    m_shortcuts.onKeyUp(m_name, note("up"));
    tap(commandA);
    EXPECT_EQ(consume(m_shortcuts.events(m_name))->received, "");
}

TEST_F(ShortcutStreams, GoingWhileAwaitedEndsTheWait) {
    auto stream = std::make_unique<EventStream>(m_shortcuts.events(m_name));
    std::string received;
    snapvane::startDetached(receiveOne(stream.get(), &received));
    EXPECT_EQ(received, "");
    stream.reset();
    EXPECT_EQ(received, ".");
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(ShortcutStreams, MayGoWhileTheirEventIsHandled) {
    const auto consumer = consume(m_shortcuts.events(m_name));
    consumer->onEvent = [&consumer] { consumer->stream.reset(); };
    m_system.press(commandA);
    EXPECT_EQ(consumer->received, "d.");
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(ShortcutStreams, MayOutliveTheModule) {
    auto shortcuts = std::make_unique<NamedShortcuts>(m_defaults, m_center);
    const auto consumer = consume(shortcuts->events(m_name));
    const auto repeating = consume(shortcuts->repeatingKeyDownEvents(m_name));
    shortcuts.reset();
    consumer->stream->end();
    repeating->stream->end();
    EXPECT_EQ(consumer->received, ".");
    EXPECT_EQ(repeating->received, ".");
}

TEST_F(ShortcutStreams, ArePausedWithTheModule) {
    const auto consumer = consume(m_shortcuts.events(shortcutOf(commandA)));
    m_shortcuts.setPaused(true);
    tap(commandA);
    EXPECT_EQ(consumer->received, "");
    m_shortcuts.setPaused(false);
    tap(commandA);
    EXPECT_EQ(consumer->received, "du");
}

} // namespace KeyboardShortcuts
