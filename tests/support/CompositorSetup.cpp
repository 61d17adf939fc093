#include "CompositorSetup.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr char plainPicom[] = R"(backend = "xrender";
shadow = false;
fading = false;
unredir-if-possible = false;
)";

/// Fading in the program's own default steps, shadows on.
constexpr char fadingPicom[] = R"(backend = "xrender";
shadow = true;
fading = true;
unredir-if-possible = false;
)";

/// Drawn by OpenGL, from textures that it keeps for a while after their windows have gone.
constexpr char fadingGlPicom[] = R"(backend = "glx";
shadow = true;
fading = true;
unredir-if-possible = false;
)";

CompositorCommand picom(const char* configuration, const DesktopFolders& folders,
                        const QStringList& more = {}) {
    folders.write(u"picom.conf"_s, configuration);
    return {u"picom"_s, QStringList{u"--config"_s, folders.path(u"picom.conf"_s)} + more};
}

} // namespace

CompositorCommand compositorCommand(Compositor compositor, const DesktopFolders& folders) {
    switch (compositor) {
    case Compositor::Picom:
        return picom(plainPicom, folders);
    case Compositor::PicomFading:
        return picom(fadingPicom, folders);
    case Compositor::PicomGlFading:
        return picom(fadingGlPicom, folders, {u"--experimental-backends"_s});
    case Compositor::Xcompmgr:
        return {u"xcompmgr"_s, {}};
    case Compositor::XcompmgrFading:
        return {u"xcompmgr"_s, {u"-c"_s, u"-f"_s}};
    case Compositor::None:
        break;
    }
    return {};
}

} // namespace snapvane::testing
