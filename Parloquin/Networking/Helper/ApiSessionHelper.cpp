#include "Parloquin/Networking/Helper/ApiSessionHelper.h"

#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Networking/Helper/Reachability.h"
#include "Parloquin/Platform/Fatal.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

#include <utility>

namespace parloquin {

namespace {

std::shared_ptr<Reachability> watchOfTheInternet()
{
    auto created = Reachability::create(QualityOfService::standard, nullptr, DispatchQueue::main());
    if (const auto *reachability = std::get_if<std::shared_ptr<Reachability>>(&created))
        return *reachability;
    fatal(QStringLiteral("cannot watch the network (system code %1); let this process use netlink "
                         "sockets")
              .arg(std::visit([](const auto &error) { return error.code; },
                  std::get<ReachabilityError>(created))));
}

} // namespace

ApiSessionHelper &ApiSessionHelper::shared()
{
    static ApiSessionHelper instance(nullptr);
    // The watch has a thread, so it lives no longer than the application object.
    const QCoreApplication *app = QCoreApplication::instance();
    if (app && !QCoreApplication::closingDown() && QThread::currentThread() == app->thread()
        && !instance.reachability) {
        instance.reachability = watchOfTheInternet();
        instance.isNetworkReachable = true;
        instance.startObserver();
        qAddPostRoutine([] {
            ApiSessionHelper &helper = shared();
            // Stopped first: from then on nobody but us holds it, and its thread ends here.
            helper.reachability->stopNotifier();
            helper.reachability.reset();
        });
    }
    return instance;
}

ApiSessionHelper::ApiSessionHelper(std::shared_ptr<Reachability> given)
    : reachability(std::move(given))
{
    if (reachability)
        startObserver();
}

ApiSessionHelper::~ApiSessionHelper() = default;

void ApiSessionHelper::startObserver()
{
    if (reachability->startNotifier()) {
        print(QStringLiteral("\n\n[Parloquin]"));
        print(QStringLiteral("Unable to start network reachability notifier."));
        print(QStringLiteral("[Parloquin]\n\n"));
    }
    // Borrowed: the helper outlives its watch.
    reachability->whenReachable = [this](Reachability &) { isNetworkReachable = true; };
    reachability->whenUnreachable = [this](Reachability &) { isNetworkReachable = false; };
}

} // namespace parloquin
