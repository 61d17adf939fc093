#pragma once

#include "platform/Capturer.h"
#include "platform/KeyboardLayout.h"
#include "platform/LoginItem.h"
#include "platform/MotionPreference.h"
#include "platform/Overlay.h"
#include "platform/Panels.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/Screens.h"
#include "platform/TrayHost.h"
#include "platform/Workspace.h"
#include "platform/null/NullHotKeys.h"
#include "platform/null/NullSecretStore.h"
#include "platform/null/NullSprites.h"

#include <QUrl>

#include <exception>
#include <functional>

/// A desktop that exists in memory only. It keeps the program's logic runnable anywhere: what the
/// program does to it can be read, what a user would do can be called. Main thread.
namespace snapvane::null {

class NullScreens : public Screens {
    Q_OBJECT

public:
    ScreenList list() override { return screens; }
    GlobalPoint pointerLocation() override { return pointer; }

    /// One screen of 1920 × 1080 points at scale 1 to begin with.
    ScreenList screens =
        ScreenMapping::layOut({{1, QStringLiteral("Null"), {{0, 0}, {1920, 1080}}, 1, {}}});
    GlobalPoint pointer;
};

class NullCapturer : public ScreenCapturer {
public:
    struct Shot {
        ContentFilter filter;
        StreamConfiguration configuration;
    };

    bool preflightAccess() override { return access; }
    QCoro::Task<ShareableContent> shareableContent(ContentQuery query) override;
    QCoro::Task<QImage> screenshot(ContentFilter filter,
                                   StreamConfiguration configuration) override;

    bool access = true;
    ShareableContent content;
    /// Thrown by the query and the screenshot when set.
    std::exception_ptr contentFailure;
    std::exception_ptr screenshotFailure;
    /// Makes the picture; a plain one of the size that was asked for to begin with.
    std::function<QImage(const Shot&)> render;
    std::vector<ContentQuery> queries;
    std::vector<Shot> shots;
};

class NullOverlayHost;
class NullPanels;

/// A session whose surfaces are images.
class NullOverlaySession : public OverlaySession {
public:
    NullOverlaySession(NullOverlayHost& host, const OverlayOptions& options, OverlayClient& client);
    ~NullOverlaySession() override;

    void orderFront() override;
    void repaint(std::size_t screenIndex, const QRegion& region) override;
    void conceal() override;

    OverlayOptions options;
    OverlayClient& client;
    bool shown = false;
    bool concealed = false;
    std::vector<QImage> surfaces;
    /// The regions that were painted, the newest last.
    std::vector<QRegion> painted;

private:
    NullOverlayHost& m_host;
};

class NullOverlayHost : public OverlayHost {
public:
    std::unique_ptr<OverlaySession> open(const OverlayOptions& options,
                                         OverlayClient& client) override;
    QCoro::Task<> menusClosed() override;

    /// False makes `open` fail.
    bool capable = true;
    /// Called when a session's surfaces are put on the screen.
    std::function<void()> onOrderFront;
    /// Called when a session goes; tells whether it was concealed.
    std::function<void(bool concealed)> onClose;
    NullOverlaySession* session = nullptr;
    int opened = 0;
    int menuWaits = 0;
};

/// Keeps the widget where nobody sees it. Belongs to who made it, who may ask after it here.
class NullPanel : public Panel {
public:
    NullPanel(NullPanels& owner, std::unique_ptr<QWidget> newContent, PanelOptions newOptions);
    ~NullPanel() override;

    void showAt(GlobalPoint newOrigin) override;
    void show() override;
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    bool isCurrent() const override { return current; }

    std::unique_ptr<QWidget> content;
    PanelOptions options;
    std::optional<GlobalPoint> origin;
    bool visible = false;
    bool current = true;
    int raised = 0;

private:
    NullPanels& m_owner;
};

/// The same over a screen.
class NullScreenPanel : public ScreenPanel {
public:
    NullScreenPanel(NullPanels& owner, std::unique_ptr<QWidget> newContent, const Screen& newScreen,
                    ScreenPanelOptions newOptions);
    ~NullScreenPanel() override;

    const QImage& backdrop() const override { return picture; }
    bool fades() const override { return picture.isNull(); }
    void setOpacity(double newOpacity) override { opacity = newOpacity; }
    void orderFront() override { ++raised; }
    void takeFocus() override;
    bool hasFocus() const override { return holdsFocus; }

    std::unique_ptr<QWidget> content;
    Screen screen;
    ScreenPanelOptions options;
    QImage picture;
    double opacity = 0;
    int raised = 0;
    int focused = 0;
    bool holdsFocus = false;

private:
    NullPanels& m_owner;
};

class NullPanels : public Panels {
public:
    std::unique_ptr<Panel> create(std::unique_ptr<QWidget> content,
                                  const PanelOptions& options) override;
    std::unique_ptr<ScreenPanel> cover(std::unique_ptr<QWidget> content, const Screen& screen,
                                       const ScreenPanelOptions& options) override;

    /// Those that there are, the newest last.
    std::vector<NullPanel*> panels;
    std::vector<NullScreenPanel*> screenPanels;
    /// False makes screen panels that show a picture of the screen.
    bool translucent = true;
    int created = 0;
};

/// A US keyboard, unless told otherwise.
class NullKeyboardLayout : public KeyboardLayout {
    Q_OBJECT

public:
    std::optional<QString> translate(std::uint16_t keyCode) const override;
    /// Takes the event's native scan code for a Carbon code and its text as it is.
    PressedKey pressed(const QKeyEvent& event) const override;

    /// Replaces the US keyboard when set.
    std::function<std::optional<QString>(std::uint16_t keyCode)> keys;
};

class NullPasteboard : public Pasteboard {
public:
    void write(const PasteboardContents& contents) override { writes.push_back(contents); }

    std::vector<PasteboardContents> writes;
};

class NullWorkspace : public Workspace {
public:
    bool open(const QUrl& url) override;
    bool openPrivacyPanel() override;
    void beep() override { ++beeps; }

    bool opens = true;
    std::vector<QUrl> opened;
    int privacyPanels = 0;
    int beeps = 0;
};

class NullLoginItem : public LoginItem {
public:
    void registerItem() override;
    void unregisterItem() override;
    bool isRegistered() const override { return registered; }

    bool registered = false;
    std::exception_ptr failure;
};

class NullTrayHost : public TrayHost {
    Q_OBJECT

public:
    bool isPresent() const override { return present; }

    bool present = false;
};

class NullMotionPreference : public MotionPreference {
public:
    bool isReduced() const override { return reduced; }

    bool reduced = false;
};

class NullPlatform : public Platform {
public:
    QString name() const override { return QStringLiteral("null"); }
    NullScreens& screens() override { return m_screens; }
    NullCapturer& capturer() override { return m_capturer; }
    NullOverlayHost& overlays() override { return m_overlays; }
    NullPanels& panels() override { return m_panels; }
    NullSprites& sprites() override { return m_sprites; }
    NullHotKeys& hotKeys() override { return m_hotKeys; }
    NullKeyboardLayout& keyboardLayout() override { return m_keyboardLayout; }
    NullPasteboard& pasteboard() override { return m_pasteboard; }
    NullWorkspace& workspace() override { return m_workspace; }
    NullLoginItem& loginItem() override { return m_loginItem; }
    NullSecretStore& secretStore() override { return m_secretStore; }
    NullTrayHost& trayHost() override { return m_trayHost; }
    NullMotionPreference& motionPreference() override { return m_motionPreference; }

private:
    NullScreens m_screens;
    NullCapturer m_capturer;
    NullOverlayHost m_overlays;
    NullPanels m_panels;
    NullSprites m_sprites;
    NullHotKeys m_hotKeys;
    NullKeyboardLayout m_keyboardLayout;
    NullPasteboard m_pasteboard;
    NullWorkspace m_workspace;
    NullLoginItem m_loginItem;
    NullSecretStore m_secretStore;
    NullTrayHost m_trayHost;
    NullMotionPreference m_motionPreference;
};

} // namespace snapvane::null
