#include "platform/x11/ModifierMasks.h"

#include "platform/HotKeys.h"

#include <xcb/xproto.h>

namespace snapvane::x11 {

std::optional<std::uint16_t> ModifierMasks::fromCarbon(std::uint32_t carbon) const {
    const struct {
        std::uint32_t carbon;
        std::uint16_t mask;
    } pairs[] = {{CarbonModifier::shift, XCB_MOD_MASK_SHIFT},
                 {CarbonModifier::control, XCB_MOD_MASK_CONTROL},
                 {CarbonModifier::option, option},
                 {CarbonModifier::command, command},
                 // No keyboard reports this one here: it changes what other keys send.
                 {CarbonModifier::function, 0}};
    std::uint32_t result = 0;
    for (const auto& pair : pairs) {
        if ((carbon & pair.carbon) != 0) {
            if (pair.mask == 0) {
                return std::nullopt;
            }
            result |= pair.mask;
        }
    }
    return static_cast<std::uint16_t>(result);
}

std::uint32_t ModifierMasks::toCarbon(std::uint32_t state) const {
    std::uint32_t carbon = 0;
    const auto add = [state, &carbon](std::uint32_t mask, std::uint32_t modifier) {
        if ((state & mask) != 0) {
            carbon |= modifier;
        }
    };
    add(XCB_MOD_MASK_SHIFT, CarbonModifier::shift);
    add(XCB_MOD_MASK_CONTROL, CarbonModifier::control);
    add(option, CarbonModifier::option);
    add(command, CarbonModifier::command);
    return carbon;
}

std::uint16_t ModifierMasks::locks() const {
    return static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLock | scrollLock);
}

std::vector<std::uint16_t> ModifierMasks::lockCombinations() const {
    std::vector<std::uint16_t> combinations;
    const std::uint32_t all = locks();
    // Every subset of the bits, from all of them down to none.
    for (std::uint32_t subset = all;; subset = (subset - 1) & all) {
        combinations.push_back(static_cast<std::uint16_t>(subset));
        if (subset == 0) {
            return combinations;
        }
    }
}

} // namespace snapvane::x11
