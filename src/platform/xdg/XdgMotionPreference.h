#pragma once

#include "platform/MotionPreference.h"

namespace snapvane::xdg {

/// What GNOME's settings say about animations, or KDE's; each is asked where it is the desktop.
/// Elsewhere things move. Owned by the platform; main thread.
class XdgMotionPreference : public MotionPreference {
public:
    bool isReduced() const override;
};

} // namespace snapvane::xdg
