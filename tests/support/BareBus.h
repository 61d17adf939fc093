#pragma once

#include "ChildProcess.h"
#include "DesktopFolders.h"

namespace snapvane::testing {

/// A session bus that knows no services to start: a test must not depend on what is installed. The
/// constructor returns when it answers. Test thread only.
class BareBus {
public:
    explicit BareBus(const DesktopFolders& folders);

    [[nodiscard]] QString address() const;
    /// That of the folders, with this bus as the session's.
    [[nodiscard]] QProcessEnvironment environment() const;
    /// Kills it, which cuts all its connections.
    void stop();

private:
    const DesktopFolders& m_folders;
    ChildProcess m_daemon;
};

} // namespace snapvane::testing
