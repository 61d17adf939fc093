#pragma once

#include "X11TestDesktop.h"
#include "platform/x11/X11Keyboard.h"
#include "support/Injector.h"
#include "support/ServerKeys.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace snapvane {

namespace serverKey = testing::serverKey;

/// A keyboard that is a US one again after each test, with no lock on.
class KeyboardTest : public ::testing::Test {
public:
    KeyboardTest() {
        QObject::connect(&m_keyboard, &x11::X11Keyboard::mappingChanged, &m_keyboard,
                         [this] { ++m_mappingChanges; });
    }
    ~KeyboardTest() override {
        for (const xcb_keycode_t key : m_locked) {
            tap(key);
        }
        if (m_remapped) {
            testDesktop().run(QStringLiteral("setxkbmap"), {QStringLiteral("us")});
            settle();
        }
    }

protected:
    /// Has the keyboard changed by that program, and returns when we know.
    void remap(const QString& program, const QStringList& arguments) {
        m_remapped = true;
        const int before = m_mappingChanges;
        testDesktop().run(program, arguments);
        EXPECT_TRUE(waitForEvents([&] { return m_mappingChanges > before; }));
        settle();
    }
    void setLayout(const QString& layout) { remap(QStringLiteral("setxkbmap"), {layout}); }

    testing::Injector hands() { return testing::Injector(testDesktop().connection()); }
    void down(std::initializer_list<xcb_keycode_t> keys) {
        for (const xcb_keycode_t key : keys) {
            hands().pressKeyCode(key);
        }
    }
    void up(std::initializer_list<xcb_keycode_t> keys) {
        for (const xcb_keycode_t key : keys) {
            hands().releaseKeyCode(key);
        }
    }
    void tap(xcb_keycode_t key) {
        down({key});
        up({key});
    }
    /// Turned off again after the test.
    void lock(xcb_keycode_t key) {
        tap(key);
        m_locked.push_back(key);
    }

    x11::X11Keyboard m_keyboard;
    int m_mappingChanges = 0;

private:
    bool m_remapped = false;
    std::vector<xcb_keycode_t> m_locked;
};

} // namespace snapvane
