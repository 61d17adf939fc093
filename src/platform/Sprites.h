#pragma once

#include "platform/Screens.h"

#include <QColor>
#include <QImage>

#include <memory>
#include <vector>

namespace snapvane {

/// A rectangle of pixels with round corners.
struct RoundedArea {
    PixelRect area;
    double radius = 0;

    friend bool operator==(const RoundedArea&, const RoundedArea&) = default;
};

struct SpriteOptions {
    /// The window's name.
    QString name;
    /// Place in the stacking order among the program's own surfaces; above all other applications.
    int level = 0;
};

/// What an image sprite shows.
struct SpritePicture {
    /// Premultiplied alpha.
    QImage image;
    /// All that is shown of it where the desktop knows no transparency.
    std::vector<RoundedArea> shape;
};

/// A small surface that follows the pointer: of native pixels, borderless, on every workspace,
/// never taking a click or the focus. Destroying or hiding it leaves nothing on the glass, also
/// where a compositor fades windows out. Main thread; showing and hiding do not wait for the
/// display.
class Sprite {
public:
    virtual ~Sprite() = default;

    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
};

/// Shows a rectangle of one colour.
class SolidSprite : public Sprite {
public:
    /// Shows it there, in its level; native pixels of the screen.
    virtual void showAt(const Screen& screen, const PixelRect& area) = 0;
};

/// Shows a picture.
class ImageSprite : public Sprite {
public:
    /// Whether transparency will be seen. Asks the display while the sprite is hidden, and is
    /// settled while it is visible: to be asked before every showing.
    virtual bool isTranslucent() = 0;
    /// Shows the picture with its upper-left pixel there, in its level; native pixels of the
    /// screen. The picture's memory is free again when this returns.
    virtual void showAt(const Screen& screen, PixelPoint topLeft, const SpritePicture& picture) = 0;
};

/// Makes sprites, hidden to begin with.
class Sprites {
public:
    virtual ~Sprites() = default;

    virtual std::unique_ptr<SolidSprite> createSolid(const QColor& color,
                                                     const SpriteOptions& options) = 0;
    virtual std::unique_ptr<ImageSprite> createImage(const SpriteOptions& options) = 0;
};

} // namespace snapvane
