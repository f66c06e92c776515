#pragma once

#include "Parloquin/Platform/ReachabilityTarget.h"
#include "Parloquin/Platform/SerialQueue.h"

#include <QtCore/QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace parloquin {

class NotificationCenter;

/// \brief What went wrong, with the system's code of that moment.
namespace ReachabilityErrorCase {
struct failedToCreateWithAddress {
    ReachabilityAddress address;
    qint32 code;
};
struct failedToCreateWithHostname {
    QString hostname;
    qint32 code;
};
struct unableToSetCallback {
    qint32 code;
};
struct unableToSetDispatchQueue {
    qint32 code;
};
struct unableToGetFlags {
    qint32 code;
};
} // namespace ReachabilityErrorCase

using ReachabilityError = std::variant<ReachabilityErrorCase::failedToCreateWithAddress,
    ReachabilityErrorCase::failedToCreateWithHostname, ReachabilityErrorCase::unableToSetCallback,
    ReachabilityErrorCase::unableToSetDispatchQueue, ReachabilityErrorCase::unableToGetFlags>;

inline const QString reachabilityChanged = QStringLiteral("reachabilityChanged");
/// \deprecated never posted
inline const QString ReachabilityChangedNotification =
    QStringLiteral("ReachabilityChangedNotification");

/// \brief Watches whether a target can be reached, and over what.
///
/// Create, set the callbacks, start, stop: on one thread. Flags are read on a serial queue of its
/// own; changes are told on the notification queue, or on the serial queue where there is none.
/// The getters may be asked from any thread. It stops when its last owner lets go of it.
class Reachability : public std::enable_shared_from_this<Reachability> {
public:
    enum class Connection {
        none, ///< \deprecated never produced
        unavailable,
        wifi,
        cellular,
    };
    /// \deprecated see Connection
    enum class NetworkStatus { notReachable, reachableViaWiFi, reachableViaWWAN };

    [[nodiscard]] static QString description(Connection connection);
    /// \deprecated see Connection
    [[nodiscard]] static QString description(NetworkStatus status);
    /// \return one character a flag in a fixed order, "-" for each that is absent
    [[nodiscard]] static QString description(ReachabilityFlags flags);

    using Created = std::variant<std::shared_ptr<Reachability>, ReachabilityError>;
    using Callback = std::function<void(Reachability &)>;

    [[nodiscard]] static std::shared_ptr<Reachability> create(
        std::unique_ptr<ReachabilityTarget> reachabilityRef, QualityOfService queueQoS,
        const std::shared_ptr<SerialQueue> &targetQueue,
        std::shared_ptr<DispatchQueue> notificationQueue);
    [[nodiscard]] static Created create(const QString &hostname, QualityOfService queueQoS,
        const std::shared_ptr<SerialQueue> &targetQueue,
        std::shared_ptr<DispatchQueue> notificationQueue);
    /// The internet in general.
    [[nodiscard]] static Created create(QualityOfService queueQoS,
        const std::shared_ptr<SerialQueue> &targetQueue,
        std::shared_ptr<DispatchQueue> notificationQueue);
    ~Reachability();
    Q_DISABLE_COPY_MOVE(Reachability)

    /// \brief Reads the flags and tells every change from now on; does nothing while it runs.
    /// \return the error it failed with; it is stopped then
    [[nodiscard]] std::optional<ReachabilityError> startNotifier();
    /// \brief Tells nothing more once it has returned, but for what the notification queue holds.
    void stopNotifier();

    [[nodiscard]] Connection connection();
    /// Whether a connection would do, that is, is not unavailable.
    [[nodiscard]] bool isReachable();
    /// \deprecated see connection()
    [[nodiscard]] Connection currentReachabilityStatus() { return connection(); }
    /// \deprecated see connection()
    [[nodiscard]] QString currentReachabilityString() { return description(connection()); }
    /// \deprecated see connection()
    [[nodiscard]] bool isReachableViaWWAN() const;
    /// \deprecated see connection()
    [[nodiscard]] bool isReachableViaWiFi() const;
    [[nodiscard]] QString description() const;

    Callback whenReachable; ///< told after a change to any connection
    Callback whenUnreachable; ///< told after a change to none
    bool reachableOnWWAN = true; ///< \deprecated not consulted
    std::atomic<bool> allowsCellularConnection { true };
    NotificationCenter *notificationCenter; ///< borrowed; posts reachabilityChanged
    bool isRunningOnDevice = true;

private:
    class ReachabilityWeakifier;

    Reachability(std::unique_ptr<ReachabilityTarget> target, QualityOfService qos,
        const std::shared_ptr<SerialQueue> &targetQueue,
        std::shared_ptr<DispatchQueue> notificationQueueGiven);

    [[nodiscard]] std::optional<ReachabilityFlags> knownFlags() const;
    [[nodiscard]] std::optional<ReachabilityError> setReachabilityFlags();
    void store(ReachabilityFlags newFlags);
    void notifyReachabilityChanged();
    void deliver();

    std::atomic<bool> notifierRunning { false };
    std::unique_ptr<ReachabilityTarget> reachabilityRef;
    std::unique_ptr<SerialQueue> reachabilitySerialQueue;
    std::shared_ptr<DispatchQueue> notificationQueue;
    std::atomic<qint64> flags; ///< below 0 while unknown; written on the serial queue only
};

} // namespace parloquin
