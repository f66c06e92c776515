#include "Parloquin/Platform/Linux/ModemService.h"

#include <array>
#include <string_view>
#include <utility>

namespace parloquin {

namespace {

constexpr char service[] = "org.freedesktop.ModemManager1";
constexpr char root[] = "/org/freedesktop/ModemManager1";
constexpr char modemInterface[] = "org.freedesktop.ModemManager1.Modem";
constexpr char simInterface[] = "org.freedesktop.ModemManager1.Sim";
constexpr char properties[] = "org.freedesktop.DBus.Properties";
constexpr char objectManager[] = "org.freedesktop.DBus.ObjectManager";
constexpr int patience = 1500; // ms a call

bool is(const char *text, std::string_view expected) { return text && text == expected; }

/// Whether a signal may mean another SIM.
bool isAboutTheSim(GDBusMessage *message)
{
    if (g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_SIGNAL)
        return false;
    if (is(g_dbus_message_get_interface(message), objectManager))
        return true;
    GVariant *body = g_dbus_message_get_body(message);
    if (!body)
        return false;
    const char *subject = nullptr;
    if (is(g_dbus_message_get_member(message), "NameOwnerChanged")
        && g_variant_is_of_type(body, G_VARIANT_TYPE("(sss)"))) {
        g_variant_get_child(body, 0, "&s", &subject);
        return is(subject, service);
    }
    if (!is(g_dbus_message_get_member(message), "PropertiesChanged")
        || !g_variant_is_of_type(body, G_VARIANT_TYPE("(sa{sv}as)")))
        return false;
    g_variant_get_child(body, 0, "&s", &subject);
    if (is(subject, simInterface))
        return true;
    // A modem tells its signal's strength all the time.
    const GLibPointer<GVariant> changed(g_variant_get_child_value(body, 1));
    const GLibPointer<GVariant> sim(g_variant_lookup_value(changed.get(), "Sim", nullptr));
    return is(subject, modemInterface) && sim;
}

} // namespace

ModemService::ModemService(std::function<void()> changed)
    : m_changed(std::move(changed))
{
}

ModemService::~ModemService() { close(); }

bool ModemService::connect(GCancellable *cancelled)
{
    if (m_bus && g_dbus_connection_is_closed(m_bus.get()) == FALSE)
        return true;
    close();

    const GLibPointer<gchar> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, cancelled, nullptr));
    if (!address)
        return false;
    // A connection of our own: the process's shared one would be set to exit with the bus.
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
            if (isIncoming != FALSE && isAboutTheSim(message))
                (*static_cast<std::function<void()> *>(data))();
            return message;
        },
        std::make_unique<std::function<void()>>(m_changed).release(),
        [](gpointer data) { delete static_cast<std::function<void()> *>(data); });
    subscribe();
    return true;
}

void ModemService::subscribe() const
{
    constexpr std::array rules {
        "type='signal',sender='org.freedesktop.ModemManager1',"
        "interface='org.freedesktop.DBus.ObjectManager'",
        "type='signal',sender='org.freedesktop.ModemManager1',member='PropertiesChanged',"
        "arg0='org.freedesktop.ModemManager1.Modem'",
        "type='signal',sender='org.freedesktop.ModemManager1',member='PropertiesChanged',"
        "arg0='org.freedesktop.ModemManager1.Sim'",
        "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
        "arg0='org.freedesktop.ModemManager1'",
    };
    for (const char *rule : rules) {
        g_dbus_connection_call(m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "AddMatch", g_variant_new("(s)", rule), nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, nullptr, nullptr, nullptr);
    }
}

void ModemService::close()
{
    if (!m_bus)
        return;
    g_dbus_connection_remove_filter(m_bus.get(), m_filter);
    g_dbus_connection_close(m_bus.get(), nullptr, nullptr, nullptr);
    m_bus.reset();
}

GLibPointer<GVariant> ModemService::call(const char *path, const char *interface,
    const char *method, GVariant *arguments, const char *answer, GCancellable *cancelled) const
{
    return GLibPointer<GVariant>(
        g_dbus_connection_call_sync(m_bus.get(), service, path, interface, method, arguments,
            G_VARIANT_TYPE(answer), G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, cancelled, nullptr));
}

std::optional<QString> ModemService::operatorIdentifier(GCancellable *cancelled) const
{
    const auto objects =
        call(root, objectManager, "GetManagedObjects", nullptr, "(a{oa{sa{sv}}})", cancelled);
    if (!objects)
        return std::nullopt;

    const GLibPointer<GVariant> list(g_variant_get_child_value(objects.get(), 0));
    QByteArray sim;
    bool isFound = false;
    const gsize count = g_variant_n_children(list.get());
    for (gsize i = 0; i < count && !isFound; ++i) {
        const GLibPointer<GVariant> object(g_variant_get_child_value(list.get(), i));
        const GLibPointer<GVariant> interfaces(g_variant_get_child_value(object.get(), 1));
        const GLibPointer<GVariant> modem(
            g_variant_lookup_value(interfaces.get(), modemInterface, G_VARIANT_TYPE_VARDICT));
        const char *path = nullptr;
        isFound = modem != nullptr; // of several modems the first counts, with a SIM or without
        if (modem && g_variant_lookup(modem.get(), "Sim", "&o", &path) != FALSE)
            sim = path;
    }
    if (sim.isEmpty() || sim == "/")
        return std::nullopt;

    // The operator's digits only; the rest of what a SIM says identifies a person.
    const auto answer = call(sim.constData(), properties, "Get",
        g_variant_new("(ss)", simInterface, "OperatorIdentifier"), "(v)", cancelled);
    if (!answer)
        return std::nullopt;
    GVariant *inner = nullptr;
    g_variant_get(answer.get(), "(v)", &inner);
    const GLibPointer<GVariant> value(inner);
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) == FALSE)
        return std::nullopt;
    return QString::fromUtf8(g_variant_get_string(value.get(), nullptr));
}

} // namespace parloquin
