#include "platform/x11/X11HotKeys.h"

#include "platform/x11/ServerKeys.h"
#include "platform/x11/X11KeyboardLayout.h"
#include "platform/x11/Xcb.h"
#include "platform/xdg/SystemShortcuts.h"

#include <QCoreApplication>

#include <xcb/xinput.h>

namespace snapvane::x11 {

namespace {

constexpr std::uint32_t allModifiers = 0xff;

// Set in the type of an event that another client has made up. Source: the core protocol.
constexpr std::uint8_t sentByAClient = 0x80;

/// The first of these keys that is down at the moment.
std::optional<std::uint8_t> keyDownAmong(const Server& server,
                                         const std::vector<std::uint8_t>& keyCodes) {
    const auto cookie = xcb_query_keymap(server.connection);
    const auto reply = owned(xcb_query_keymap_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return std::nullopt;
    }
    constexpr int keysAByte = 8;
    const auto isDown = [&reply](std::uint8_t keyCode) {
        return (reply->keys[keyCode / keysAByte] >> (keyCode % keysAByte) & 1) != 0;
    };
    const auto found = std::ranges::find_if(keyCodes, isDown);
    return found == keyCodes.end() ? std::nullopt : std::optional(*found);
}

} // namespace

class X11HotKeys::Registration : public HotKeyRegistration {
public:
    Registration(X11HotKeys& owner, int number) : m_owner(owner), m_number(number) {}
    ~Registration() override {
        m_owner.m_hotKeys.erase(m_number);
        m_owner.watchReleases();
    }

private:
    X11HotKeys& m_owner;
    int m_number;
};

X11HotKeys::X11HotKeys(X11Keyboard& keyboard)
    : m_server(qtServer()), m_keyboard(keyboard), m_grabbedFor(keyboard.modifiers()) {
    const auto* input = xcb_get_extension_data(m_server.connection, &xcb_input_id);
    m_inputOpcode = input != nullptr ? input->major_opcode : std::uint8_t{0};
    connect(&keyboard, &X11Keyboard::mappingChanged, this, &X11HotKeys::grabAnew);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

std::unique_ptr<HotKeyRegistration> X11HotKeys::registerHotKey(std::uint32_t keyCode,
                                                               std::uint32_t modifiers,
                                                               HotKeyIdentifier identifier,
                                                               std::function<void()> lost) {
    const auto combination = combinationOf(keyCode, modifiers);
    if (!combination) {
        return nullptr;
    }
    // The server would let us have what we have already, and take it away from both.
    const bool isOurs = std::ranges::any_of(m_hotKeys, [&combination](const auto& entry) {
        return entry.second.combination == *combination;
    });
    auto held = isOurs ? nullptr : grab(*combination);
    if (!held) {
        return nullptr;
    }
    const int number = ++m_lastNumber;
    // A key that is down already, as after it was pressed to be recorded, counts from its next
    // press on.
    m_hotKeys[number] = {.keyCode = keyCode,
                         .modifiers = modifiers,
                         .identifier = identifier,
                         .lost = std::move(lost),
                         .combination = *combination,
                         .grab = std::move(held),
                         .heldKey = keyDownAmong(m_server, combination->keyCodes)};
    watchReleases();
    return std::make_unique<Registration>(*this, number);
}

bool X11HotKeys::installEventHandler(EventHandler handler) {
    m_handler = std::move(handler);
    return true;
}

void X11HotKeys::addEventTypes(std::span<const HotKeyEventType> types) {
    for (const HotKeyEventType& type : types) {
        m_eventKinds.insert(type.kind);
    }
}

void X11HotKeys::removeEventTypes(std::span<const HotKeyEventType> types) {
    for (const HotKeyEventType& type : types) {
        m_eventKinds.erase(type.kind);
    }
    if (!watches(HotKeyEventKind::RawKeyDown)) {
        m_rawKeysDown.clear();
    }
}

bool X11HotKeys::isHeldElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto combination = combinationOf(keyCode, modifiers);
    if (!combination) {
        return false;
    }
    for (const auto& entry : m_hotKeys) {
        if (entry.second.combination == *combination && entry.second.grab) {
            return false; // Trying it would give up our own.
        }
    }
    return grab(*combination) == nullptr;
}

std::vector<SymbolicHotKey> X11HotKeys::symbolicHotKeys() {
    return xdg::systemShortcuts(
        [this](std::uint32_t symbol) { return keyOfSymbol(m_keyboard, symbol); });
}

bool X11HotKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto stroke = strokeOf(*static_cast<const xcb_generic_event_t*>(message));
    if (!stroke) {
        return false;
    }
    const bool handled = handleHotKey(*stroke);
    watchReleases();
    return handled || (!stroke->isFromDevice && handleRawKey(*stroke));
}

std::optional<X11HotKeys::Stroke> X11HotKeys::strokeOf(const xcb_generic_event_t& event) const {
    const int type = event.response_type & 0x7f;
    if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        if ((event.response_type & sentByAClient) != 0) {
            return std::nullopt;
        }
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        return Stroke{key.detail, key.state, type == XCB_KEY_PRESS, key.event == m_server.root()};
    }
    if (type != XCB_GE_GENERIC) {
        return std::nullopt;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != m_inputOpcode) {
        return std::nullopt;
    }
    if (generic.event_type == XCB_INPUT_RAW_KEY_RELEASE) {
        const auto& key = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
        return Stroke{.keyCode = static_cast<std::uint8_t>(key.detail), .isFromDevice = true};
    }
    if (generic.event_type != XCB_INPUT_KEY_PRESS && generic.event_type != XCB_INPUT_KEY_RELEASE) {
        return std::nullopt;
    }
    // Only selections ask for these. While one holds the keyboard no grab of ours can act.
    const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    if ((key.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0) {
        return std::nullopt;
    }
    return Stroke{.keyCode = static_cast<std::uint8_t>(key.detail),
                  .state = key.mods.effective,
                  .isPress = generic.event_type == XCB_INPUT_KEY_PRESS,
                  .isGrabbed = true};
}

bool X11HotKeys::handleHotKey(const Stroke& stroke) {
    // The key of a hot key that is down belongs to that one until it is released, whatever happens
    // to the modifiers meanwhile.
    for (auto& entry : m_hotKeys) {
        HotKey& hotKey = entry.second;
        if (hotKey.heldKey != stroke.keyCode) {
            continue;
        }
        if (stroke.isPress) {
            return stroke.isGrabbed;
        }
        hotKey.heldKey.reset();
        return std::exchange(hotKey.isPressed, false) &&
               send({.type = {.kind = HotKeyEventKind::HotKeyReleased},
                     .identifier = hotKey.identifier});
    }
    if (!stroke.isPress || !stroke.isGrabbed) {
        return false;
    }
    const std::uint32_t modifiers =
        stroke.state & allModifiers & ~std::uint32_t{m_grabbedFor.locks()};
    for (auto& entry : m_hotKeys) {
        HotKey& hotKey = entry.second;
        const auto& keyCodes = hotKey.combination.keyCodes;
        if (hotKey.grab && hotKey.combination.modifiers == modifiers &&
            std::ranges::find(keyCodes, stroke.keyCode) != keyCodes.end()) {
            hotKey.heldKey = stroke.keyCode;
            hotKey.isPressed = true;
            return send({.type = {.kind = HotKeyEventKind::HotKeyPressed},
                         .identifier = hotKey.identifier});
        }
    }
    return false;
}

/// While a hot key is down its release must not be missed, and it goes to somebody else when a
/// selection ends under the key. The keyboard itself tells us then as well, and only then: at all
/// other times nobody's keys are any business of ours.
void X11HotKeys::watchReleases() {
    const bool isHeld = std::ranges::any_of(
        m_hotKeys, [](const auto& entry) { return entry.second.heldKey.has_value(); });
    if (isHeld == m_watchesReleases || m_inputOpcode == 0) {
        return;
    }
    m_watchesReleases = isHeld;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection = {{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                   isHeld ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE} : 0};
    xcb_input_xi_select_events(m_server.connection, m_server.root(), 1, &selection.head);
    xcb_flush(m_server.connection);
}

bool X11HotKeys::handleRawKey(const Stroke& stroke) {
    const bool isRepeat = stroke.isPress && m_rawKeysDown.contains(stroke.keyCode);
    const auto keyCode = carbonOfServerKey(stroke.keyCode);
    if (!watches(HotKeyEventKind::RawKeyDown) || !keyCode) {
        return false;
    }
    if (stroke.isPress) {
        m_rawKeysDown.insert(stroke.keyCode);
    } else {
        m_rawKeysDown.erase(stroke.keyCode);
    }
    HotKeyEvent event;
    event.type.kind = stroke.isPress ? HotKeyEventKind::RawKeyDown : HotKeyEventKind::RawKeyUp;
    event.keyCode = static_cast<std::uint32_t>(*keyCode);
    event.modifiers = m_keyboard.modifiers().toCarbon(stroke.state);
    event.isRepeat = isRepeat;
    return send(event);
}

bool X11HotKeys::send(const HotKeyEvent& event) {
    // A copy: the handler may do anything, to this object too.
    const EventHandler handler = m_handler;
    return handler && watches(event.type.kind) && handler(event) == hotKeyEventHandled;
}

std::optional<KeyCombination> X11HotKeys::combinationOf(std::uint32_t keyCode,
                                                        std::uint32_t modifiers) const {
    const auto twins = KeyCodes::twinsOfCarbon(static_cast<int>(keyCode));
    const auto mask = m_keyboard.modifiers().fromCarbon(modifiers);
    if (!twins || !mask) {
        return std::nullopt;
    }
    KeyCombination combination;
    combination.modifiers = *mask;
    const X11Keyboard::CodeRange codes = m_keyboard.keyCodes();
    for (const int evdev : {twins->evdev, twins->evdevToo}) {
        const auto code = static_cast<std::uint32_t>(serverKeyOfEvdev(evdev));
        if (evdev != 0 && code >= codes.first && code <= codes.last) {
            combination.keyCodes.push_back(static_cast<std::uint8_t>(code));
        }
    }
    return combination.keyCodes.empty() ? std::nullopt : std::optional(combination);
}

std::unique_ptr<HotKeyGrab> X11HotKeys::grab(const KeyCombination& combination) const {
    return HotKeyGrab::take(m_server, combination, m_grabbedFor.lockCombinations());
}

void X11HotKeys::grabAnew() {
    // Another keyboard in use is a change of the mapping too; most differ in nothing that matters.
    if (m_grabbedFor == m_keyboard.modifiers()) {
        return;
    }
    m_grabbedFor = m_keyboard.modifiers();
    std::vector<std::function<void()>> lost;
    for (auto& entry : m_hotKeys) {
        entry.second.grab.reset();
    }
    for (auto& entry : m_hotKeys) {
        HotKey& hotKey = entry.second;
        const auto combination = combinationOf(hotKey.keyCode, hotKey.modifiers);
        if (!combination) {
            continue; // A modifier has no key for now; the change that gives it one comes here too.
        }
        hotKey.combination = *combination;
        hotKey.grab = grab(*combination);
        if (!hotKey.grab) {
            lost.push_back(hotKey.lost);
        }
    }
    for (const auto& tell : lost) {
        tell();
    }
}

} // namespace snapvane::x11
