#include "Parloquin/Parloquin.h"

#include "Parloquin/Controller/Base/ParloquinNavigationController.h"
#include "Parloquin/Controller/ParloquinMainViewController.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Platform/Telephony.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"

using namespace parloquin;

Parloquin::Parloquin()
    : m_options { true, QColor(Qt::blue), ParloquinStatusBarStyle::lightContent,
        ParloquinEnvironment::debug }
{
    static_assert(sizeof(Parloquin) == 28, "hosts of every version 1 give an object this room");
}

Parloquin::Parloquin(const ParloquinOptions::Record &record)
    : m_options { record.logActive, record.navigationBarBackgroundColor, record.statusBarColor,
        record.environment }
{
    // A field that came later is taken over only from headers that have it.
    ParloquinSingleton::shared().options = ParloquinOptions(record.environment, record.logActive,
        { record.navigationBarBackgroundColor, record.statusBarColor });
    LogManager::shared().isActive = record.logActive;
}

Parloquin::Parloquin(const ParloquinOptions &options)
    : Parloquin([&options] {
        const auto &given = reinterpret_cast<const Kept &>(options);
        return ParloquinOptions::Record { PARLOQUIN_VERSION_CHECK(1, 0, 0), given.environment,
            given.logActive, given.navigationBarBackgroundColor, given.statusBarColor };
    }())
{
}

ParloquinViewController *Parloquin::viewControllerForLogin()
{
    // A static kit's pictures would stay behind, as nothing else asks for the object they are in.
    Q_INIT_RESOURCE(Parloquin);
    // Each is ready later than it is asked; asked now, it is when a request needs it.
    ApiSessionHelper::shared();
    ApiClient::prepare();
    Telephony::shared().ask();
    return new ParloquinNavigationController(new ParloquinMainViewController);
}
