#pragma once

#include <QtCore/QString>

#include <memory>
#include <optional>

namespace parloquin {

class SerialQueue;

using ReachabilityFlags = quint32;

/// The bits of ReachabilityFlags.
enum ReachabilityFlag : ReachabilityFlags {
    transientConnection = 0x1,
    reachable = 0x2,
    connectionRequired = 0x4,
    connectionOnTraffic = 0x8,
    interventionRequired = 0x10,
    connectionOnDemand = 0x20,
    isLocalAddress = 0x10000,
    isDirect = 0x20000,
    isWWAN = 0x40000,
};

/// A socket address; the zero address of the default values stands for the internet in general.
struct ReachabilityAddress {
    quint8 length = 16;
    quint8 family = 2; // IPv4
    quint16 port = 0;
    quint32 address = 0;

    bool operator==(const ReachabilityAddress &) const = default;
};

/// \brief What a target tells of its changes; shared with it while it is set there.
class ReachabilityContext {
public:
    ReachabilityContext() = default;
    virtual ~ReachabilityContext();
    Q_DISABLE_COPY_MOVE(ReachabilityContext)

    /// Called on the target's queue, with flags that may equal the last ones.
    virtual void changed(ReachabilityFlags flags) = 0;

    /// Who listens, for logs.
    [[nodiscard]] virtual QString description() const = 0;
};

/// \brief How the platform says whether something can be reached.
///
/// An operation that fails returns false or nothing and leaves its code in lastError().
class ReachabilityTarget {
public:
    ReachabilityTarget() = default;
    virtual ~ReachabilityTarget();
    Q_DISABLE_COPY_MOVE(ReachabilityTarget)

    /// \return nothing for any address but the zero address, which needs no look at the network
    [[nodiscard]] static std::unique_ptr<ReachabilityTarget> createWithAddress(
        const ReachabilityAddress &address);

    /// \brief A host beyond the default route; its name is not resolved, which could take minutes.
    /// \return nothing where the text cannot be a host name
    [[nodiscard]] static std::unique_ptr<ReachabilityTarget> createWithName(const QString &host);

    /// \return the system's code of this thread's last failure
    [[nodiscard]] static qint32 lastError();

    /// \brief Sets who hears of changes; none clears. Nobody is called once this has returned.
    [[nodiscard]] virtual bool setCallback(std::shared_ptr<ReachabilityContext> context) = 0;

    /// \brief Starts the watch on that queue, which is borrowed; none ends the watch.
    [[nodiscard]] virtual bool setDispatchQueue(SerialQueue *queue) = 0;

    /// \return what holds now; nothing where the system does not say
    [[nodiscard]] virtual std::optional<ReachabilityFlags> flags() = 0;

protected:
    static void setLastError(qint32 code);

private:
    /// What each system answers for itself; all targets are this one.
    [[nodiscard]] static std::unique_ptr<ReachabilityTarget> ofDefaultRoute();
};

} // namespace parloquin
