#pragma once

#include "platform/ScreenMapping.h"

namespace snapvane {

/// A screen of the given pixels and scale; its number is its name.
inline ScreenMapping::NativeScreen nativeScreen(std::uint32_t id, const DeviceRect& frame,
                                                double scale = 1) {
    return {id, QString::number(id), frame, scale, {}};
}

} // namespace snapvane
