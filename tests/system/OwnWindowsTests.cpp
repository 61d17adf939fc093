// The loupe looks through the program's own windows.

#include "PointerAidsSuite.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType> class OwnWindows : public FlavouredPointerAids<FlavourType> {
protected:
    /// The notice of a capture, once it stands still.
    WindowInfo takePictureAndWaitForNotice() {
        this->agent().capture({100, 100}, {300, 200});
        EXPECT_TRUE(this->agent().waitForOverlayGone());
        std::optional<WindowInfo> notice;
        require("the notice to stand still", [&] {
            const auto last = notice;
            pause(std::chrono::milliseconds(100));
            notice = this->probe().viewableWindowNamed(u"Snapvane Notice"_s);
            return notice && last && notice->rect == last->rect;
        });
        return *notice;
    }
};

TYPED_TEST_SUITE(OwnWindows, OpaqueAndTranslucent, FlavourNames);

TYPED_TEST(OwnWindows, TheNoticeOfThePreviousCaptureIsNotInTheLoupe) {
    (void)this->background();
    const WindowInfo notice = this->takePictureAndWaitForNotice();
    const QPoint pointer = notice.rect.center();
    this->injector().moveTo(pointer);
    this->agent().activateAction(u"capture-area"_s);
    this->agent().waitForOverlay();
    ASSERT_TRUE(this->probe().viewableWindowNamed(u"Snapvane Notice"_s)) << "it came too late";
    EXPECT_TRUE(this->loupe().shows(pointer, this->background()));
    // Where the notice ends, there are no seams.
    for (const QPoint& edge : {notice.rect.topLeft(), notice.rect.bottomRight(),
                               QPoint(notice.rect.left(), notice.rect.center().y())}) {
        this->injector().moveTo(edge);
        EXPECT_TRUE(this->loupe().shows(edge, this->background()));
    }
    require("the notice to go", [this] {
        return !this->probe().viewableWindowNamed(u"Snapvane Notice"_s).has_value();
    });
    this->cancel();
}

} // namespace

} // namespace snapvane::testing
