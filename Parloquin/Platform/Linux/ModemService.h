#pragma once

#include "Parloquin/Platform/Linux/GLibPointers.h"

#include <QtCore/QString>

#include <functional>
#include <optional>

namespace parloquin {

/// \brief Asks the modem service on the system bus about the SIM.
///
/// Made, asked and destroyed on one thread that may wait. Nothing is started on the bus for it.
class ModemService {
public:
    /// \param changed called on a thread of the bus when asking again may bring another answer
    explicit ModemService(std::function<void()> changed);
    ~ModemService();
    Q_DISABLE_COPY_MOVE(ModemService)

    /// \param cancelled ends the wait from another thread
    /// \return whether the bus has answered; the connection is kept until it hangs up
    [[nodiscard]] bool connect(GCancellable *cancelled);

    /// \param cancelled ends the wait from another thread
    /// \return country and network code of the SIM in the first modem; nothing without
    [[nodiscard]] std::optional<QString> operatorIdentifier(GCancellable *cancelled) const;

private:
    [[nodiscard]] GLibPointer<GVariant> call(const char *path, const char *interface,
        const char *method, GVariant *arguments, const char *answer, GCancellable *cancelled) const;
    void subscribe() const;
    void close();

    std::function<void()> m_changed;
    GLibPointer<GDBusConnection> m_bus;
    guint m_filter = 0;
};

} // namespace parloquin
