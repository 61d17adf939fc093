#include "ClientWindow.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

namespace snapvane::testing {

namespace {

// Of WM_NORMAL_HINTS: the user chose place and size, and the gravity is set; static gravity keeps
// the inside of the window, not its frame, at the place asked for.
constexpr uint32_t sizeHintFlags = 1U | 2U | 512U;
constexpr std::size_t sizeHintCount = 18;
constexpr std::size_t gravityIndex = 17;

} // namespace

ClientWindow::ClientWindow(xcb_connection_t* connection, const xcb_screen_t& screen,
                           const ClientOptions& options)
    : m_connection(connection), m_options(options), m_painter(connection, screen.root),
      m_window(xcb_generate_id(connection)),
      m_pixmap(m_painter.create(options.width, options.height)), m_painted(atom(paintedProperty)),
      m_frameAtom(atom(frameProperty)) {
    paintPixmap();
    create(screen);
    describe();
}

void ClientWindow::show() {
    xcb_map_window(m_connection, m_window);
    xcb_flush(m_connection);
}

void ClientWindow::repaint() {
    xcb_copy_area(m_connection, m_pixmap, m_window, m_painter.context(), 0, 0, 0, 0,
                  static_cast<uint16_t>(m_options.width), static_cast<uint16_t>(m_options.height));
    setNumber(m_painted, 1);
    xcb_flush(m_connection);
}

void ClientWindow::nextFrame() {
    ++m_frame;
    paintPixmap();
    repaint();
    setNumber(m_frameAtom, m_frame % liveFrameCount);
    xcb_flush(m_connection);
}

void ClientWindow::create(const xcb_screen_t& screen) {
    // No background: what the client has not painted yet shows what stood there before.
    const std::array<uint32_t, 3> values = {
        XCB_BACK_PIXMAP_NONE, m_options.overrideRedirect ? 1U : 0U, XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(
        m_connection, XCB_COPY_FROM_PARENT, m_window, screen.root,
        static_cast<int16_t>(m_options.x), static_cast<int16_t>(m_options.y),
        static_cast<uint16_t>(m_options.width), static_cast<uint16_t>(m_options.height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
}

void ClientWindow::describe() {
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, static_cast<uint32_t>(m_options.title.size()),
                        m_options.title.data());
    std::array<uint32_t, sizeHintCount> hints = {};
    hints[0] = sizeHintFlags;
    hints[gravityIndex] = XCB_GRAVITY_STATIC;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, sizeHintCount, hints.data());
}

void ClientWindow::paintPixmap() {
    m_painter.paint(m_pixmap, m_options.width, m_options.height, [&](int x, int y) {
        switch (m_options.mode) {
        case ClientOptions::Mode::Live:
            return livePixel(m_frame, x, y);
        case ClientOptions::Mode::Noise:
            return noisePixel(x, y, m_options.seed);
        default:
            return patternPixel(x, y, m_options.seed);
        }
    });
}

void ClientWindow::setNumber(xcb_atom_t property, uint32_t value) {
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, XCB_ATOM_CARDINAL,
                        32, 1, &value);
}

xcb_atom_t ClientWindow::atom(const char* name) {
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
    const xcb_atom_t result = reply != nullptr ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return result;
}

} // namespace snapvane::testing
