#pragma once

#include "Parloquin/Platform/GLibPointers.h"

#include <QtCore/QtGlobal>

#include <functional>
#include <span>

namespace parloquin {

/// \brief A connection of our own to the system bus; the process's shared one would end the
/// program with the bus.
///
/// Made, asked and destroyed on one thread that may wait. Nothing is started on the bus for it.
class SystemBus {
public:
    /// Sees each signal that comes in, of whomever it is; on a thread of the bus.
    using Heard = std::function<void(GDBusMessage *signal)>;

    /// \param rules which signals the bus is to send, as its AddMatch takes them; they live on
    SystemBus(std::span<const char *const> rules, Heard heard);
    ~SystemBus();
    Q_DISABLE_COPY_MOVE(SystemBus)

    /// \param cancelled ends the wait from another thread
    /// \return whether the bus has answered; the connection is kept until it hangs up
    [[nodiscard]] bool connect(GCancellable *cancelled);

    /// \brief One call, for which a second and a half must do.
    /// \param answer the type expected of it
    /// \return nothing where it fails, or is cancelled from another thread
    [[nodiscard]] GLibPointer<GVariant> call(const char *service, const char *path,
        const char *interface, const char *method, GVariant *arguments, const char *answer,
        GCancellable *cancelled) const;

private:
    void subscribe() const;
    void close();

    std::span<const char *const> m_rules;
    Heard m_heard;
    GLibPointer<GDBusConnection> m_bus;
    guint m_filter = 0;
};

} // namespace parloquin
