#include "platform/xdg/GnomeShortcuts.h"

#include <QStringList>

#include <algorithm>
#include <gio/gio.h>
#include <memory>
#include <string_view>

namespace snapvane::xdg {

namespace {

constexpr char mediaKeys[] = "org.gnome.settings-daemon.plugins.media-keys";
/// Not a shortcut itself: the paths at which those of the user's own commands are kept.
constexpr char customPaths[] = "custom-keybindings";
constexpr char customShortcut[] = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr char customAccelerator[] = "binding";

constexpr const char* schemaIds[] = {"org.gnome.desktop.wm.keybindings",
                                     "org.gnome.mutter.keybindings", "org.gnome.shell.keybindings",
                                     mediaKeys};

template <auto release> struct Releaser {
    template <typename Type> void operator()(Type* object) const { release(object); }
};

using SchemaPointer = std::unique_ptr<GSettingsSchema, Releaser<g_settings_schema_unref>>;
using SettingsPointer = std::unique_ptr<GSettings, Releaser<g_object_unref>>;
using ValuePointer = std::unique_ptr<GVariant, Releaser<g_variant_unref>>;
using NamesPointer = std::unique_ptr<char*, Releaser<g_strfreev>>;
using TextsPointer = std::unique_ptr<const char*, Releaser<g_free>>;

bool isDesktopGnome() {
    const QStringList desktops =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    return desktops.contains(QStringLiteral("GNOME"), Qt::CaseInsensitive);
}

/// Null when it is not installed. The library ends the program when it is asked to read a schema
/// that is not there, a key that the schema does not have, or a path that is none; hence all the
/// looking before.
SchemaPointer findSchema(const char* id) {
    GSettingsSchemaSource* const installed = g_settings_schema_source_get_default();
    return SchemaPointer(
        installed == nullptr ? nullptr : g_settings_schema_source_lookup(installed, id, TRUE));
}

/// True when the settings stand at a path that the schema itself names.
bool hasPath(GSettingsSchema& schema) {
    return g_settings_schema_get_path(&schema) != nullptr;
}

bool isPath(const QString& text) {
    return text.startsWith(u'/') && text.endsWith(u'/') && !text.contains(QLatin1String("//"));
}

SettingsPointer settingsOf(GSettingsSchema& schema, const char* path) {
    return SettingsPointer(g_settings_new_full(&schema, nullptr, path));
}

/// Empty for values that are no text.
QStringList textsOf(GSettings& settings, const char* key) {
    const ValuePointer value(g_settings_get_value(&settings, key));
    const std::string_view type = g_variant_get_type_string(value.get());
    if (type == "s") {
        return {QString::fromUtf8(g_variant_get_string(value.get(), nullptr))};
    }
    QStringList texts;
    if (type == "as") {
        gsize count = 0;
        const TextsPointer list(g_variant_get_strv(value.get(), &count));
        for (gsize i = 0; i < count; ++i) {
            texts.append(QString::fromUtf8(list.get()[i]));
        }
    }
    return texts;
}

QStringList acceleratorsOf(const char* schemaId) {
    const SchemaPointer schema = findSchema(schemaId);
    if (!schema || !hasPath(*schema)) {
        return {};
    }
    const SettingsPointer settings = settingsOf(*schema, nullptr);
    QStringList accelerators;
    const NamesPointer keys(g_settings_schema_list_keys(schema.get()));
    for (const char* const* key = keys.get(); *key != nullptr; ++key) {
        if (std::string_view(*key) != customPaths) {
            accelerators.append(textsOf(*settings, *key));
        }
    }
    return accelerators;
}

QStringList customShortcutPaths() {
    const SchemaPointer schema = findSchema(mediaKeys);
    if (!schema || !hasPath(*schema) || !g_settings_schema_has_key(schema.get(), customPaths)) {
        return {};
    }
    QStringList paths = textsOf(*settingsOf(*schema, nullptr), customPaths);
    paths.removeIf([](const QString& text) { return !isPath(text); });
    return paths;
}

QStringList customAccelerators() {
    const SchemaPointer schema = findSchema(customShortcut);
    if (!schema || hasPath(*schema) ||
        !g_settings_schema_has_key(schema.get(), customAccelerator)) {
        return {};
    }
    QStringList accelerators;
    for (const QString& path : customShortcutPaths()) {
        const SettingsPointer settings = settingsOf(*schema, path.toUtf8().constData());
        accelerators.append(textsOf(*settings, customAccelerator));
    }
    return accelerators;
}

} // namespace

std::vector<SymbolicHotKey> gnomeShortcuts(const KeyOfSymbol& keyOfSymbol) {
    if (!isDesktopGnome()) {
        return {};
    }
    QStringList accelerators = customAccelerators();
    for (const char* id : schemaIds) {
        accelerators.append(acceleratorsOf(id));
    }
    std::vector<SymbolicHotKey> shortcuts;
    for (const QString& accelerator : std::as_const(accelerators)) {
        if (const auto shortcut = parseAccelerator(accelerator, keyOfSymbol)) {
            shortcuts.push_back(*shortcut);
        }
    }
    return shortcuts;
}

} // namespace snapvane::xdg
