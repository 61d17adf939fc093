#include "platform/PlatformLoader.h"

#include "platform/null/NullPlatform.h"
#include "platform/x11/X11Platform.h"

namespace snapvane::PlatformLoader {

Choice choose() {
    QString wanted = qEnvironmentVariable("SNAPVANE_PLATFORM");
    if (wanted.isEmpty()) {
        wanted = QStringLiteral("x11");
    }
    Choice choice;
    if (wanted == QLatin1String("x11")) {
        choice.backend = Choice::Backend::X11;
        choice.qtPlatform = "xcb";
        choice.obstacle = x11::x11Obstacle();
    } else if (wanted == QLatin1String("null")) {
        choice.backend = Choice::Backend::Null;
        choice.qtPlatform = "offscreen";
    } else {
        choice.obstacle =
            QStringLiteral("SNAPVANE_PLATFORM: there is no platform \"%1\" here; x11 and null are.")
                .arg(wanted);
    }
    return choice;
}

std::unique_ptr<Platform> load(const Choice& choice) {
    if (choice.backend == Choice::Backend::Null) {
        return std::make_unique<null::NullPlatform>();
    }
    return x11::makeX11Platform();
}

} // namespace snapvane::PlatformLoader
