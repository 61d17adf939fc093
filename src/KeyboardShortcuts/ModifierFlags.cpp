#include "KeyboardShortcuts/ModifierFlags.h"

#include "platform/HotKeys.h"

namespace KeyboardShortcuts {

namespace {

namespace Carbon = snapvane::CarbonModifier;

struct Modifier {
    ModifierFlags::Flag flag = ModifierFlags::none;
    std::int64_t carbon = 0;
    QStringView sign;
};

// In the order in which they are shown. The globe is followed by the selector of its text style,
// else it would be drawn as a coloured picture.
constexpr Modifier modifiers[] = {{ModifierFlags::control, Carbon::control, u"\u2303"},
                                  {ModifierFlags::option, Carbon::option, u"\u2325"},
                                  {ModifierFlags::shift, Carbon::shift, u"\u21e7"},
                                  {ModifierFlags::command, Carbon::command, u"\u2318"},
                                  {ModifierFlags::function, Carbon::function, u"\U0001f310\ufe0e"}};

} // namespace

ModifierFlags ModifierFlags::fromCarbon(std::int64_t mask) {
    ModifierFlags flags;
    for (const Modifier& modifier : modifiers) {
        if ((mask & modifier.carbon) != 0) {
            flags = flags | modifier.flag;
        }
    }
    return flags;
}

std::int64_t ModifierFlags::carbon() const {
    std::int64_t mask = 0;
    for (const Modifier& modifier : modifiers) {
        if (contains(modifier.flag)) {
            mask |= modifier.carbon;
        }
    }
    return mask;
}

QString ModifierFlags::ks_symbolicRepresentation() const {
    QString signs;
    for (const Modifier& modifier : modifiers) {
        if (contains(modifier.flag)) {
            signs += modifier.sign;
        }
    }
    return signs;
}

std::int64_t normalizedCarbonModifiers(std::int64_t mask) {
    return ModifierFlags::fromCarbon(mask).carbon();
}

} // namespace KeyboardShortcuts
