#pragma once

#include <glib-object.h>

namespace snapvane::xdg {

/// A subclass of libsecret's SecretService that puts a keyring's questions to the user through
/// KeyringQuestion. The library's own way does not come to an end when it is cancelled, or when the
/// bus goes. To be used by one synchronous operation, on its thread.
GType promptingServiceType();

} // namespace snapvane::xdg
