#pragma once

#include "DesktopFolders.h"
#include "VirtualDesktop.h"

namespace snapvane::testing {

struct CompositorCommand {
    QString program;
    QStringList arguments;
};

/// How to start a compositor so that nothing but the test's choice decides what it draws; writes
/// its configuration file where it has one.
CompositorCommand compositorCommand(Compositor compositor, const DesktopFolders& folders);

} // namespace snapvane::testing
