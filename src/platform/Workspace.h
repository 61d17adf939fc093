#pragma once

class QUrl;

namespace snapvane {

/// The desktop around the program. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens the URL with the program that the desktop has for it; false when there is none.
    virtual bool open(const QUrl& url) = 0;
    /// Opens the desktop's own privacy or applications panel; false when none is known.
    virtual bool openPrivacyPanel() = 0;
    virtual void beep() = 0;
};

} // namespace snapvane
