#include "platform/null/NullPlatform.h"

#include "platform/UsKeyboardLayout.h"
#include "platform/null/ImageCanvas.h"

#include <QKeyEvent>
#include <QWidget>

#include <cmath>

namespace snapvane::null {

namespace {

QImage plainPicture(const NullCapturer::Shot& shot) {
    const PixelSize size = shot.configuration.outputSize;
    QImage image(size.width, size.height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    return image;
}

void throwIfSet(const std::exception_ptr& failure) {
    if (failure) {
        std::rethrow_exception(failure);
    }
}

} // namespace

QCoro::Task<ShareableContent> NullCapturer::shareableContent(ContentQuery query) {
    queries.push_back(query);
    throwIfSet(contentFailure);
    // A member that is returned as it stands is moved from.
    ShareableContent answer = content;
    if (!query.listsWindows) {
        answer.windows.clear();
    }
    co_return answer;
}

QCoro::Task<QImage> NullCapturer::screenshot(ContentFilter filter,
                                             StreamConfiguration configuration) {
    shots.push_back({filter, configuration});
    throwIfSet(screenshotFailure);
    co_return render ? render(shots.back()) : plainPicture(shots.back());
}

NullOverlaySession::NullOverlaySession(NullOverlayHost& host, const OverlayOptions& overlayOptions,
                                       OverlayClient& overlayClient)
    : options(overlayOptions), client(overlayClient), m_host(host) {
    for (const Screen& screen : options.screens) {
        QImage surface(screen.nativeSize().width, screen.nativeSize().height,
                       QImage::Format_ARGB32_Premultiplied);
        surface.fill(veilColor(options.dimAmount));
        surfaces.push_back(surface);
    }
    m_host.session = this;
}

NullOverlaySession::~NullOverlaySession() {
    m_host.session = nullptr;
    if (m_host.onClose) {
        m_host.onClose(concealed);
    }
}

void NullOverlaySession::orderFront() {
    shown = true;
    if (m_host.onOrderFront) {
        m_host.onOrderFront();
    }
}

void NullOverlaySession::repaint(std::size_t screenIndex, const QRegion& region) {
    QImage& surface = surfaces.at(screenIndex);
    const QRegion visible = region.intersected(surface.rect());
    ImageCanvas canvas(surface, options.dimAmount, visible);
    client.paintOverlay(screenIndex, canvas, visible);
    painted.push_back(visible);
}

void NullOverlaySession::conceal() {
    concealed = true;
}

std::unique_ptr<OverlaySession> NullOverlayHost::open(const OverlayOptions& options,
                                                      OverlayClient& client) {
    if (!capable) {
        return nullptr;
    }
    ++opened;
    return std::make_unique<NullOverlaySession>(*this, options, client);
}

QCoro::Task<> NullOverlayHost::menusClosed() {
    ++menuWaits;
    co_return;
}

NullPanel::NullPanel(NullPanels& owner, std::unique_ptr<QWidget> newContent,
                     PanelOptions newOptions)
    : content(std::move(newContent)), options(std::move(newOptions)), m_owner(owner) {
    m_owner.panels.push_back(this);
}

NullPanel::~NullPanel() {
    std::erase(m_owner.panels, this);
}

void NullPanel::showAt(GlobalPoint newOrigin) {
    origin = newOrigin;
    show();
}

void NullPanel::show() {
    visible = true;
    ++raised;
}

std::unique_ptr<Panel> NullPanels::create(std::unique_ptr<QWidget> content,
                                          const PanelOptions& options) {
    ++created;
    return std::make_unique<NullPanel>(*this, std::move(content), options);
}

NullScreenPanel::NullScreenPanel(NullPanels& owner, std::unique_ptr<QWidget> newContent,
                                 const Screen& newScreen, ScreenPanelOptions newOptions)
    : content(std::move(newContent)), screen(newScreen), options(std::move(newOptions)),
      m_owner(owner) {
    content->resize(static_cast<int>(std::ceil(screen.frame.size.width)),
                    static_cast<int>(std::ceil(screen.frame.size.height)));
    if (!owner.translucent) {
        picture =
            QImage(screen.nativeSize().width, screen.nativeSize().height, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        picture.setDevicePixelRatio(screen.backingScale);
    }
    m_owner.screenPanels.push_back(this);
}

NullScreenPanel::~NullScreenPanel() {
    std::erase(m_owner.screenPanels, this);
}

void NullScreenPanel::takeFocus() {
    ++focused;
    holdsFocus = true;
}

std::unique_ptr<ScreenPanel> NullPanels::cover(std::unique_ptr<QWidget> content,
                                               const Screen& screen,
                                               const ScreenPanelOptions& options) {
    ++created;
    return std::make_unique<NullScreenPanel>(*this, std::move(content), screen, options);
}

std::optional<QString> NullKeyboardLayout::translate(std::uint16_t keyCode) const {
    return keys ? keys(keyCode) : usCharacter(keyCode);
}

PressedKey NullKeyboardLayout::pressed(const QKeyEvent& event) const {
    return {static_cast<int>(event.nativeScanCode()), event.text(),
            event.key() == Qt::Key_Escape || event.key() == Qt::Key_Cancel};
}

bool NullWorkspace::open(const QUrl& url) {
    opened.push_back(url);
    return opens;
}

bool NullWorkspace::openPrivacyPanel() {
    ++privacyPanels;
    return opens;
}

void NullLoginItem::registerItem() {
    throwIfSet(failure);
    registered = true;
}

void NullLoginItem::unregisterItem() {
    throwIfSet(failure);
    registered = false;
}

} // namespace snapvane::null
