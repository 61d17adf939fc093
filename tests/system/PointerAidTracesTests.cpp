// Loupe and lines come at once, over nothing but the dimmed desktop, and leave nothing behind: not
// on the glass and in no picture.

#include "PointerAidsSuite.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType>
class PointerAidTraces : public FlavouredPointerAids<FlavourType> {};

/// A compositor that fades windows out keeps what others have taken away.
using WithFading = ::testing::Types<Flavour<Compositor::None>, Flavour<Compositor::Picom>,
                                    Flavour<Compositor::PicomFading>>;

TYPED_TEST_SUITE(PointerAidTraces, WithFading, FlavourNames);

TYPED_TEST(PointerAidTraces, LoupeAndLinesComeWithoutAnyMotion) {
    const QPoint pointer(333, 444);
    this->beginSelection(pointer);
    this->expectAidsAt(pointer);
    EXPECT_EQ(this->loupe().window(), QRect(351, 444 + 1 - 18 - 164, 160, 164));
    const std::vector<QRect> expected = {{333, 0, 1, 720}, {0, 444, 1280, 1}};
    EXPECT_EQ(this->lines().windows(), expected);
    this->expectVeiledDesktop();
    this->cancel();
}

TYPED_TEST(PointerAidTraces, NothingIsLeftWhenTheSelectionIsCancelledInMidDrag) {
    this->beginSelection({300, 300});
    this->injector().dragTo({300, 300}, {800, 600});
    this->expectAidsAt({800, 600});
    this->cancel();
    this->injector().release();
    EXPECT_TRUE(samePicture(this->background(), this->settledGlass(), this->name("cancelled")));
}

TYPED_TEST(PointerAidTraces, NothingIsInThePicture) {
    struct Drag {
        QPoint from;
        QPoint to;
        QRect rect;
    };
    // Each ends with the loupe and both lines inside the selection.
    const std::vector<Drag> drags = {
        {{900, 300}, {400, 719}, {400, 300, 500, 420}},
        {{1700, 100}, {2559, 719}, {1700, 100, 860, 620}},
    };
    for (const Drag& drag : drags) {
        this->beginSelection(drag.from);
        this->expectExactDrag(drag.from, drag.to, drag.rect, this->name("picture"));
        this->agent().clearPictures();
    }
    EXPECT_TRUE(samePicture(this->background(), this->settledGlass(), this->name("after")));
}

} // namespace

} // namespace snapvane::testing
