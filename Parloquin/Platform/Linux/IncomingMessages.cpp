#include "Parloquin/Platform/IncomingMessages.h"

#include "Parloquin/Platform/Linux/SystemBus.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Platform/SerialQueue.h"

#include <QtCore/QByteArray>

#include <array>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace parloquin {

namespace {

constexpr char modemManager[] = "org.freedesktop.ModemManager1";
constexpr char messageInterface[] = "org.freedesktop.ModemManager1.Sms";
constexpr char messagingInterface[] = "org.freedesktop.ModemManager1.Modem.Messaging";
constexpr char propertiesInterface[] = "org.freedesktop.DBus.Properties";
constexpr std::array messageRules {
    "type='signal',sender='org.freedesktop.ModemManager1',member='Added',"
    "interface='org.freedesktop.ModemManager1.Modem.Messaging'",
    "type='signal',sender='org.freedesktop.ModemManager1',member='PropertiesChanged',"
    "arg0='org.freedesktop.ModemManager1.Sms'",
};

// Of MMSmsState.
constexpr guint32 receiving = 2;
constexpr guint32 received = 3;

// Of parts that never come none may stay for ever.
constexpr std::size_t mostInParts = 16;
// More than the 255 parts that a message can have hold.
constexpr gsize longestText = 1 << 17; // bytes

bool equals(const char *text, std::string_view expected) { return text && text == expected; }

struct Notice {
    QByteArray path; // of the message
    bool isNew = false; // or one that has changed
};

/// What a signal says of messages; nothing where it speaks of something else.
std::optional<Notice> noticeOf(GDBusMessage *signal)
{
    GVariant *body = g_dbus_message_get_body(signal);
    if (!body)
        return std::nullopt;
    const char *interface = g_dbus_message_get_interface(signal);
    const char *member = g_dbus_message_get_member(signal);
    const char *subject = nullptr;
    if (equals(interface, messagingInterface) && equals(member, "Added")
        && g_variant_is_of_type(body, G_VARIANT_TYPE("(ob)")) != FALSE) {
        gboolean isReceived = FALSE; // or written on this device
        g_variant_get(body, "(&ob)", &subject, &isReceived);
        return isReceived != FALSE ? std::optional(Notice { subject, true }) : std::nullopt;
    }
    if (equals(interface, propertiesInterface) && equals(member, "PropertiesChanged")
        && g_variant_is_of_type(body, G_VARIANT_TYPE("(sa{sv}as)")) != FALSE) {
        g_variant_get_child(body, 0, "&s", &subject);
        if (equals(subject, messageInterface))
            return Notice { g_dbus_message_get_path(signal), false };
    }
    return std::nullopt;
}

} // namespace

struct IncomingMessages::Private : std::enable_shared_from_this<Private> {
    Heard heard; // main thread
    GLibPointer<GCancellable> cancelled { g_cancellable_new() };
    std::unordered_set<std::string> inParts; // on the queue
    std::unique_ptr<SystemBus> bus; // on the queue
    std::unique_ptr<SerialQueue> queue;

    void begin()
    {
        queue = std::make_unique<SerialQueue>(QStringLiteral("messages"));
        queue->async([this, weak = weak_from_this()] {
            bus = std::make_unique<SystemBus>(messageRules, [weak](GDBusMessage *signal) {
                auto notice = noticeOf(signal);
                if (!notice)
                    return;
                // By way of the main thread, which alone may let go of the last reference.
                onMain([weak, notice = std::move(*notice)] {
                    const auto self = weak.lock();
                    if (self && self->queue)
                        self->queue->async([self = self.get(), notice] { self->look(notice); });
                });
            });
            static_cast<void>(bus->connect(cancelled.get()));
        });
    }

    // On the main thread; ends every wait.
    void end()
    {
        heard = {};
        g_cancellable_cancel(cancelled.get());
        queue->sync([this] { bus.reset(); });
        queue.reset();
    }

    /// On the queue. Whoever sent the signal, only what the modem service itself says counts.
    void look(const Notice &notice)
    {
        const std::string path = notice.path.toStdString();
        if (!notice.isNew && !inParts.contains(path))
            return;
        inParts.erase(path);
        const auto answer = bus->call(modemManager, path.c_str(), propertiesInterface, "GetAll",
            g_variant_new("(s)", messageInterface), "(a{sv})", cancelled.get());
        if (!answer)
            return;
        const GLibPointer<GVariant> message(g_variant_get_child_value(answer.get(), 0));
        guint32 state = 0;
        if (g_variant_lookup(message.get(), "State", "u", &state) == FALSE)
            return;
        if (state == receiving && inParts.size() < mostInParts)
            inParts.insert(path);
        const GLibPointer<GVariant> text(
            g_variant_lookup_value(message.get(), "Text", G_VARIANT_TYPE_STRING));
        if (state != received || !text || g_variant_get_size(text.get()) > longestText)
            return;
        onMain([weak = weak_from_this(),
                   whole = QString::fromUtf8(g_variant_get_string(text.get(), nullptr))] {
            const auto self = weak.lock();
            if (!self || !self->heard)
                return;
            const Heard tell = self->heard; // it may end what holds it
            tell(whole);
        });
    }
};

IncomingMessages::IncomingMessages(Heard heard)
    : d(std::make_shared<Private>())
{
    d->heard = std::move(heard);
    d->begin();
}

IncomingMessages::~IncomingMessages() { d->end(); }

} // namespace parloquin
