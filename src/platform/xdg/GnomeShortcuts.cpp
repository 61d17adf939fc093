#include "platform/xdg/GnomeShortcuts.h"

#include "platform/xdg/GnomeSettings.h"

#include <QStringList>

#include <algorithm>
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

using NamesPointer = std::unique_ptr<char*, Releaser<g_strfreev>>;
using TextsPointer = std::unique_ptr<const char*, Releaser<g_free>>;

/// True when the settings stand at a path that the schema itself names.
bool hasPath(GSettingsSchema& schema) {
    return g_settings_schema_get_path(&schema) != nullptr;
}

bool isPath(const QString& text) {
    return text.startsWith(u'/') && text.endsWith(u'/') && !text.contains(QLatin1String("//"));
}

/// Empty for values that are no text.
QStringList textsOf(GSettings& settings, const char* key) {
    const VariantPointer value(g_settings_get_value(&settings, key));
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
    const GnomeSchema schema = findGnomeSchema(schemaId);
    if (!schema || !hasPath(*schema)) {
        return {};
    }
    const GnomeSettings settings = gnomeSettings(*schema, nullptr);
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
    const GnomeSchema schema = findGnomeSchema(mediaKeys);
    if (!schema || !hasPath(*schema) || !g_settings_schema_has_key(schema.get(), customPaths)) {
        return {};
    }
    QStringList paths = textsOf(*gnomeSettings(*schema, nullptr), customPaths);
    paths.removeIf([](const QString& text) { return !isPath(text); });
    return paths;
}

QStringList customAccelerators() {
    const GnomeSchema schema = findGnomeSchema(customShortcut);
    if (!schema || hasPath(*schema) ||
        !g_settings_schema_has_key(schema.get(), customAccelerator)) {
        return {};
    }
    QStringList accelerators;
    for (const QString& path : customShortcutPaths()) {
        const GnomeSettings settings = gnomeSettings(*schema, path.toUtf8().constData());
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
