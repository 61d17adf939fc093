#pragma once

#include "platform/Pasteboard.h"

namespace snapvane::xdg {

/// The desktop's clipboard through Qt. Owned by the platform; main thread.
class QtPasteboard : public Pasteboard {
public:
    void write(const PasteboardContents& contents) override;
};

} // namespace snapvane::xdg
