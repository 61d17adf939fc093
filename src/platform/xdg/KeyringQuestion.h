#pragma once

#include "platform/xdg/GLibPointers.h"

/// A question that a keyring has for the user, such as for its password. Used by PromptingService,
/// on the thread of the operation that needs the answer.
namespace snapvane::xdg::KeyringQuestion {

/// Has the question put and waits for the answer, which is null when the user refused, the service
/// or the bus went, or the wait was cancelled: then the question is taken back. `prompt` is an
/// object of the service with the interface org.freedesktop.Secret.Prompt.
VariantPointer ask(GDBusProxy& prompt, GCancellable* cancellable);

} // namespace snapvane::xdg::KeyringQuestion
