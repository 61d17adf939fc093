#include "platform/x11/CompositorBarrier.h"

#include <gtest/gtest.h>

namespace snapvane {

using x11::VanishingProbe;

namespace {

constexpr std::uint32_t before = 0x402010;
constexpr std::uint32_t color = 0xc0a090;
// On the way from the one to the other, as a fade shows it.
constexpr std::uint32_t early = 0x5a3a2a;
constexpr std::uint32_t late = 0x9a7a6a;
// What lies beneath without the veil that was over it.
constexpr std::uint32_t unveiled = 0x4e2713;

} // namespace

TEST(VanishingProbe, IsGoneWithTheLastLookOnly) {
    struct Case {
        const char* name;
        std::vector<std::uint32_t> looks;
    };
    const Case cases[] = {
        {"back to what was before", {color, before}},
        {"something else beneath", {color, unveiled}},
        {"nearly the probe's colour beneath", {color, color ^ 1U}},
        {"while it fades in", {early, early, before}},
        {"while it fades in over something else", {early, late, unveiled}},
        {"fading on after it was taken away", {early, late, late, before}},
        {"first seen when the veil went", {unveiled, early, unveiled}},
        {"never seen to go", {unveiled, unveiled, unveiled, before}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        VanishingProbe probe(before, color);
        for (std::size_t i = 0; i < c.looks.size(); ++i) {
            EXPECT_EQ(probe.isGone(c.looks[i]), i + 1 == c.looks.size()) << "look " << i;
        }
    }
}

} // namespace snapvane
