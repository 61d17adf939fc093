#pragma once

#include "XcbConnection.h"

#include <QByteArray>
#include <QStringList>

#include <chrono>
#include <optional>

namespace snapvane::testing {

/// Another program that reads the clipboard, on a connection of its own: nothing but the X protocol
/// stands between it and what the owner serves. Test thread only.
class ClipboardReader {
public:
    explicit ClipboardReader(const QString& display);

    /// The names of the forms that the owner offers, as it lists them; empty when there is none.
    QStringList targets();
    /// The clipboard in one of its forms, however many parts it comes in; nothing when the owner
    /// refuses, or is silent for some seconds.
    std::optional<QByteArray> read(std::string_view target);
    /// Asks for a form and takes the first part of what comes in parts, and no more; nothing when
    /// it does not come in parts.
    std::optional<QByteArray> readFirstPart(std::string_view target);

private:
    enum class Awaited { Answer, Part };

    /// What the owner put into our property; its type is XCB_ATOM_NONE when there is nothing.
    struct Piece {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
    };

    std::optional<Piece> ask(std::string_view target);
    std::optional<Piece> nextPart();
    bool waitFor(Awaited what);
    bool isAwaited(const xcb_generic_event_t& event, Awaited what) const;
    Piece take();

    XcbConnection m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_property;
    xcb_atom_t m_inParts;
};

} // namespace snapvane::testing
