// The whole screen can be selected, to its last column and row.

#include "AgentSuite.h"
#include "Flavours.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType> class FullScreen : public AgentSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.compositor = FlavourType::compositor;
        start(options);
    }
};

TYPED_TEST_SUITE(FullScreen, EveryFlavourAndGl, FlavourNames);

TYPED_TEST(FullScreen, CornerToCornerIsTheWholeScreen) {
    const QString name = u"full-screen-%1"_s.arg(QLatin1String(nameOf(TypeParam::compositor)));
    this->expectExact({0, 0}, {1919, 1079}, this->desktop().rect(), name);
    this->expectExact({1919, 1079}, {0, 0}, this->desktop().rect(), name);
}

TYPED_TEST(FullScreen, FullScreenWindowIsCapturedWhole) {
    TestClient::Options options;
    options.rect = this->desktop().rect();
    options.overrideRedirect = true;
    options.seed = 5;
    const TestClient window(this->desktop(), options);
    const QString name =
        u"full-screen-window-%1"_s.arg(QLatin1String(nameOf(TypeParam::compositor)));
    this->expectExact({0, 0}, {1919, 1079}, this->desktop().rect(), name);
}

} // namespace

} // namespace snapvane::testing
