#pragma once

#include <cstdint>
#include <string>

namespace snapvane::testing {

/// What the test client is asked to be, from its command line.
struct ClientOptions {
    enum class Mode {
        /// The test pattern, painted anew at once whenever the server asks.
        Pattern,
        /// A new frame about sixty times a second.
        Live,
        /// The test pattern, but painted only 150 ms after the server asked.
        Slow,
        /// A picture that compresses badly.
        Noise,
    };

    Mode mode = Mode::Pattern;
    int x = 0;
    int y = 0;
    int width = 200;
    int height = 150;
    std::string title = "Snapvane Test Client";
    uint32_t seed = 1;
    bool overrideRedirect = false;
};

/// Exits the program with a message when the command line makes no sense.
ClientOptions parseOptions(int count, char** arguments);

} // namespace snapvane::testing
