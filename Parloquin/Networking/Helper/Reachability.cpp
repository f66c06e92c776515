#include "Parloquin/Networking/Helper/Reachability.h"

#include "Parloquin/Platform/NotificationCenter.h"

#include <utility>

namespace parloquin {

namespace {

constexpr qint64 unknownFlags = -1;

QString unavailableFlags() { return QStringLiteral("unavailable flags"); }

/// A path that comes up only when somebody asks for it, and nobody may.
bool isConnectionRequiredAndNotAutomatic(ReachabilityFlags flags)
{
    const bool isAutomatic = (flags & (connectionOnTraffic | connectionOnDemand)) != 0;
    return (flags & connectionRequired) != 0
        && (!isAutomatic || (flags & interventionRequired) != 0);
}

} // namespace

// What the target holds on to: it knows the way to its Reachability without keeping that alive.
class Reachability::ReachabilityWeakifier final : public ReachabilityContext {
public:
    explicit ReachabilityWeakifier(std::weak_ptr<Reachability> given)
        : reachability(std::move(given))
    {
    }

    void changed(ReachabilityFlags newFlags) override
    {
        if (const auto self = reachability.lock())
            self->store(newFlags);
    }

    [[nodiscard]] QString description() const override
    {
        const auto self = reachability.lock();
        return self ? self->description() : QStringLiteral("nil");
    }

private:
    std::weak_ptr<Reachability> reachability;
};

QString Reachability::description(Connection connection)
{
    switch (connection) {
    case Connection::none:
        return QStringLiteral("unavailable");
    case Connection::unavailable:
        return QStringLiteral("No Connection");
    case Connection::wifi:
        return QStringLiteral("WiFi");
    case Connection::cellular:
        return QStringLiteral("Cellular");
    }
    return {};
}

QString Reachability::description(NetworkStatus status)
{
    switch (status) {
    case NetworkStatus::notReachable:
        return QStringLiteral("No Connection");
    case NetworkStatus::reachableViaWiFi:
        return QStringLiteral("WiFi");
    case NetworkStatus::reachableViaWWAN:
        return QStringLiteral("Cellular");
    }
    return {};
}

QString Reachability::description(ReachabilityFlags flags)
{
    QString text;
    const auto put = [&](ReachabilityFlag flag, char letter) {
        text += QLatin1Char((flags & flag) != 0 ? letter : '-');
    };
    put(isWWAN, 'W');
    put(reachable, 'R');
    text += QLatin1Char(' ');
    put(connectionRequired, 'c');
    put(transientConnection, 't');
    put(interventionRequired, 'i');
    put(connectionOnTraffic, 'C');
    put(connectionOnDemand, 'D');
    put(isLocalAddress, 'l');
    put(isDirect, 'd');
    return text;
}

Reachability::Reachability(std::unique_ptr<ReachabilityTarget> target, QualityOfService qos,
    const std::shared_ptr<SerialQueue> &targetQueue,
    std::shared_ptr<DispatchQueue> notificationQueueGiven)
    : notificationCenter(NotificationCenter::defaultCenter())
    , reachabilityRef(std::move(target))
    , reachabilitySerialQueue(std::make_unique<SerialQueue>(
          QStringLiteral("com.parloquin.reachability"), qos, targetQueue))
    , notificationQueue(std::move(notificationQueueGiven))
    , flags(unknownFlags)
{
}

Reachability::~Reachability() { stopNotifier(); }

std::shared_ptr<Reachability> Reachability::create(
    std::unique_ptr<ReachabilityTarget> reachabilityRef, QualityOfService queueQoS,
    const std::shared_ptr<SerialQueue> &targetQueue,
    std::shared_ptr<DispatchQueue> notificationQueue)
{
    return std::shared_ptr<Reachability>(new Reachability(
        std::move(reachabilityRef), queueQoS, targetQueue, std::move(notificationQueue)));
}

Reachability::Created Reachability::create(const QString &hostname, QualityOfService queueQoS,
    const std::shared_ptr<SerialQueue> &targetQueue,
    std::shared_ptr<DispatchQueue> notificationQueue)
{
    auto target = ReachabilityTarget::createWithName(hostname);
    if (!target)
        return ReachabilityErrorCase::failedToCreateWithHostname { hostname,
            ReachabilityTarget::lastError() };
    return create(std::move(target), queueQoS, targetQueue, std::move(notificationQueue));
}

Reachability::Created Reachability::create(QualityOfService queueQoS,
    const std::shared_ptr<SerialQueue> &targetQueue,
    std::shared_ptr<DispatchQueue> notificationQueue)
{
    const ReachabilityAddress zero;
    auto target = ReachabilityTarget::createWithAddress(zero);
    if (!target)
        return ReachabilityErrorCase::failedToCreateWithAddress { zero,
            ReachabilityTarget::lastError() };
    return create(std::move(target), queueQoS, targetQueue, std::move(notificationQueue));
}

std::optional<ReachabilityError> Reachability::startNotifier()
{
    if (notifierRunning)
        return std::nullopt;

    // The code is read before stopping, which may overwrite it.
    if (!reachabilityRef->setCallback(std::make_shared<ReachabilityWeakifier>(weak_from_this()))) {
        const qint32 code = ReachabilityTarget::lastError();
        stopNotifier();
        return ReachabilityErrorCase::unableToSetCallback { code };
    }
    if (!reachabilityRef->setDispatchQueue(reachabilitySerialQueue.get())) {
        const qint32 code = ReachabilityTarget::lastError();
        stopNotifier();
        return ReachabilityErrorCase::unableToSetDispatchQueue { code };
    }
    if (auto error = setReachabilityFlags())
        return error;
    notifierRunning = true;
    return std::nullopt;
}

void Reachability::stopNotifier()
{
    static_cast<void>(reachabilityRef->setCallback(nullptr));
    static_cast<void>(reachabilityRef->setDispatchQueue(nullptr));
    notifierRunning = false;
}

Reachability::Connection Reachability::connection()
{
    if (!knownFlags())
        static_cast<void>(setReachabilityFlags());
    const auto current = knownFlags();
    if (!current || (*current & reachable) == 0)
        return Connection::unavailable;
    if ((*current & isWWAN) != 0)
        return allowsCellularConnection ? Connection::cellular : Connection::unavailable;
    if (isConnectionRequiredAndNotAutomatic(*current))
        return Connection::unavailable;
    return Connection::wifi;
}

bool Reachability::isReachable()
{
    const Connection current = connection();
    return current == Connection::wifi || current == Connection::cellular;
}

bool Reachability::isReachableViaWWAN() const
{
    const auto current = knownFlags();
    return current && (*current & reachable) != 0 && (*current & isWWAN) != 0
        && allowsCellularConnection;
}

bool Reachability::isReachableViaWiFi() const
{
    const auto current = knownFlags();
    return current && (*current & reachable) != 0 && (*current & isWWAN) == 0
        && !isConnectionRequiredAndNotAutomatic(*current);
}

QString Reachability::description() const
{
    const auto current = knownFlags();
    return current ? description(*current) : unavailableFlags();
}

std::optional<ReachabilityFlags> Reachability::knownFlags() const
{
    const qint64 current = flags;
    if (current == unknownFlags)
        return std::nullopt;
    return static_cast<ReachabilityFlags>(current);
}

std::optional<ReachabilityError> Reachability::setReachabilityFlags()
{
    std::optional<ReachabilityError> error;
    reachabilitySerialQueue->sync([this, &error] {
        if (const auto read = reachabilityRef->flags()) {
            store(*read);
            return;
        }
        const qint32 code = ReachabilityTarget::lastError();
        stopNotifier();
        error = ReachabilityErrorCase::unableToGetFlags { code };
    });
    return error;
}

void Reachability::store(ReachabilityFlags newFlags)
{
    if (flags.exchange(newFlags) != static_cast<qint64>(newFlags))
        notifyReachabilityChanged();
}

void Reachability::notifyReachabilityChanged()
{
    const auto step = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->deliver();
    };
    if (notificationQueue)
        notificationQueue->async(step);
    else
        step();
}

void Reachability::deliver()
{
    // A copy: the callback may replace itself.
    const Callback callback =
        connection() != Connection::unavailable ? whenReachable : whenUnreachable;
    if (callback)
        callback(*this);
    notificationCenter->post(reachabilityChanged, this);
}

} // namespace parloquin
