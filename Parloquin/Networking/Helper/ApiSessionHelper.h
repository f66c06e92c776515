#pragma once

#include <QtCore/QtGlobal>

#include <atomic>
#include <memory>

namespace parloquin {

class Reachability;

/// \brief Knows whether there is a network to send requests over.
class ApiSessionHelper {
public:
    /// First called on the main thread; the watch starts with it.
    static ApiSessionHelper &shared();
    ~ApiSessionHelper();
    Q_DISABLE_COPY_MOVE(ApiSessionHelper)

    /// Starts true; written on the main thread, read anywhere.
    std::atomic<bool> isNetworkReachable { true };

    void startObserver();

private:
    ApiSessionHelper();

    std::unique_ptr<Reachability> reachability;
};

} // namespace parloquin
