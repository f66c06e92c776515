#include "Parloquin/Transport/SystemRoute.h"

#include "Parloquin/Platform/GLibPointers.h"

#include <cstdio>

namespace parloquin {

namespace {

constexpr char direct[] = "direct://";

// On a thread of GIO's. Texts of GLib's alone cross, since a race detector cannot see its locks.
void ask(GTask *task, gpointer, gpointer text, GCancellable *cancelled)
{
    const QUrl url(QString::fromUtf8(static_cast<const char *>(text)));
    if (url.scheme() == QLatin1String("https")) {
        GTlsBackend *const tls = g_tls_backend_get_default();
        if (g_tls_backend_supports_tls(tls) == FALSE) {
            g_task_return_new_error(task, G_TLS_ERROR, G_TLS_ERROR_UNAVAILABLE, "no TLS");
            return;
        }
        // Reads the system's certificates, the first time.
        const GLibPointer<GTlsDatabase> certificates(g_tls_backend_get_default_database(tls));
    }
    GLibPointer<gchar *> proxies;
    if (!isThisMachine(url.host()))
        proxies.reset(g_proxy_resolver_lookup(
            g_proxy_resolver_get_default(), static_cast<const char *>(text), cancelled, nullptr));
    // The first is what other apps use; what cannot be told is none.
    g_task_return_pointer(task, g_strdup(proxies && *proxies ? *proxies : direct), g_free);
}

void reportMissingTls()
{
    static bool isReported = false;
    if (!std::exchange(isReported, true))
        std::fputs(
            "Parloquin: GIO has no TLS, so nothing comes by https; install glib-networking.\n",
            stderr);
}

} // namespace

void askSystemRoute(
    const QUrl &url, GCancellable *cancelled, GAsyncReadyCallback asked, gpointer data)
{
    // Scheme, host and port: more is nobody's business but the server's.
    const QUrl place = url.adjusted(
        QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    const GLibPointer<GTask> task(g_task_new(nullptr, cancelled, asked, data));
    g_task_set_task_data(task.get(), g_strdup(place.toEncoded().constData()), g_free);
    g_task_set_return_on_cancel(task.get(), TRUE);
    g_task_run_in_thread(task.get(), ask);
}

std::optional<SystemRoute> systemRoute(GAsyncResult *result)
{
    GError *failure = nullptr;
    const GLibPointer<gchar> proxy(
        static_cast<gchar *>(g_task_propagate_pointer(G_TASK(result), &failure)));
    const GLibPointer<GError> error(failure);
    if (g_error_matches(failure, G_TLS_ERROR, G_TLS_ERROR_UNAVAILABLE) != FALSE) {
        reportMissingTls();
        return SystemRoute { {}, false };
    }
    if (error)
        return {};
    const QString text = QString::fromUtf8(proxy.get());
    return SystemRoute { text == QLatin1String(direct) ? QUrl() : QUrl(text) };
}

bool isThisMachine(const QString &host)
{
    if (host == QLatin1String("localhost"))
        return true;
    const GLibPointer<GInetAddress> address(
        g_inet_address_new_from_string(host.toLatin1().constData()));
    return address && g_inet_address_get_is_loopback(address.get()) != FALSE;
}

} // namespace parloquin
