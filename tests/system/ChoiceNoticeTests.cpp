// What the notice says after a choice.

#include "ChoiceSuite.h"
#include "NoticeText.h"
#include "Wait.h"

#include <QRegularExpression>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr char savedFile[] = R"(Saved to Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png)";
constexpr char savedFileAndCopy[] =
    R"(Saved to Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png · Image copied)";

struct NoticeCase {
    const char* what;
    const char* savedDefaults;
    xcb_keysym_t key;
    /// A regular expression.
    const char* notice;
};

void PrintTo(const NoticeCase& row, std::ostream* out) {
    *out << row.what;
}

class ChoiceNotices : public ChoiceSuite, public ::testing::WithParamInterface<NoticeCase> {
protected:
    static void SetUpTestSuite() {
        ChoiceSuite::SetUpTestSuite();
        s_text = std::make_unique<NoticeText>(desktop());
    }
    static void TearDownTestSuite() {
        s_text.reset();
        ChoiceSuite::TearDownTestSuite();
    }

    static NoticeText& text() { return *s_text; }

private:
    static inline std::unique_ptr<NoticeText> s_text;
};

TEST_P(ChoiceNotices, TellWhatWasDone) {
    AgentOptions options;
    options.variables = {{QLatin1String(NoticeText::switchVariable), u"1"_s}};
    startAskingAgent(GetParam().savedDefaults, options);
    ask();
    injector().tapKey(GetParam().key);
    const QRegularExpression expected(
        QRegularExpression::anchoredPattern(QString::fromUtf8(GetParam().notice)));
    EXPECT_TRUE(waitUntil([&] { return !text().shown().filter(expected).isEmpty(); },
                          std::chrono::seconds(5)))
        << text().shown().join(u'\n').toStdString();
}

// Nothing but what was asked for, and the saved defaults as if nobody had been asked.
INSTANTIATE_TEST_SUITE_P(
    Table, ChoiceNotices,
    ::testing::Values(
        NoticeCase{"Copy", "saveToFolder", XK_1, "Image copied"},
        NoticeCase{"Save", "copyToClipboard", XK_3, savedFile},
        NoticeCase{"OneDefault", "copyToClipboard", XK_4, "Image copied"},
        NoticeCase{"AllDefaults", "copyToClipboard, saveToFolder", XK_Return, savedFileAndCopy},
        NoticeCase{"NoDefaults", "@Invalid()", XK_4, "No after-capture actions selected"}),
    [](const auto& row) { return std::string(row.param.what); });

} // namespace

} // namespace snapvane::testing
