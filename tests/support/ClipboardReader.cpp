#include "ClipboardReader.h"

#include "Wait.h"

#include <poll.h>

namespace snapvane::testing {

namespace {

constexpr std::chrono::seconds patience(5);

} // namespace

ClipboardReader::ClipboardReader(const QString& display)
    : m_connection(display), m_window(xcb_generate_id(m_connection)),
      m_property(m_connection.atom("_SNAPVANE_TEST_CLIPBOARD")),
      m_inParts(m_connection.atom("INCR")) {
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
}

QStringList ClipboardReader::targets() {
    QStringList names;
    const auto list = read("TARGETS");
    if (!list) {
        return names;
    }
    const auto* atoms = reinterpret_cast<const xcb_atom_t*>(list->constData());
    for (std::size_t i = 0; i < static_cast<std::size_t>(list->size()) / sizeof *atoms; ++i) {
        const Reply<xcb_get_atom_name_reply_t> name(xcb_get_atom_name_reply(
            m_connection, xcb_get_atom_name(m_connection, atoms[i]), nullptr));
        if (name) {
            names << QString::fromLatin1(xcb_get_atom_name_name(name.get()),
                                         xcb_get_atom_name_name_length(name.get()));
        }
    }
    return names;
}

std::optional<QByteArray> ClipboardReader::read(std::string_view target) {
    const auto first = ask(target);
    if (!first) {
        return std::nullopt;
    }
    if (first->type != m_inParts) {
        return first->bytes;
    }
    QByteArray whole;
    while (true) {
        const auto part = nextPart();
        if (!part) {
            return std::nullopt;
        }
        if (part->bytes.isEmpty()) {
            return whole;
        }
        whole += part->bytes;
    }
}

std::optional<QByteArray> ClipboardReader::readFirstPart(std::string_view target) {
    const auto first = ask(target);
    if (!first || first->type != m_inParts) {
        return std::nullopt;
    }
    const auto part = nextPart();
    return part ? std::optional(part->bytes) : std::nullopt;
}

std::optional<ClipboardReader::Piece> ClipboardReader::ask(std::string_view target) {
    xcb_delete_property(m_connection, m_window, m_property);
    xcb_convert_selection(m_connection, m_window, m_connection.atom("CLIPBOARD"),
                          m_connection.atom(target), m_property, XCB_CURRENT_TIME);
    if (!waitFor(Awaited::Answer)) {
        return std::nullopt;
    }
    Piece piece = take();
    return piece.type == XCB_ATOM_NONE ? std::nullopt : std::optional(piece);
}

std::optional<ClipboardReader::Piece> ClipboardReader::nextPart() {
    // A part that is not there yet has no type; the last one has a type and no bytes.
    while (waitFor(Awaited::Part)) {
        Piece piece = take();
        if (piece.type != XCB_ATOM_NONE) {
            return piece;
        }
    }
    return std::nullopt;
}

bool ClipboardReader::waitFor(Awaited what) {
    xcb_flush(m_connection);
    const auto end = std::chrono::steady_clock::now() + patience * slowness();
    while (xcb_connection_has_error(m_connection) == 0) {
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
            if (isAwaited(*event, what)) {
                return true;
            }
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        pollfd waiting = {xcb_get_file_descriptor(m_connection), POLLIN, 0};
        if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) == 0) {
            return false;
        }
    }
    return false;
}

bool ClipboardReader::isAwaited(const xcb_generic_event_t& event, Awaited what) const {
    const auto type = event.response_type & 0x7f;
    if (what == Awaited::Answer) {
        return type == XCB_SELECTION_NOTIFY;
    }
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    return type == XCB_PROPERTY_NOTIFY && change.atom == m_property &&
           change.state == XCB_PROPERTY_NEW_VALUE;
}

ClipboardReader::Piece ClipboardReader::take() {
    constexpr uint32_t everything = 0x1fffffff;
    // Taking it away is what asks the owner for the next part.
    const auto cookie = xcb_get_property(m_connection, 1, m_window, m_property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, everything);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply) {
        return {};
    }
    return {reply->type, QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                    xcb_get_property_value_length(reply.get()))};
}

} // namespace snapvane::testing
