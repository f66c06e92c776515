#pragma once

#include "Sandbox/Process.h"

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QLocalServer>

#include <optional>

/// \brief A system bus of the test's own, with a modem service made of mock objects.
///
/// Every call waits until it has come about. SIM N lies in modem N unless it is moved.
class SystemBus {
public:
    void start();
    void stop() { m_bus.reset(); }
    /// \param answers whether it ever tells its objects
    void startService(bool answers = true);
    void stopService() { m_service.reset(); }

    static void addModem(int number);
    /// \param identifier of the operator; empty while the SIM is locked
    static void addSim(int number, const QString &identifier);
    static void unlock(int sim, const QString &identifier);
    static void putIn(int modem, std::optional<int> sim); ///< or nothing
    static void tellOf(int modem); ///< that it has come

    const QTemporaryDir folder; ///< of its sockets
    QLocalServer silent; ///< in place of it: takes connections and says nothing

private:
    std::optional<Process> m_bus;
    std::optional<Process> m_service;
};
