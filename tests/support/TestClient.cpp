#include "TestClient.h"

#include "TestPattern.h"
#include "Wait.h"
#include "X11Probe.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

ChildProcess::Spec specFor(const VirtualDesktop& desktop, const TestClient::Options& options) {
    const QString geometry = u"%1x%2+%3+%4"_s.arg(options.rect.width())
                                 .arg(options.rect.height())
                                 .arg(options.rect.x())
                                 .arg(options.rect.y());
    ChildProcess::Spec spec;
    spec.program = QStringLiteral(SNAPVANE_TEST_CLIENT);
    spec.arguments = {u"--mode"_s,  options.mode,  u"--geometry"_s, geometry,
                      u"--title"_s, options.title, u"--seed"_s,     QString::number(options.seed)};
    if (options.overrideRedirect) {
        spec.arguments << u"--override-redirect"_s;
    }
    spec.environment = desktop.environment();
    spec.outputFile = desktop.folders().log(u"client"_s);
    return spec;
}

} // namespace

TestClient::TestClient(const VirtualDesktop& desktop, const Options& options)
    : m_connection(desktop.connection()), m_process(specFor(desktop, options)) {
    const X11Probe probe(m_connection);
    require("the test client's window", [&] {
        const auto found = probe.viewableWindowNamed(options.title);
        m_window = found ? found->id : xcb_window_t(XCB_WINDOW_NONE);
        return found && probe.number(found->id, paintedProperty).has_value();
    });
}

QRect TestClient::rect() const {
    const auto geometryCookie = xcb_get_geometry(m_connection, m_window);
    const auto placeCookie =
        xcb_translate_coordinates(m_connection, m_window, m_connection.root(), 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, geometryCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(m_connection, placeCookie, nullptr));
    if (!geometry || !place) {
        return {};
    }
    return {place->dst_x, place->dst_y, geometry->width, geometry->height};
}

uint32_t TestClient::frame() const {
    return X11Probe(m_connection).number(m_window, frameProperty).value_or(0);
}

} // namespace snapvane::testing
