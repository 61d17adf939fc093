#pragma once

#include "platform/Workspace.h"

namespace snapvane::xdg {

/// The desktop's openers. Owned by the platform; main thread.
class XdgWorkspace : public Workspace {
public:
    bool open(const QUrl& url) override;
    bool openPrivacyPanel() override;
    void beep() override;
};

} // namespace snapvane::xdg
