// A real X client for the tests to look at: it shows a picture whose every pixel is known.

#include "ClientOptions.h"
#include "ClientWindow.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <poll.h>

namespace {

using snapvane::testing::ClientOptions;
using snapvane::testing::ClientWindow;
using Clock = std::chrono::steady_clock;

constexpr auto frameTime = std::chrono::milliseconds(16);
constexpr auto slowness = std::chrono::milliseconds(150);

/// Takes what the server sent; true when it asked for a painting.
bool takeExposures(xcb_connection_t* connection) {
    bool exposed = false;
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
        exposed = exposed || (event->response_type & 0x7fU) == XCB_EXPOSE;
        std::free(event);
    }
    return exposed;
}

void waitFor(xcb_connection_t* connection, std::optional<Clock::time_point> due) {
    pollfd waiting = {xcb_get_file_descriptor(connection), POLLIN, 0};
    int timeoutMs = -1;
    if (due) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(*due - Clock::now());
        timeoutMs = static_cast<int>(std::max<std::int64_t>(0, left.count()));
    }
    poll(&waiting, 1, timeoutMs);
}

/// When the next painting is due, once the server has asked for one or the last one was done.
std::optional<Clock::time_point> schedule(ClientOptions::Mode mode, bool exposed,
                                          std::optional<Clock::time_point> due) {
    if (due || !exposed) {
        return due;
    }
    return Clock::now() + (mode == ClientOptions::Mode::Slow ? slowness : Clock::duration(0));
}

void run(xcb_connection_t* connection, ClientWindow& window, ClientOptions::Mode mode) {
    const bool live = mode == ClientOptions::Mode::Live;
    std::optional<Clock::time_point> due;
    while (xcb_connection_has_error(connection) == 0) {
        due = schedule(mode, takeExposures(connection), due);
        if (due && Clock::now() >= *due) {
            live ? window.nextFrame() : window.repaint();
            due = live ? std::optional(*due + frameTime) : std::nullopt;
        }
        waitFor(connection, due);
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    const ClientOptions options = snapvane::testing::parseOptions(argumentCount, arguments);
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        std::fprintf(stderr, "cannot reach the display\n");
        return 1;
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    ClientWindow window(connection, *screen, options);
    window.show();
    run(connection, window, options.mode);
    return 0;
}
