#pragma once

#include <gio/gio.h>

#include <memory>

/// Owners of what the GLib libraries hand out.
namespace snapvane::xdg {

template <auto release> struct Releaser {
    template <typename Type> void operator()(Type* object) const { release(object); }
};

template <typename Type> using ObjectPointer = std::unique_ptr<Type, Releaser<g_object_unref>>;
using VariantPointer = std::unique_ptr<GVariant, Releaser<g_variant_unref>>;

} // namespace snapvane::xdg
