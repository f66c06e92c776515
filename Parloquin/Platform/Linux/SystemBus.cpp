#include "Parloquin/Platform/Linux/SystemBus.h"

#include <memory>
#include <utility>

namespace parloquin {

namespace {

constexpr int patience = 1500; // ms a call

} // namespace

SystemBus::SystemBus(std::span<const char *const> rules, Heard heard)
    : m_rules(rules)
    , m_heard(std::move(heard))
{
}

SystemBus::~SystemBus() { close(); }

bool SystemBus::connect(GCancellable *cancelled)
{
    if (m_bus && g_dbus_connection_is_closed(m_bus.get()) == FALSE)
        return true;
    close();

    const GLibPointer<gchar> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, cancelled, nullptr));
    if (!address)
        return false;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    m_bus.reset(
        g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr, cancelled, nullptr));
    if (!m_bus)
        return false;
    // On the bus's thread, and perhaps once more after it was removed: with data of its own.
    m_filter = g_dbus_connection_add_filter(
        m_bus.get(),
        [](GDBusConnection *, GDBusMessage *message, gboolean isIncoming, gpointer data) {
            if (isIncoming != FALSE
                && g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_SIGNAL)
                (*static_cast<Heard *>(data))(message);
            return message;
        },
        std::make_unique<Heard>(m_heard).release(),
        [](gpointer data) { delete static_cast<Heard *>(data); });
    subscribe();
    return true;
}

void SystemBus::subscribe() const
{
    for (const char *rule : m_rules) {
        g_dbus_connection_call(m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "AddMatch", g_variant_new("(s)", rule), nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, nullptr, nullptr, nullptr);
    }
}

void SystemBus::close()
{
    if (!m_bus)
        return;
    g_dbus_connection_remove_filter(m_bus.get(), m_filter);
    g_dbus_connection_close(m_bus.get(), nullptr, nullptr, nullptr);
    m_bus.reset();
}

GLibPointer<GVariant> SystemBus::call(const char *service, const char *path, const char *interface,
    const char *method, GVariant *arguments, const char *answer, GCancellable *cancelled) const
{
    return GLibPointer<GVariant>(
        g_dbus_connection_call_sync(m_bus.get(), service, path, interface, method, arguments,
            G_VARIANT_TYPE(answer), G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, cancelled, nullptr));
}

} // namespace parloquin
