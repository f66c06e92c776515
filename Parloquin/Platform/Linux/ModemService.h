#pragma once

#include "Parloquin/Platform/Linux/SystemBus.h"

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

    /// \param cancelled ends the wait from another thread
    /// \return whether the bus has answered; the connection is kept until it hangs up
    [[nodiscard]] bool connect(GCancellable *cancelled) { return m_bus.connect(cancelled); }

    /// \param cancelled ends the wait from another thread
    /// \return country and network code of the SIM in the first modem; nothing without
    [[nodiscard]] std::optional<QString> operatorIdentifier(GCancellable *cancelled) const;

private:
    SystemBus m_bus;
};

} // namespace parloquin
