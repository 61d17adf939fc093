#include "platform/xdg/KeyringQuestion.h"

namespace snapvane::xdg::KeyringQuestion {

namespace {

constexpr char interfaceName[] = "org.freedesktop.Secret.Prompt";
/// How often the wait looks whether it still makes sense. Users do not notice.
constexpr guint lookInterval = 100;

struct Wait {
    GDBusConnection* bus;
    GCancellable* cancellable;
    VariantPointer answer;
    bool isOver = false;
};

void onCompleted(GDBusConnection*, const char*, const char*, const char*, const char*,
                 GVariant* parameters, gpointer data) {
    Wait& wait = *static_cast<Wait*>(data);
    wait.isOver = true;
    gboolean dismissed = TRUE;
    GVariant* result = nullptr;
    if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(bv)")) != FALSE) {
        g_variant_get(parameters, "(bv)", &dismissed, &result);
    }
    VariantPointer answer(result);
    if (dismissed == FALSE) {
        wait.answer = std::move(answer);
    }
}

void onServiceVanished(GDBusConnection*, const char*, gpointer data) {
    static_cast<Wait*>(data)->isOver = true;
}

/// A bus that goes takes its signals with it, also the one that would tell.
gboolean look(gpointer data) {
    Wait& wait = *static_cast<Wait*>(data);
    if (g_cancellable_is_cancelled(wait.cancellable) != FALSE ||
        g_dbus_connection_is_closed(wait.bus) != FALSE) {
        wait.isOver = true;
    }
    return G_SOURCE_CONTINUE;
}

/// Receives what concerns the question, on a context that is the thread's while it lives.
class Listener {
public:
    Listener(GDBusProxy& prompt, Wait& wait)
        : m_bus(wait.bus), m_context(g_main_context_new()),
          m_looks(g_timeout_source_new(lookInterval)) {
        g_main_context_push_thread_default(m_context);
        g_source_set_callback(m_looks, look, &wait, nullptr);
        g_source_attach(m_looks, m_context);
        const char* const service = g_dbus_proxy_get_name(&prompt);
        m_completion = g_dbus_connection_signal_subscribe(
            m_bus, service, interfaceName, "Completed", g_dbus_proxy_get_object_path(&prompt),
            nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onCompleted, &wait, nullptr);
        m_presence = g_bus_watch_name_on_connection(m_bus, service, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                    nullptr, onServiceVanished, &wait, nullptr);
    }
    ~Listener() {
        g_bus_unwatch_name(m_presence);
        g_dbus_connection_signal_unsubscribe(m_bus, m_completion);
        g_source_destroy(m_looks);
        g_source_unref(m_looks);
        // What is left to be delivered frees what it belongs to.
        while (g_main_context_iteration(m_context, FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(m_context);
        g_main_context_unref(m_context);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void waitForNews() { g_main_context_iteration(m_context, TRUE); }

private:
    GDBusConnection* m_bus;
    GMainContext* m_context;
    GSource* m_looks;
    guint m_completion = 0;
    guint m_presence = 0;
};

bool put(GDBusProxy& prompt, GCancellable* cancellable) {
    const char* const noWindow = "";
    const VariantPointer done(
        g_dbus_proxy_call_sync(&prompt, "Prompt", g_variant_new("(s)", noWindow),
                               G_DBUS_CALL_FLAGS_NONE, -1, cancellable, nullptr));
    return done != nullptr;
}

/// Without waiting for the answer: a service that hangs must not keep the program from leaving. But
/// it must be on its way, since the connection may be closed next.
void takeBack(GDBusProxy& prompt) {
    g_dbus_proxy_call(&prompt, "Dismiss", nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
                      nullptr, nullptr);
    g_dbus_connection_flush_sync(g_dbus_proxy_get_connection(&prompt), nullptr, nullptr);
}

} // namespace

VariantPointer ask(GDBusProxy& prompt, GCancellable* cancellable) {
    Wait wait = {g_dbus_proxy_get_connection(&prompt), cancellable, nullptr};
    Listener listener(prompt, wait);
    if (!put(prompt, cancellable)) {
        return nullptr;
    }
    while (!wait.isOver) {
        listener.waitForNews();
    }
    if (g_cancellable_is_cancelled(cancellable) != FALSE) {
        takeBack(prompt);
    }
    return std::move(wait.answer);
}

} // namespace snapvane::xdg::KeyringQuestion
