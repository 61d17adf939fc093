#pragma once

#include "ChildProcess.h"
#include "VirtualDesktop.h"

#include <optional>

namespace snapvane::testing {

/// A desktop's own clipboard manager, which keeps what programs leave behind. Ready when the
/// constructor returns; throws std::runtime_error when it does not get so far. Ends with the
/// object.
class ClipboardManager {
public:
    explicit ClipboardManager(const VirtualDesktop& desktop);

private:
    ChildProcess m_settings;
    std::optional<ChildProcess> m_manager;
};

} // namespace snapvane::testing
