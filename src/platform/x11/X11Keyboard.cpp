#include "platform/x11/X11Keyboard.h"

#include "base/Log.h"
#include "platform/x11/Xcb.h"

#include <QCoreApplication>

#include <algorithm>
#include <span>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

// The header names a field of a structure with a word of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace snapvane::x11 {

namespace {

const Log& keyboardLog() {
    static const Log log("Keyboard");
    return log;
}

struct ContextDeleter {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

/// Null when the server does not tell; else the caller's to release.
xkb_keymap* readKeymap(xcb_connection_t* connection) {
    const std::unique_ptr<xkb_context, ContextDeleter> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (!context || device < 0) {
        return nullptr;
    }
    return xkb_x11_keymap_new_from_device(context.get(), connection, device,
                                          XKB_KEYMAP_COMPILE_NO_FLAGS);
}

/// A held key sends presses only, and one release at its end. Without this every repetition would
/// look like a release.
void askForDetectableAutoRepeat(const Server& server) {
    const std::uint32_t flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto cookie =
        xcb_xkb_per_client_flags(server.connection, XCB_XKB_ID_USE_CORE_KBD, flag, flag, 0, 0, 0);
    const auto reply = owned(xcb_xkb_per_client_flags_reply(server.connection, cookie, nullptr));
    if (!reply || (reply->value & flag) == 0) {
        keyboardLog().error(QStringLiteral(
            "The X server cannot tell a held key from one that is pressed again and again."));
    }
}

bool contains(std::span<const xcb_keysym_t> symbols, xcb_keysym_t left, xcb_keysym_t right) {
    return std::ranges::any_of(
        symbols, [=](xcb_keysym_t symbol) { return symbol == left || symbol == right; });
}

/// The modifiers that a key with these symbols makes its bit stand for.
void assign(ModifierMasks& masks, std::uint16_t& meta, std::uint16_t bit,
            std::span<const xcb_keysym_t> symbols) {
    const auto take = [bit](std::uint16_t& mask) { mask = mask == 0 ? bit : mask; };
    if (contains(symbols, XKB_KEY_Alt_L, XKB_KEY_Alt_R)) {
        take(masks.option);
    }
    if (contains(symbols, XKB_KEY_Super_L, XKB_KEY_Super_R)) {
        take(masks.command);
    }
    if (contains(symbols, XKB_KEY_Meta_L, XKB_KEY_Meta_R)) {
        take(meta);
    }
    if (contains(symbols, XKB_KEY_Num_Lock, XKB_KEY_Num_Lock)) {
        take(masks.numLock);
    }
    if (contains(symbols, XKB_KEY_Scroll_Lock, XKB_KEY_Scroll_Lock)) {
        take(masks.scrollLock);
    }
}

} // namespace

X11Keyboard::X11Keyboard() : m_server(qtServer()) {
    if (xkb_x11_setup_xkb_extension(m_server.connection, XKB_X11_MIN_MAJOR_XKB_VERSION,
                                    XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr,
                                    &m_firstXkbEvent, nullptr) != 0) {
        askForDetectableAutoRepeat(m_server);
    } else {
        keyboardLog().error(QStringLiteral("The X server has no keyboard extension."));
    }
    m_modifiers = readModifiers();
    m_settle.setSingleShot(true);
    connect(&m_settle, &QTimer::timeout, this, &X11Keyboard::reload);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11Keyboard::~X11Keyboard() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

std::uint32_t X11Keyboard::layoutCount() {
    xkb_keymap* map = keymap();
    return map != nullptr ? xkb_keymap_num_layouts(map) : 0;
}

std::uint32_t X11Keyboard::currentLayout() const {
    if (m_firstXkbEvent == 0) {
        return 0;
    }
    const auto cookie = xcb_xkb_get_state(m_server.connection, XCB_XKB_ID_USE_CORE_KBD);
    const auto reply = owned(xcb_xkb_get_state_reply(m_server.connection, cookie, nullptr));
    return reply ? reply->group : 0;
}

xkb_keysym_t X11Keyboard::symbol(std::uint32_t keyCode, std::uint32_t layout, std::uint32_t level) {
    xkb_keymap* map = keymap();
    if (map == nullptr) {
        return XKB_KEY_NoSymbol;
    }
    // A key that is the same in all layouts is described for the first one only.
    const std::uint32_t count = xkb_keymap_num_layouts_for_key(map, keyCode);
    const xkb_keysym_t* symbols = nullptr;
    const int found = count == 0 ? 0
                                 : xkb_keymap_key_get_syms_by_level(
                                       map, keyCode, layout < count ? layout : 0, level, &symbols);
    return found == 1 ? symbols[0] : XKB_KEY_NoSymbol;
}

X11Keyboard::CodeRange X11Keyboard::keyCodes() const {
    const xcb_setup_t* setup = xcb_get_setup(m_server.connection);
    return {setup->min_keycode, setup->max_keycode};
}

bool X11Keyboard::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_MAPPING_NOTIFY) {
        m_settle.start();
    } else if (m_firstXkbEvent != 0 && type == m_firstXkbEvent) {
        // The extension has one event, whose second byte tells what it is about.
        switch (event->pad0) {
        case XCB_XKB_NEW_KEYBOARD_NOTIFY:
        case XCB_XKB_MAP_NOTIFY:
            m_settle.start();
            break;
        case XCB_XKB_STATE_NOTIFY: {
            const auto& state = *reinterpret_cast<const xcb_xkb_state_notify_event_t*>(event);
            if ((state.changed & XCB_XKB_STATE_PART_GROUP_STATE) != 0) {
                Q_EMIT layoutChanged();
            }
            break;
        }
        default:
            break;
        }
    }
    return false; // Qt listens too.
}

xkb_keymap* X11Keyboard::keymap() {
    if (!m_keymapWasRead && m_firstXkbEvent != 0) {
        m_keymapWasRead = true;
        m_keymap.reset(readKeymap(m_server.connection));
    }
    return m_keymap.get();
}

void X11Keyboard::reload() {
    m_keymap.reset();
    m_keymapWasRead = false;
    m_modifiers = readModifiers();
    Q_EMIT mappingChanged();
}

ModifierMasks X11Keyboard::readModifiers() const {
    const CodeRange codes = keyCodes();
    const auto count = static_cast<std::uint8_t>(codes.last - codes.first + 1);
    const auto symbolsCookie = xcb_get_keyboard_mapping(
        m_server.connection, static_cast<std::uint8_t>(codes.first), count);
    const auto modifiersCookie = xcb_get_modifier_mapping(m_server.connection);
    const auto symbols =
        owned(xcb_get_keyboard_mapping_reply(m_server.connection, symbolsCookie, nullptr));
    const auto keys =
        owned(xcb_get_modifier_mapping_reply(m_server.connection, modifiersCookie, nullptr));
    ModifierMasks masks;
    std::uint16_t meta = 0;
    if (!symbols || !keys) {
        return masks;
    }
    const std::span allSymbols(xcb_get_keyboard_mapping_keysyms(symbols.get()),
                               std::size_t{symbols->keysyms_per_keycode} * count);
    const std::span modifierKeys(xcb_get_modifier_mapping_keycodes(keys.get()),
                                 std::size_t{keys->keycodes_per_modifier} * 8);
    for (std::size_t index = 0; index < modifierKeys.size(); ++index) {
        const std::uint32_t keyCode = modifierKeys[index];
        const auto bit = static_cast<std::uint16_t>(1U << (index / keys->keycodes_per_modifier));
        // The first three bits are Shift's, Caps Lock's and control's, whatever keys they have.
        if (keyCode >= codes.first && keyCode <= codes.last && bit > XCB_MOD_MASK_CONTROL) {
            assign(masks, meta, bit,
                   allSymbols.subspan((keyCode - codes.first) * symbols->keysyms_per_keycode,
                                      symbols->keysyms_per_keycode));
        }
    }
    if (masks.command == 0 && meta != masks.option) {
        masks.command = meta;
    }
    return masks;
}

} // namespace snapvane::x11
