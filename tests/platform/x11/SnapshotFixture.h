#pragma once

#include "ForeignWindow.h"
#include "X11TestDesktop.h"
#include "base/AppIdentity.h"
#include "base/Await.h"
#include "capture/DisplaySnapshotStore.h"
#include "platform/x11/X11Capturer.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Screens.h"
#include "support/PictureCompare.h"
#include "support/QtPrinting.h"
#include "support/ScreenGrab.h"

#include <gtest/gtest.h>

#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

#include <memory>

namespace snapvane {

/// A window of this program, of one colour that is nowhere else.
class OwnWindow : public QWidget {
public:
    static constexpr QRgb color = 0xffff00feU;

    explicit OwnWindow(Qt::WindowFlags flags, bool translucent = false) {
        setWindowFlags(flags | Qt::WindowDoesNotAcceptFocus);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_TranslucentBackground, translucent);
        m_translucent = translucent;
        setWindowTitle(QStringLiteral("Snapvane Own"));
        winId();
        x11::setWindowIdentity(x11::qtServer(), id(), "Snapvane Own");
    }

    xcb_window_t id() const { return static_cast<xcb_window_t>(winId()); }
    bool isPainted() const { return m_painted; }

protected:
    void paintEvent(QPaintEvent*) override {
        QColor fill(color);
        fill.setAlphaF(m_translucent ? 0.5F : 1.0F);
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(rect(), fill);
        m_painted = true;
    }

private:
    bool m_translucent = false;
    bool m_painted = false;
};

inline constexpr Qt::WindowFlags unmanaged =
    Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint;

/// Takes snapshots of the test's desktop, as the program does, and compares them with the glass.
class SnapshotTest : public ::testing::Test {
protected:
    static const testing::XcbConnection& connection() { return testDesktop().connection(); }
    static QRect desktop() { return testDesktop().rect(); }
    static QImage glass() { return testing::grabScreen(connection(), desktop()); }
    /// Once all that has happened so far is on it.
    QImage settledGlass() {
        m_capturer.grabber().waitForGlass(m_screens.nativeFrames());
        return testing::grabSettledScreen(connection(), desktop());
    }

    /// A window of ours, on the screen when this returns.
    static std::unique_ptr<OwnWindow> showOwn(const QRect& rect, bool translucent = false,
                                              Qt::WindowFlags flags = unmanaged) {
        auto window = std::make_unique<OwnWindow>(flags, translucent);
        window->setGeometry(rect);
        window->show();
        EXPECT_TRUE(waitForEvents([&window] { return window->isPainted(); }));
        return window;
    }

    DisplaySnapshotList snapshots() {
        return await(DisplaySnapshotStore::captureAllDisplays(
            {&m_capturer, &m_screens, QLatin1String(applicationIdentifier)}));
    }
    /// All snapshots as one picture of the desktop; for screens at scale 1.
    QImage snapshot() {
        QImage whole(desktop().size(), QImage::Format_RGB32);
        whole.fill(0);
        QPainter painter(&whole);
        const DisplaySnapshotList list = snapshots();
        for (std::size_t i = 0; i < list.size(); ++i) {
            painter.drawImage(testDesktop().screenRect(static_cast<int>(i)).topLeft(),
                              list[i].cgImage);
        }
        return whole;
    }

    std::vector<ShareableWindow> windows(const ContentQuery& query = {}) {
        return await(m_capturer.shareableContent(query)).windows;
    }
    std::optional<ShareableWindow> listed(xcb_window_t id, const ContentQuery& query = {}) {
        for (const ShareableWindow& window : windows(query)) {
            if (window.id == id) {
                return window;
            }
        }
        return std::nullopt;
    }

    x11::X11Screens m_screens;
    x11::X11Capturer m_capturer{m_screens};
};

/// How many pixels have our windows' colour.
inline int ownPixels(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += (picture.pixel(x, y) | 0xff000000U) == OwnWindow::color ? 1 : 0;
        }
    }
    return count;
}

/// The largest difference of a channel anywhere.
inline int largestDifference(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) {
        return 256;
    }
    int largest = 0;
    const QImage left = one.convertToFormat(QImage::Format_RGB32);
    const QImage right = other.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < left.height(); ++y) {
        const auto* leftRow = reinterpret_cast<const QRgb*>(left.constScanLine(y));
        const auto* rightRow = reinterpret_cast<const QRgb*>(right.constScanLine(y));
        for (int x = 0; x < left.width(); ++x) {
            const QRgb a = leftRow[x];
            const QRgb b = rightRow[x];
            if (((a ^ b) & 0xffffffU) == 0) {
                continue;
            }
            largest = std::max({largest, std::abs(qRed(a) - qRed(b)),
                                std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
        }
    }
    return largest;
}

/// Whether no channel of a pixel differs by more than the tolerance: blending rounds.
inline ::testing::AssertionResult closePicture(const QImage& expected, const QImage& actual,
                                               int tolerance, const QString& name) {
    const int difference = largestDifference(expected, actual);
    if (difference <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    return testing::samePicture(expected, actual, name) << "; by up to " << difference;
}

} // namespace snapvane
