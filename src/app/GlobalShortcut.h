#pragma once

#include <functional>

class QAction;

namespace snapvane {

/// The capture shortcut as the delegate sees it. Main thread.
class GlobalShortcut {
public:
    virtual ~GlobalShortcut() = default;

    /// Has the handler called each time the shortcut is released.
    virtual void onKeyUp(std::function<void()> handler) = 0;
    virtual void enable() = 0;
    virtual void disable() = 0;
    /// Has the menu entry show whatever shortcut is recorded.
    virtual void bindMenuItem(QAction& action) = 0;
};

/// There is no shortcut; the menu entry shows none.
class NoGlobalShortcut : public GlobalShortcut {
public:
    void onKeyUp(std::function<void()>) override {}
    void enable() override {}
    void disable() override {}
    void bindMenuItem(QAction&) override {}
};

} // namespace snapvane
