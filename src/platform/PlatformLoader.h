#pragma once

#include "platform/Platform.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// Chooses the desktop that the program runs on; the only place that asks. The environment variable
/// SNAPVANE_PLATFORM (x11, null) overrules the choice.
namespace snapvane::PlatformLoader {

struct Choice {
    enum class Backend { X11, Null };

    Backend backend = Backend::X11;
    /// Qt's platform plugin that the backend needs.
    QByteArray qtPlatform;
    /// Why the program cannot run here; empty when it can.
    QString obstacle;
};

/// To be asked before there is an application object.
Choice choose();

/// To be called with the application object, on the Qt platform that was chosen.
std::unique_ptr<Platform> load(const Choice& choice);

} // namespace snapvane::PlatformLoader
