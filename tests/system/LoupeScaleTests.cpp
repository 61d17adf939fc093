// Loupe and lines on screens with more than one pixel a point.

#include "PointerAidsSuite.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

struct Case {
    const char* name;
    Compositor compositor;
    std::vector<double> scales;
};

void PrintTo(const Case& row, std::ostream* stream) {
    *stream << row.name;
}

class LoupeScale : public PointerAidsSuite, public ::testing::WithParamInterface<Case> {
protected:
    // A desktop for each case: the agent learns of the scales when it starts.
    static void SetUpTestSuite() {}

    void SetUp() override {
        startTwoScreens(GetParam().compositor);
        startAgent(bothOn, GetParam().scales);
        PointerAidsSuite::SetUp();
    }

    void TearDown() override {
        PointerAidsSuite::TearDown();
        TearDownTestSuite();
    }
};

TEST_P(LoupeScale, ShowsPixelsNotPointsUpToEveryEdge) {
    beginSelection({641, 357});
    expectAidsAt({641, 357});
    for (const QRect& screen : {desktop().screenRect(0), desktop().screenRect(1)}) {
        const QPoint middle = screen.center();
        for (const QPoint& pointer :
             {screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight(),
              QPoint(middle.x(), screen.top() + 3), QPoint(screen.right() - 2, middle.y()),
              QPoint(screen.left() + 5, middle.y() + 1), QPoint(middle.x() + 1, screen.bottom())}) {
            injector().moveTo(pointer);
            expectAidsAt(pointer);
        }
    }
    expectVeiledDesktop();
    const QRect rect(1501, 303, 400, 417);
    expectExactDrag({1901, 303}, {1501, 719}, rect,
                    u"pointer-aids-scale-"_s + QLatin1String(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Cases, LoupeScale,
                         ::testing::Values(Case{"OneAndAHalf", Compositor::None, {1.5, 1.5}},
                                           Case{"OneAndAHalfPicom", Compositor::Picom, {1.5, 1.5}},
                                           Case{"Two", Compositor::None, {2, 2}},
                                           Case{"TwoAndOnePicom", Compositor::Picom, {2, 1}}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace

} // namespace snapvane::testing
