#pragma once

#include "XcbConnection.h"

namespace snapvane::testing {

/// Whether some client holds the pointer (the keyboard). Found out by taking it for a moment, so
/// what is waiting for it may have to ask twice.
bool isPointerGrabbed(const XcbConnection& connection);
bool isKeyboardGrabbed(const XcbConnection& connection);

/// Holds pointer and keyboard like a rude client, for its lifetime, on a connection of its own.
/// Throws std::runtime_error when another client holds them already.
class RudeGrab {
public:
    enum class What { Pointer, Keyboard };

    RudeGrab(const QString& display, What what);

private:
    XcbConnection m_connection;
};

} // namespace snapvane::testing
