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

bool is(const char *text, std::string_view expected) { return text && text == expected; }

/// Whether a signal may mean another SIM.
bool isAboutTheSim(GDBusMessage *message)
{
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
    : m_bus(rules, [changed = std::move(changed)](GDBusMessage *signal) {
        if (isAboutTheSim(signal))
            changed();
    })
{
}

std::optional<QString> ModemService::operatorIdentifier(GCancellable *cancelled) const
{
    const auto objects = m_bus.call(
        service, root, objectManager, "GetManagedObjects", nullptr, "(a{oa{sa{sv}}})", cancelled);
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
    const auto answer = m_bus.call(service, sim.constData(), properties, "Get",
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
