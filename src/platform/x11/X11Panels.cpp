#include "platform/x11/X11Panels.h"

#include "platform/x11/RoundedShape.h"
#include "platform/x11/StackingOrder.h"
#include "platform/x11/X11Screens.h"

#include <QWidget>
#include <QWindow>

#include <array>

namespace snapvane::x11 {

namespace {

Qt::WindowFlags windowFlags(PanelInput input) {
    Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                            Qt::NoDropShadowWindowHint;
    if (input != PanelInput::PointerAndKeyboard) {
        flags |= Qt::WindowDoesNotAcceptFocus;
    }
    if (input == PanelInput::ClickThrough) {
        flags |= Qt::WindowTransparentForInput;
    }
    return flags;
}

class X11Panel : public Panel {
public:
    X11Panel(X11Screens& screens, std::unique_ptr<QWidget> content, const PanelOptions& options)
        : m_screens(screens), m_content(std::move(content)), m_options(options),
          m_translucent(hasCompositor(qtServer())) {
        m_content->setWindowFlags(windowFlags(options.input));
        m_content->setWindowTitle(options.name);
        m_content->setAttribute(Qt::WA_ShowWithoutActivating);
        m_content->setAttribute(Qt::WA_TranslucentBackground, m_translucent);
        m_content->winId();
        setWindowIdentity(qtServer(), window(), options.name.toUtf8());
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
    xcb_window_t window() const { return static_cast<xcb_window_t>(m_content->winId()); }

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
        // Qt takes the scale from the screen that it believes the window to be on: the one whose
        // unscaled corner, in its logical coordinates, the window is moved near to.
        const DevicePoint corner = screen->nativeFrame.origin;
        m_content->move(corner.x + qRound(area.minX() - screen->frame.minX()),
                        corner.y + qRound(screen->frame.maxY() - area.maxY()));
        const DeviceRect target =
            ScreenMapping::deviceRect(*screen, ScreenMapping::pixelRect(*screen, area));
        const std::array<std::uint32_t, 2> values = {static_cast<std::uint32_t>(target.origin.x),
                                                     static_cast<std::uint32_t>(target.origin.y)};
        xcb_configure_window(qtServer().connection, window(),
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values.data());
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

} // namespace snapvane::x11
