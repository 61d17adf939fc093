#include "selection/SelectionPicture.h"

#include "base/SystemColors.h"
#include "selection/SelectionOutline.h"
#include "selection/SizeLabel.h"

namespace snapvane {

SelectionPicture SelectionPicture::of(const Screen& screen, const GlobalRect& selection,
                                      const GlobalRect& bounds, double borderWidth) {
    SelectionPicture picture;
    picture.size = screen.nativeSize();
    picture.scale = screen.backingScale;
    picture.borderWidth = borderWidth * screen.backingScale;
    if (selection.isEmpty()) {
        return picture;
    }
    picture.hole = ScreenMapping::pixelRect(screen, selection);
    const QString text = SizeLabel::text(selection.size);
    const GlobalRect box = SizeLabel::box(selection, SizeLabel::textSize(text), bounds);
    picture.label = Label{text, ScreenMapping::pixelRect(screen, box)};
    return picture;
}

QRegion SelectionPicture::difference(const SelectionPicture& before,
                                     const SelectionPicture& after) {
    QRegion changed;
    if (before.hole != after.hole) {
        changed += before.holeRegion().xored(after.holeRegion());
        changed += before.outlineRegion();
        changed += after.outlineRegion();
    }
    if (before.label != after.label) {
        changed += before.labelRegion();
        changed += after.labelRegion();
    }
    return changed.intersected(QRect(0, 0, after.size.width, after.size.height));
}

void SelectionPicture::paint(OverlayCanvas& canvas, const QRegion& dirty) const {
    const QRect surface(0, 0, size.width, size.height);
    canvas.veil(PixelRect::fromQRect(surface));
    if (!hole) {
        return;
    }
    const QRect visibleHole = hole->toQRect().intersected(surface);
    if (!visibleHole.isEmpty()) {
        canvas.clear(PixelRect::fromQRect(visibleHole));
    }
    QColor color = SystemColors::blue();
    for (const SelectionOutline::Cell& cell : SelectionOutline::cells(*hole, borderWidth)) {
        const QRect visible = cell.area.toQRect().intersected(surface);
        if (!visible.isEmpty()) {
            color.setAlphaF(static_cast<float>(cell.coverage));
            canvas.fill(PixelRect::fromQRect(visible), color);
        }
    }
    if (label && dirty.intersects(label->box.toQRect())) {
        canvas.draw({label->box.x, label->box.y},
                    SizeLabel::render(label->text, {label->box.width, label->box.height}, scale));
    }
}

QRegion SelectionPicture::holeRegion() const {
    return hole ? QRegion(hole->toQRect()) : QRegion();
}

QRegion SelectionPicture::outlineRegion() const {
    if (!hole) {
        return {};
    }
    const int reach = SelectionOutline::reach(borderWidth);
    const QRect rect = hole->toQRect();
    return QRegion(rect.adjusted(-reach, -reach, reach, reach)) -
           QRegion(rect.adjusted(reach, reach, -reach, -reach));
}

QRegion SelectionPicture::labelRegion() const {
    return label ? QRegion(label->box.toQRect()) : QRegion();
}

} // namespace snapvane
