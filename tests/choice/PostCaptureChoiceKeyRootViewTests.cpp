#include "choice/PostCaptureChoiceKeyRootView.h"

#include "choice/PostCaptureChoiceCardHostView.h"
#include "choice/PostCaptureChoiceDimView.h"
#include "platform/null/NullPlatform.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using Action = PostCaptureMenuAction;

class RecordingHandler : public PostCaptureChoiceKeyHandling {
public:
    void commit(PostCaptureMenuAction action) override { committed.push_back(action); }
    void dismiss() override { ++dismissed; }

    std::vector<PostCaptureMenuAction> committed;
    int dismissed = 0;
};

QKeyEvent press(const QString& text, int keyCode = 0, Qt::Key key = Qt::Key_unknown) {
    return QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, static_cast<quint32>(keyCode), 0, 0,
                     text);
}

class KeyRootViewTest : public ::testing::Test {
protected:
    KeyRootViewTest() { m_view.setKeyHandler(m_handler.get()); }

    QWidget* install(QSize size) {
        auto card = std::make_unique<QWidget>();
        card->resize(size);
        QWidget* shown = card.get();
        m_view.install(std::move(card));
        return shown;
    }

    null::NullKeyboardLayout m_layout;
    std::unique_ptr<RecordingHandler> m_handler = std::make_unique<RecordingHandler>();
    PostCaptureChoiceKeyRootView m_view{m_layout};
};

struct Choice {
    const char* text;
    int keyCode;
    Action action;
};

class ChoosingKeys : public KeyRootViewTest, public ::testing::WithParamInterface<Choice> {};

struct Other {
    const char* text;
    int keyCode;
};

class OtherKeys : public KeyRootViewTest, public ::testing::WithParamInterface<Other> {};

} // namespace

// Key codes of another key on purpose where the text decides.
INSTANTIATE_TEST_SUITE_P(KeyRootView, ChoosingKeys,
                         ::testing::Values(Choice{"1", 18, Action::copyToClipboard},
                                           Choice{"1", 83, Action::copyToClipboard},
                                           Choice{"2", 19, Action::uploadFerrybox},
                                           Choice{"2", 0, Action::uploadFerrybox},
                                           Choice{"3", 20, Action::saveToFolder},
                                           Choice{"4", 21, Action::runSavedDefaults},
                                           Choice{"\r", 36, Action::runSavedDefaults},
                                           Choice{"", 36, Action::runSavedDefaults},
                                           // Text goes before the place of the key.
                                           Choice{"1", 36, Action::copyToClipboard},
                                           Choice{"3", 53, Action::saveToFolder}));

TEST_P(ChoosingKeys, CommitTheirAction) {
    const Choice& choice = GetParam();
    EXPECT_TRUE(m_view.tryHandle(press(QString::fromUtf8(choice.text), choice.keyCode)));
    EXPECT_EQ(m_handler->committed, std::vector{choice.action});
    EXPECT_EQ(m_handler->dismissed, 0);
}

TEST_F(KeyRootViewTest, EscapeDismisses) {
    EXPECT_TRUE(m_view.tryHandle(press(u"\u001b"_s, 53)));
    EXPECT_EQ(m_handler->dismissed, 1);
    EXPECT_TRUE(m_handler->committed.empty());
}

// The last one is Enter on the keypad.
INSTANTIATE_TEST_SUITE_P(KeyRootView, OtherKeys,
                         ::testing::Values(Other{"5", 23}, Other{"0", 29}, Other{"!", 18},
                                           Other{"a", 0}, Other{" ", 49}, Other{"12", 0},
                                           Other{"", 48}, Other{"\r", 76}));

TEST_P(OtherKeys, AreLeftAlone) {
    EXPECT_FALSE(m_view.tryHandle(press(QString::fromUtf8(GetParam().text), GetParam().keyCode)));
    EXPECT_TRUE(m_handler->committed.empty());
    EXPECT_EQ(m_handler->dismissed, 0);
}

TEST_F(KeyRootViewTest, AHandledKeyIsHandledWithoutAnybodyThere) {
    m_handler.reset();
    EXPECT_TRUE(m_view.tryHandle(press(u"1"_s, 18)));
    EXPECT_TRUE(m_view.tryHandle(press({}, 36)));
    EXPECT_TRUE(m_view.tryHandle(press({}, 53)));
    EXPECT_FALSE(m_view.tryHandle(press(u"x"_s, 7)));
}

TEST_F(KeyRootViewTest, TheCancelCommandDismissesFromAnyKey) {
    const QKeyEvent remapped = press({}, 57, Qt::Key_Escape);
    EXPECT_FALSE(m_view.tryHandle(remapped));
    EXPECT_TRUE(m_view.tryCancel(remapped));
    EXPECT_EQ(m_handler->dismissed, 1);
    EXPECT_FALSE(m_view.tryCancel(press(u"x"_s, 7)));
}

TEST_F(KeyRootViewTest, KeyEventsAreTakenOrPassedOn) {
    QKeyEvent taken = press(u"2"_s, 19);
    QApplication::sendEvent(&m_view, &taken);
    EXPECT_TRUE(taken.isAccepted());
    EXPECT_EQ(m_handler->committed, std::vector{Action::uploadFerrybox});
    QKeyEvent other = press(u"x"_s, 7);
    QApplication::sendEvent(&m_view, &other);
    EXPECT_FALSE(other.isAccepted());
    QKeyEvent cancel = press({}, 57, Qt::Key_Escape);
    QApplication::sendEvent(&m_view, &cancel);
    EXPECT_EQ(m_handler->dismissed, 1);
}

TEST_F(KeyRootViewTest, CentresTheCardAboveTheDim) {
    m_view.resize(1000, 800);
    const QWidget* card = install({420, 578});
    EXPECT_EQ(QRect(card->mapTo(&m_view, QPoint(0, 0)), card->size()), QRect(290, 111, 420, 578));
    EXPECT_EQ(m_view.dimView().geometry(), m_view.rect());
    EXPECT_EQ(m_view.childAt(500, 400), card);
    EXPECT_EQ(m_view.childAt(289, 400), &m_view.dimView());
}

TEST_F(KeyRootViewTest, KeepsTheCardInTheMiddleWhenItsSizeChanges) {
    const QWidget* card = install({100, 50});
    m_view.show();
    m_view.resize(300, 250);
    EXPECT_EQ(card->mapTo(&m_view, QPoint(0, 0)), QPoint(100, 100));
    m_view.resize(500, 150);
    EXPECT_EQ(card->mapTo(&m_view, QPoint(0, 0)), QPoint(200, 50));
    EXPECT_EQ(m_view.dimView().geometry(), m_view.rect());
}

TEST_F(KeyRootViewTest, InstallingAgainReplacesTheViews) {
    m_view.resize(300, 200);
    const QPointer<QWidget> first = install({100, 50});
    const QWidget* second = install({60, 60});
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(m_view.findChildren<PostCaptureChoiceDimView*>().size(), 1);
    EXPECT_EQ(m_view.findChildren<PostCaptureChoiceCardHostView*>().size(), 1);
    EXPECT_EQ(m_view.childAt(150, 100), second);
}

TEST_F(KeyRootViewTest, TheHostIsAsLargeAsTheCard) {
    m_view.resize(300, 200);
    const QWidget* card = install({100, 50});
    EXPECT_EQ(card->parentWidget()->geometry(), QRect(100, 75, 100, 50));
    EXPECT_EQ(card->pos(), QPoint(0, 0));
}

TEST_F(KeyRootViewTest, ClicksOnTheDimAreSwallowed) {
    m_view.resize(300, 200);
    install({100, 50});
    for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, QPointF(5, 5), QPointF(5, 5), button, button, Qt::NoModifier);
            event.ignore();
            QApplication::sendEvent(&m_view.dimView(), &event);
            EXPECT_TRUE(event.isAccepted());
        }
    }
    EXPECT_TRUE(m_handler->committed.empty());
    EXPECT_EQ(m_handler->dismissed, 0);
}

TEST_F(KeyRootViewTest, ClicksOnTheCardsEmptyPlacesAreSwallowed) {
    m_view.resize(300, 200);
    QWidget* host = install({100, 50})->parentWidget();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(host, &event);
        EXPECT_TRUE(event.isAccepted());
    }
}

TEST_F(KeyRootViewTest, TheDimIsBlackAtEighteenPercent) {
    m_view.resize(40, 40);
    install({2, 2});
    QImage image(m_view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    m_view.dimView().render(&image, {}, {}, QWidget::DrawChildren);
    EXPECT_EQ(image.pixelColor(3, 3).alpha(), qRound(0.18 * 255));
    EXPECT_EQ(image.pixelColor(3, 3).rgb() & RGB_MASK, 0U);
}

TEST_F(KeyRootViewTest, TheDimIsPaintedOverTheBackdrop) {
    QImage backdrop(60, 60, QImage::Format_RGB32);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x) {
            backdrop.setPixel(x, y, qRgb(4 * x, 4 * y, (x + y) % 2 * 255));
        }
    }
    backdrop.setDevicePixelRatio(1.5);
    m_view.resize(40, 40);
    install({2, 2});
    m_view.dimView().setBackdrop(backdrop);
    QImage image(60, 60, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1.5);
    image.fill(Qt::transparent);
    m_view.dimView().render(&image, {}, {}, QWidget::DrawChildren);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x) {
            const QColor seen = image.pixelColor(x, y);
            const QColor real = backdrop.pixelColor(x, y);
            ASSERT_NEAR(seen.red(), real.red() * 0.82, 1) << x << ", " << y;
            ASSERT_NEAR(seen.green(), real.green() * 0.82, 1);
            ASSERT_NEAR(seen.blue(), real.blue() * 0.82, 1);
            ASSERT_EQ(seen.alpha(), 255);
        }
    }
}

TEST_F(KeyRootViewTest, TellsAssistiveTechnologyWhatItIs) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&m_view);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Dialog);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"After capture"_s);
    EXPECT_EQ(m_view.focusPolicy(), Qt::StrongFocus);
}

} // namespace snapvane
