#pragma once

#include <QGuiApplication>
#include <QPalette>

namespace snapvane {

/// The application's palette in the colours of a light or a dark desktop; the one before comes back
/// with the end of the object.
class TestPalette {
public:
    TestPalette(const QColor& text, const QColor& window) : m_before(QGuiApplication::palette()) {
        QPalette palette = m_before;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Disabled, QPalette::WindowText, disabledText());
        palette.setColor(QPalette::Highlight, highlight());
        palette.setColor(QPalette::HighlightedText, highlightedText());
        QGuiApplication::setPalette(palette);
    }
    ~TestPalette() { QGuiApplication::setPalette(m_before); }
    TestPalette(const TestPalette&) = delete;
    TestPalette& operator=(const TestPalette&) = delete;

    static QColor disabledText() { return QColor(0x70, 0x71, 0x72); }
    static QColor highlight() { return QColor(0x11, 0x22, 0xee); }
    static QColor highlightedText() { return QColor(0xfe, 0xed, 0xdc); }

private:
    QPalette m_before;
};

} // namespace snapvane
