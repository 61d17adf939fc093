#include "ClientOptions.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace snapvane::testing {

namespace {

[[noreturn]] void explain() {
    std::fprintf(stderr, "usage: --mode pattern|live|slow|noise --geometry WIDTHxHEIGHT+X+Y "
                         "[--title TEXT] [--seed NUMBER] [--override-redirect]\n");
    std::exit(2);
}

ClientOptions::Mode parseMode(std::string_view text) {
    if (text == "pattern") {
        return ClientOptions::Mode::Pattern;
    }
    if (text == "live") {
        return ClientOptions::Mode::Live;
    }
    if (text == "slow") {
        return ClientOptions::Mode::Slow;
    }
    if (text == "noise") {
        return ClientOptions::Mode::Noise;
    }
    explain();
}

} // namespace

ClientOptions parseOptions(int count, char** arguments) {
    ClientOptions options;
    for (int index = 1; index < count; ++index) {
        const std::string_view name = arguments[index];
        if (name == "--override-redirect") {
            options.overrideRedirect = true;
            continue;
        }
        if (++index == count) {
            explain();
        }
        const char* value = arguments[index];
        if (name == "--mode") {
            options.mode = parseMode(value);
        } else if (name == "--title") {
            options.title = value;
        } else if (name == "--seed") {
            options.seed = static_cast<uint32_t>(std::strtoul(value, nullptr, 10));
        } else if (name != "--geometry" ||
                   std::sscanf(value, "%dx%d+%d+%d", &options.width, &options.height, &options.x,
                               &options.y) != 4) {
            explain();
        }
    }
    return options;
}

} // namespace snapvane::testing
