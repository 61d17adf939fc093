#pragma once

#include "VirtualDesktop.h"

#include <gtest/gtest.h>

#include <string>

namespace snapvane::testing {

/// A kind of desktop that a typed suite runs on.
template <Compositor kind> struct Flavour { static constexpr Compositor compositor = kind; };

using EveryFlavour =
    ::testing::Types<Flavour<Compositor::None>, Flavour<Compositor::Picom>,
                     Flavour<Compositor::PicomFading>, Flavour<Compositor::Xcompmgr>,
                     Flavour<Compositor::XcompmgrFading>>;

/// Drawn by OpenGL, in software here: too slow for tests that follow what happens in time.
using EveryFlavourAndGl =
    ::testing::Types<Flavour<Compositor::None>, Flavour<Compositor::Picom>,
                     Flavour<Compositor::PicomFading>, Flavour<Compositor::PicomGlFading>,
                     Flavour<Compositor::Xcompmgr>, Flavour<Compositor::XcompmgrFading>>;

constexpr const char* nameOf(Compositor compositor) {
    switch (compositor) {
    case Compositor::None:
        return "NoCompositor";
    case Compositor::Picom:
        return "Picom";
    case Compositor::PicomFading:
        return "PicomFading";
    case Compositor::PicomGlFading:
        return "PicomGlFading";
    case Compositor::Xcompmgr:
        return "Xcompmgr";
    case Compositor::XcompmgrFading:
        return "XcompmgrFading";
    }
    return "";
}

class FlavourNames {
public:
    template <typename T> static std::string GetName(int /*index*/) {
        return nameOf(T::compositor);
    }
};

} // namespace snapvane::testing
