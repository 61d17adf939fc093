#include "platform/xdg/PromptingService.h"

#include "platform/xdg/KeyringQuestion.h"

#include <libsecret/secret.h>

namespace snapvane::xdg {

namespace {

/// The library takes no answer for a failure only where there is an error as well.
GVariant* promptSync(SecretService*, SecretPrompt* prompt, GCancellable* cancellable,
                     const GVariantType* type, GError** error) {
    VariantPointer answer = KeyringQuestion::ask(*G_DBUS_PROXY(prompt), cancellable);
    if (answer && (type == nullptr || g_variant_is_of_type(answer.get(), type) != FALSE)) {
        return answer.release();
    }
    if (g_cancellable_set_error_if_cancelled(cancellable, error) == FALSE) {
        g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "The user did not agree");
    }
    return nullptr;
}

void releaseAnswer(gpointer answer) {
    g_variant_unref(static_cast<GVariant*>(answer));
}

/// The library uses this form within synchronous operations as well, in a loop on the operation's
/// thread, which may as well wait here.
void promptAsync(SecretService* self, SecretPrompt* prompt, const GVariantType* type,
                 GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
    const ObjectPointer<GTask> task(g_task_new(self, cancellable, callback, data));
    GError* error = nullptr;
    GVariant* const answer = promptSync(self, prompt, cancellable, type, &error);
    if (answer != nullptr) {
        g_task_return_pointer(task.get(), answer, releaseAnswer);
    } else {
        g_task_return_error(task.get(), error);
    }
}

GVariant* promptFinish(SecretService*, GAsyncResult* result, GError** error) {
    return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

void initializeClass(gpointer instance, gpointer) {
    SecretServiceClass& made = *static_cast<SecretServiceClass*>(instance);
    made.prompt_sync = promptSync;
    made.prompt_async = promptAsync;
    made.prompt_finish = promptFinish;
}

} // namespace

GType promptingServiceType() {
    static const GType type = g_type_register_static_simple(
        SECRET_TYPE_SERVICE, "SnapvanePromptingService", sizeof(SecretServiceClass),
        initializeClass, sizeof(SecretService), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

} // namespace snapvane::xdg
