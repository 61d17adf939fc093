#pragma once

#include "platform/Sprites.h"

namespace snapvane::null {

class NullSprites;

/// A sprite that nobody sees. Belongs to who made it, who may ask after it here.
class NullSolidSprite : public SolidSprite {
public:
    NullSolidSprite(NullSprites& owner, const QColor& newColor, SpriteOptions newOptions);
    ~NullSolidSprite() override;

    void showAt(const Screen& newScreen, const PixelRect& newArea) override;
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }

    QColor color;
    SpriteOptions options;
    Screen screen;
    PixelRect area;
    bool visible = false;
    int shown = 0;

private:
    NullSprites& m_owner;
};

class NullImageSprite : public ImageSprite {
public:
    NullImageSprite(NullSprites& owner, SpriteOptions newOptions);
    ~NullImageSprite() override;

    bool isTranslucent() override;
    void showAt(const Screen& newScreen, PixelPoint newTopLeft,
                const SpritePicture& newPicture) override;
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }

    SpriteOptions options;
    Screen screen;
    PixelPoint topLeft;
    SpritePicture picture;
    bool visible = false;
    int shown = 0;

private:
    NullSprites& m_owner;
    bool m_translucent = false;
};

class NullSprites : public Sprites {
public:
    std::unique_ptr<SolidSprite> createSolid(const QColor& color,
                                             const SpriteOptions& options) override;
    std::unique_ptr<ImageSprite> createImage(const SpriteOptions& options) override;

    bool translucent = true;
    /// Those that there are, the newest last.
    std::vector<NullSolidSprite*> solids;
    std::vector<NullImageSprite*> images;
    int created = 0;
};

} // namespace snapvane::null
