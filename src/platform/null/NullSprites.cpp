#include "platform/null/NullSprites.h"

namespace snapvane::null {

NullSolidSprite::NullSolidSprite(NullSprites& owner, const QColor& newColor,
                                 SpriteOptions newOptions)
    : color(newColor), options(std::move(newOptions)), m_owner(owner) {
    m_owner.solids.push_back(this);
}

NullSolidSprite::~NullSolidSprite() {
    std::erase(m_owner.solids, this);
}

void NullSolidSprite::showAt(const Screen& newScreen, const PixelRect& newArea) {
    screen = newScreen;
    area = newArea;
    visible = true;
    ++shown;
}

NullImageSprite::NullImageSprite(NullSprites& owner, SpriteOptions newOptions)
    : options(std::move(newOptions)), m_owner(owner) {
    m_owner.images.push_back(this);
}

NullImageSprite::~NullImageSprite() {
    std::erase(m_owner.images, this);
}

bool NullImageSprite::isTranslucent() {
    if (!visible) {
        m_translucent = m_owner.translucent;
    }
    return m_translucent;
}

void NullImageSprite::showAt(const Screen& newScreen, PixelPoint newTopLeft,
                             const SpritePicture& newPicture) {
    screen = newScreen;
    topLeft = newTopLeft;
    picture = newPicture;
    visible = true;
    ++shown;
}

std::unique_ptr<SolidSprite> NullSprites::createSolid(const QColor& color,
                                                      const SpriteOptions& options) {
    ++created;
    return std::make_unique<NullSolidSprite>(*this, color, options);
}

std::unique_ptr<ImageSprite> NullSprites::createImage(const SpriteOptions& options) {
    ++created;
    return std::make_unique<NullImageSprite>(*this, options);
}

} // namespace snapvane::null
