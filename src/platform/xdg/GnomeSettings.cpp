#include "platform/xdg/GnomeSettings.h"

#include <QStringList>

namespace snapvane::xdg {

bool isDesktopGnome() {
    const QStringList desktops =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    return desktops.contains(QStringLiteral("GNOME"), Qt::CaseInsensitive);
}

GnomeSchema findGnomeSchema(const char* id) {
    GSettingsSchemaSource* const installed = g_settings_schema_source_get_default();
    return GnomeSchema(installed == nullptr ? nullptr
                                            : g_settings_schema_source_lookup(installed, id, TRUE));
}

GnomeSettings gnomeSettings(GSettingsSchema& schema, const char* path) {
    return GnomeSettings(g_settings_new_full(&schema, nullptr, path));
}

} // namespace snapvane::xdg
