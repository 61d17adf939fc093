#pragma once

#include "platform/Sprites.h"

namespace snapvane::x11 {

/// Sprites as windows of their own. Owned by the platform; main thread.
class X11Sprites : public Sprites {
public:
    std::unique_ptr<SolidSprite> createSolid(const QColor& color,
                                             const SpriteOptions& options) override;
    std::unique_ptr<ImageSprite> createImage(const SpriteOptions& options) override;
};

} // namespace snapvane::x11
