#include "platform/x11/X11Panels.h"

#include "platform/x11/PanelWindow.h"
#include "platform/x11/RoundedShape.h"
#include "platform/x11/StackingOrder.h"
#include "platform/x11/X11ScreenPanel.h"
#include "platform/x11/X11Screens.h"

#include <QWidget>

namespace snapvane::x11 {

namespace {

class X11Panel : public Panel {
public:
    X11Panel(X11Screens& screens, std::unique_ptr<QWidget> content, const PanelOptions& options)
        : m_screens(screens), m_content(std::move(content)), m_options(options),
          m_translucent(hasCompositor(qtServer())) {
        PanelWindow::prepare(*m_content, options.name, options.input, m_translucent);
    }

    ~X11Panel() override { StackingOrder::remove(window()); }

    void showAt(GlobalPoint origin) override {
        place(origin);
        shape();
        m_content->show();
        // Qt places windows by its own, rounded, coordinates when it maps them.
        place(origin);
        raise();
    }

    void show() override {
        shape();
        m_content->show();
        raise();
    }

    void hide() override {
        m_content->hide();
        StackingOrder::remove(window());
    }

    bool isVisible() const override { return m_content->isVisible(); }
    bool isCurrent() const override { return m_translucent == hasCompositor(qtServer()); }

private:
    xcb_window_t window() const { return PanelWindow::of(*m_content); }

    void raise() {
        StackingOrder::raise(qtServer(), window(), m_options.level);
        xcb_flush(qtServer().connection);
    }

    void shape() {
        if (m_options.cornerRadius <= 0) {
            return;
        }
        setRoundedShape(
            qtServer(), window(),
            {qRound(m_content->width() * m_scale), qRound(m_content->height() * m_scale)},
            m_options.cornerRadius * m_scale,
            // A compositor draws its shadow around the shape.
            m_translucent ? ShapeEdge::Touched : ShapeEdge::Centres);
    }

    void place(GlobalPoint origin) {
        const ScreenList screens = m_screens.list();
        const GlobalSize size = {static_cast<double>(m_content->width()),
                                 static_cast<double>(m_content->height())};
        const GlobalRect area = {origin, size};
        auto screen = screenContaining(screens, {area.midX(), area.midY()});
        if (!screen) {
            screen = screens.empty() ? std::nullopt : std::optional(screens.front());
        }
        if (!screen) {
            return;
        }
        m_scale = screen->backingScale;
        const PixelRect pixels = ScreenMapping::pixelRect(*screen, area);
        PanelWindow::place(*m_content, *screen, {pixels.x, pixels.y});
    }

    X11Screens& m_screens;
    std::unique_ptr<QWidget> m_content;
    PanelOptions m_options;
    bool m_translucent;
    // Of the screen that the panel is put on; Qt goes by the one it was on before until it shows.
    double m_scale = 1;
};

} // namespace

std::unique_ptr<Panel> X11Panels::create(std::unique_ptr<QWidget> content,
                                         const PanelOptions& options) {
    return std::make_unique<X11Panel>(m_screens, std::move(content), options);
}

std::unique_ptr<ScreenPanel> X11Panels::cover(std::unique_ptr<QWidget> content,
                                              const Screen& screen,
                                              const ScreenPanelOptions& options) {
    return std::make_unique<X11ScreenPanel>(m_grabber, m_screens.list(), std::move(content), screen,
                                            options);
}

} // namespace snapvane::x11
