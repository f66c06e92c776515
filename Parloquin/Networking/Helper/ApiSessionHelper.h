#pragma once

#include <QtCore/QtGlobal>

#include <atomic>
#include <memory>

namespace parloquin {

class Reachability;

/// \brief Knows whether there is a network to send requests over.
class ApiSessionHelper {
public:
    /// \brief The one of this process.
    ///
    /// First called on the main thread; the watch starts with it and ends with the application
    /// object. With a new application object the next call there starts a new watch.
    static ApiSessionHelper &shared();
    ~ApiSessionHelper();
    Q_DISABLE_COPY_MOVE(ApiSessionHelper)

    /// \brief Watches by a given Reachability; shared() watches the internet in general.
    explicit ApiSessionHelper(std::shared_ptr<Reachability> given);

    /// \brief Starts the notifier. Where that fails, says so and leaves the gate as it is.
    void startObserver();

private:
    std::shared_ptr<Reachability> reachability;

public:
    /// Starts true; written on the main thread, read anywhere.
    std::atomic<bool> isNetworkReachable { true };
};

} // namespace parloquin
