#pragma once

#include "platform/Capturer.h"
#include "platform/x11/RootGrabber.h"
#include "platform/x11/ShownWindowsWatch.h"

#include <QTimer>

namespace snapvane::x11 {

class X11Screens;

/// Pictures of the live screen through the root window. Owned by the platform; main thread, the
/// grab itself and the list of windows run on the thread pool.
class X11Capturer : public ScreenCapturer {
public:
    explicit X11Capturer(X11Screens& screens);

    bool preflightAccess() override;
    QCoro::Task<ShareableContent> shareableContent(ContentQuery query) override;
    QCoro::Task<QImage> screenshot(ContentFilter filter,
                                   StreamConfiguration configuration) override;

    RootGrabber& grabber() { return m_grabber; }

private:
    X11Screens& m_screens;
    RootGrabber m_grabber;
    // So that there is something to show where a window of ours is left out.
    ShownWindowsWatch m_shownWindows;
    // Gives the grabber's memory back some time after the last picture.
    QTimer m_trim;
};

} // namespace snapvane::x11
