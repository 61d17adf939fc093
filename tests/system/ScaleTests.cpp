// At every scale the saved pixels are the ones that the pointer framed, also where the screen's
// size is no whole number of points.

#include "AgentSuite.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

/// The rectangle between two pixels of a drag that touches no far edge.
QRect dragged(const QPoint& from, const QPoint& to) {
    return {qMin(from.x(), to.x()), qMin(from.y(), to.y()), qAbs(to.x() - from.x()),
            qAbs(to.y() - from.y())};
}

class Scale : public AgentSuite, public ::testing::WithParamInterface<const char*> {
protected:
    // A desktop for each scale: the agent learns of it when it starts.
    static void SetUpTestSuite() {}

    void SetUp() override {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        options.screenSize = {1366, 768};
        AgentOptions agentOptions;
        agentOptions.variables = {{u"QT_SCREEN_SCALE_FACTORS"_s, QString::fromLatin1(GetParam())}};
        start(options, agentOptions);
        AgentSuite::SetUp();
    }

    void TearDown() override {
        AgentSuite::TearDown();
        TearDownTestSuite();
    }
};

TEST_P(Scale, SavedPixelsAreTheFramedOnes) {
    const QString name = u"scale-%1"_s.arg(QString::fromLatin1(GetParam()).replace(u';', u'-'));
    const std::vector<std::pair<QPoint, QPoint>> drags = {
        {{101, 53}, {368, 291}},    // odd numbers that no scale divides
        {{1201, 700}, {997, 513}},  // backwards
        {{1, 1}, {1365, 767}},      // to the left screen's last column, which the right one adjoins
        {{1500, 33}, {2017, 404}},  // the right screen
        {{2690, 717}, {1400, 209}}, // the same, backwards
    };
    for (const auto& [from, to] : drags) {
        QRect expected = dragged(from, to);
        if (to.y() == desktop().rect().bottom()) {
            expected.setBottom(to.y());
        }
        expectExact(from, to, expected, name);
        agent().clearPictures();
    }
}

TEST_P(Scale, LastColumnAndRowCanBeSelected) {
    expectExact({2600, 600}, {2731, 767}, {2600, 600, 132, 168}, u"scale-corner"_s);
}

INSTANTIATE_TEST_SUITE_P(Factors, Scale,
                         ::testing::Values("1.25", "1.5", "1.75", "2", "L=1;R=2", "L=1.75;R=1.25"),
                         [](const auto& scale) {
                             std::string name = scale.param;
                             for (char& character : name) {
                                 character = std::isalnum(character) != 0 ? character : '_';
                             }
                             return name;
                         });

} // namespace

} // namespace snapvane::testing
