#include "platform/xdg/XdgMotionPreference.h"

#include "platform/xdg/GnomeSettings.h"

#include <QSettings>
#include <QStandardPaths>

#include <string_view>

namespace snapvane::xdg {

namespace {

constexpr char interfaceSchema[] = "org.gnome.desktop.interface";
constexpr char animationsKey[] = "enable-animations";

bool gnomeReducesMotion() {
    const GnomeSchema schema = findGnomeSchema(interfaceSchema);
    if (!schema || !g_settings_schema_has_key(schema.get(), animationsKey)) {
        return false;
    }
    const GnomeSettings settings = gnomeSettings(*schema, nullptr);
    const VariantPointer value(g_settings_get_value(settings.get(), animationsKey));
    return std::string_view(g_variant_get_type_string(value.get())) == "b" &&
           g_variant_get_boolean(value.get()) == FALSE;
}

bool isDesktopKde() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP")
        .split(u':', Qt::SkipEmptyParts)
        .contains(QStringLiteral("KDE"), Qt::CaseInsensitive);
}

/// Durations are multiplied by a factor there, 0 at the slider's end that says "instant".
bool kdeReducesMotion() {
    const QString file =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kdeglobals"));
    if (file.isEmpty()) {
        return false;
    }
    const QSettings settings(file, QSettings::IniFormat);
    bool isNumber = false;
    const double factor =
        settings.value(QStringLiteral("KDE/AnimationDurationFactor"), 1.0).toDouble(&isNumber);
    return isNumber && factor <= 0;
}

} // namespace

bool XdgMotionPreference::isReduced() const {
    return isDesktopGnome() ? gnomeReducesMotion() : isDesktopKde() && kdeReducesMotion();
}

} // namespace snapvane::xdg
