#pragma once

#include "platform/xdg/GLibPointers.h"

#include <QtGlobal>

/// The settings of a GNOME desktop. Main thread.
namespace snapvane::xdg {

using GnomeSchema = std::unique_ptr<GSettingsSchema, Releaser<g_settings_schema_unref>>;
using GnomeSettings = ObjectPointer<GSettings>;

/// True when the desktop says that it is GNOME or made from it.
bool isDesktopGnome();

/// Null when it is not installed. The library ends the program when it is asked to read a schema
/// that is not there, a key that the schema does not have, or a path that is none; hence all the
/// looking before.
GnomeSchema findGnomeSchema(const char* id);

/// A null path is the schema's own.
GnomeSettings gnomeSettings(GSettingsSchema& schema, const char* path);

} // namespace snapvane::xdg
