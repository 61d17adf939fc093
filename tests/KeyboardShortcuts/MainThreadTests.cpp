#include "KeyboardShortcuts/EventStream.h"
#include "KeyboardShortcuts/KeySequence.h"
#include "KeyboardShortcuts/MainThread.h"
#include "NamedShortcutsFixture.h"

#include <functional>
#include <thread>

namespace KeyboardShortcuts {

namespace {

using snapvane::null::NullKeyboardLayout;

const Name name(QStringLiteral("x"));

struct ShortcutCall {
    const char* name;
    std::function<void(const Shortcut&, const NullKeyboardLayout&)> call;
};

const ShortcutCall shortcutCalls[] = {
    {"specialKey", [](const auto& shortcut, const auto&) { shortcut.specialKey(); }},
    {"keyToCharacter",
     [](const auto& shortcut, const auto& layout) { shortcut.keyToCharacter(layout); }},
    {"presentableDescription",
     [](const auto& shortcut, const auto& layout) { shortcut.presentableDescription(layout); }},
    {"nsMenuItemKeyEquivalent",
     [](const auto& shortcut, const auto& layout) { shortcut.nsMenuItemKeyEquivalent(layout); }},
    {"swiftUIKeyEquivalent",
     [](const auto& shortcut, const auto& layout) { shortcut.swiftUIKeyEquivalent(layout); }},
    {"menuItemWithMatchingShortcut",
     [](const auto& shortcut, const auto& layout) {
         shortcut.menuItemWithMatchingShortcut({}, layout);
     }},
    {"keySequence",
     [](const auto& shortcut, const auto& layout) { keySequence(shortcut, layout); }},
};

struct CenterCall {
    const char* name;
    std::function<void(HotKeyCenter&)> call;
};

const CenterCall centerCalls[] = {
    {"nextHotKeyId", [](auto& center) { center.nextHotKeyId(); }},
    {"register", [](auto& center) { center.register_(nullptr); }},
    {"setEnabled", [](auto& center) { center.setEnabled(false); }},
    {"setMenuOpen", [](auto& center) { center.setMenuOpen(true); }},
    {"systemShortcuts", [](auto& center) { center.systemShortcuts(); }},
    {"isTakenBySystem",
     [](auto& center) { center.isTakenBySystem(Shortcut(Key::p, ModifierFlags::command)); }},
};

struct NamesCall {
    const char* name;
    std::function<void(NamedShortcuts&)> call;
};

const NamesCall namesCalls[] = {
    {"getShortcut", [](auto& shortcuts) { shortcuts.getShortcut(name); }},
    {"setShortcut", [](auto& shortcuts) { shortcuts.setShortcut(std::nullopt, name); }},
    {"setInitialShortcutIfNeeded",
     [](auto& shortcuts) { shortcuts.setInitialShortcutIfNeeded(name); }},
    {"reset", [](auto& shortcuts) { shortcuts.reset({name}); }},
    {"onKeyDown", [](auto& shortcuts) { shortcuts.onKeyDown(name, [] {}); }},
    {"onKeyUp", [](auto& shortcuts) { shortcuts.onKeyUp(name, [] {}); }},
    {"removeHandler", [](auto& shortcuts) { shortcuts.removeHandler(name); }},
    {"removeAllHandlers", [](auto& shortcuts) { shortcuts.removeAllHandlers(); }},
    {"eventsOfName", [](auto& shortcuts) { shortcuts.events(name); }},
    {"eventsOfShortcut",
     [](auto& shortcuts) { shortcuts.events(Shortcut(Key::p, ModifierFlags::command)); }},
    {"repeatingKeyDownEvents", [](auto& shortcuts) { shortcuts.repeatingKeyDownEvents(name); }},
    {"disable", [](auto& shortcuts) { shortcuts.disable({name}); }},
    {"enable", [](auto& shortcuts) { shortcuts.enable({name}); }},
    {"isEnabled", [](auto& shortcuts) { shortcuts.isEnabled(name); }},
    {"setEnabled", [](auto& shortcuts) { shortcuts.setEnabled(false); }},
    {"setPaused", [](auto& shortcuts) { shortcuts.setPaused(true); }},
};

void runOnAnotherThread(const std::function<void()>& work) {
    std::thread(work).join();
}

std::string placeIn(const char* file) {
    return std::string("main thread.*\\(.*KeyboardShortcuts/") + file + ":";
}

class ShortcutOffMainThreadDeathTest : public ::testing::TestWithParam<ShortcutCall> {};
class CenterOffMainThreadDeathTest : public ::testing::TestWithParam<CenterCall> {};
class NamesOffMainThreadDeathTest : public NamedShortcutsFixture,
                                    public ::testing::WithParamInterface<NamesCall> {};

} // namespace

TEST_P(ShortcutOffMainThreadDeathTest, IsAProgramError) {
    const NullKeyboardLayout layout;
    const Shortcut shortcut(Key::p, ModifierFlags::command);
    EXPECT_DEATH(runOnAnotherThread([&] { GetParam().call(shortcut, layout); }),
                 placeIn("Shortcut\\.cpp"));
}

INSTANTIATE_TEST_SUITE_P(Each, ShortcutOffMainThreadDeathTest, ::testing::ValuesIn(shortcutCalls),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(CenterOffMainThreadDeathTest, IsAProgramError) {
    snapvane::null::NullHotKeys system;
    HotKeyCenter center(system);
    EXPECT_DEATH(runOnAnotherThread([&] { GetParam().call(center); }),
                 placeIn("HotKeyCenter\\.cpp"));
}

INSTANTIATE_TEST_SUITE_P(Each, CenterOffMainThreadDeathTest, ::testing::ValuesIn(centerCalls),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(NamesOffMainThreadDeathTest, IsAProgramError) {
    EXPECT_DEATH(runOnAnotherThread([&] { GetParam().call(m_shortcuts); }),
                 placeIn("KeyboardShortcuts\\.cpp"));
}

INSTANTIATE_TEST_SUITE_P(Each, NamesOffMainThreadDeathTest, ::testing::ValuesIn(namesCalls),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(MainThread, IsKnown) {
    bool elsewhere = true;
    runOnAnotherThread([&elsewhere] { elsewhere = isMainThread(); });
    EXPECT_TRUE(isMainThread());
    EXPECT_FALSE(elsewhere);
}

TEST(NamedShortcutsDeathTest, SharedBeforeThereIsOneIsAProgramError) {
    EXPECT_DEATH(NamedShortcuts::shared(), "not installed");
    EXPECT_DEATH(Name(QStringLiteral("x"), Shortcut(Key::p, ModifierFlags::command)),
                 "not installed");
}

} // namespace KeyboardShortcuts
