#include "Parloquin/Platform/Linux/LinkPortal.h"

#include "Parloquin/Platform/GLibPointers.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>

#include <optional>

using namespace std::chrono_literals;

namespace parloquin::LinkPortal {

namespace {

constexpr guint patience = 1500; // ms
constexpr auto rest = 5s; // of a portal that said nothing: each app of a list would wait anew

struct Question {
    QByteArray scheme;
    GLibPointer<GCancellable> cancelled { g_cancellable_new() };
    // Not the process's shared one, which ends the process when the bus ends.
    GLibPointer<GDBusConnection> bus;
    std::optional<bool> answer;
};

void hear(GObject *, GAsyncResult *result, gpointer data)
{
    auto &question = *static_cast<Question *>(data);
    const GLibPointer<GVariant> answer(
        g_dbus_connection_call_finish(question.bus.get(), result, nullptr));
    gboolean handles = FALSE;
    if (answer)
        g_variant_get(answer.get(), "(b)", &handles);
    question.answer = handles != FALSE;
}

void ask(GObject *, GAsyncResult *result, gpointer data)
{
    auto &question = *static_cast<Question *>(data);
    question.bus.reset(g_dbus_connection_new_for_address_finish(result, nullptr));
    if (!question.bus) {
        question.answer = false;
        return;
    }
    g_dbus_connection_call(question.bus.get(), "org.freedesktop.portal.Desktop",
        "/org/freedesktop/portal/desktop", "org.freedesktop.portal.OpenURI", "SchemeSupported",
        g_variant_new("(sa{sv})", question.scheme.constData(), nullptr), G_VARIANT_TYPE("(b)"),
        G_DBUS_CALL_FLAGS_NONE, -1, question.cancelled.get(), hear, data);
}

} // namespace

bool isNeeded() { return QFile::exists(QStringLiteral("/.flatpak-info")); }

bool handles(const QString &scheme)
{
    static struct {
        QByteArray address;
        QDeadlineTimer until;
    } silent;
    const GLibPointer<gchar> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!address || (silent.address == address.get() && !silent.until.hasExpired()))
        return false;

    Question question;
    question.scheme = scheme.toUtf8();
    const GLibPointer<GMainContext> context(g_main_context_new());
    g_main_context_push_thread_default(context.get());
    const GLibPointer<GSource> late(g_timeout_source_new(patience));
    g_source_set_callback(
        late.get(),
        [](gpointer cancelled) -> gboolean {
            g_cancellable_cancel(static_cast<GCancellable *>(cancelled));
            return G_SOURCE_REMOVE;
        },
        question.cancelled.get(), nullptr);
    g_source_attach(late.get(), context.get());
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(
        address.get(), flags, nullptr, question.cancelled.get(), ask, &question);
    while (!question.answer)
        g_main_context_iteration(context.get(), TRUE);
    if (g_cancellable_is_cancelled(question.cancelled.get()))
        silent = { address.get(), QDeadlineTimer(rest) };
    g_main_context_pop_thread_default(context.get());
    return *question.answer;
}

} // namespace parloquin::LinkPortal
