#include "Parloquin/Parloquin.h"

#include "Parloquin/Controller/Base/ParloquinNavigationController.h"
#include "Parloquin/Controller/ParloquinMainViewController.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Platform/Crypto.h"
#include "Parloquin/Platform/Telephony.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"
#include "Parloquin/Transport/UrlSession.h"

using namespace parloquin;

Parloquin::Parloquin()
    : m_options(ParloquinEnvironment::debug, true,
        { QColor(Qt::blue), ParloquinStatusBarStyle::lightContent })
{
}

Parloquin::Parloquin(const ParloquinOptions &options)
    : m_options(options)
{
    ParloquinSingleton::shared().options = options;
    LogManager::shared().isActive = options.logActive;
}

ParloquinViewController *Parloquin::viewControllerForLogin()
{
    // Both answer later than they are asked; asked now, they are ready when a request needs them.
    ApiSessionHelper::shared();
    Telephony::shared().ask();
    // Milliseconds, which the first request need not wait for.
    UrlSession::shared().async(Crypto::warmUp);
    return new ParloquinNavigationController(new ParloquinMainViewController);
}
