#include "Parloquin/ViewModel/ParloquinViewModel.h"

#include "Parloquin/Manager/DeveloperLog.h"
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Request/StartRequestModel.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Networking/Model/Response/StartResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/Device.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "Parloquin/ViewModel/Base/Answer.h"

namespace parloquin {

AnswerOrigin<ParloquinViewModel> ParloquinViewModel::origin()
{
    return { weak_from_this(), presentedViewController };
}

void ParloquinViewModel::requestInit()
{
    ApiRequest::initializer([origin = origin()](const Result<InitResponseModel> &result) {
        const auto *const envelope = printed(result);
        if (!envelope) {
            tellFailure(ParloquinError::serverError);
            origin.hideProgress();
            settleList(origin);
            return;
        }
        origin.onMainThread([origin, answer = envelope->result](ParloquinViewModel &self) {
            self.initResponse =
                answer ? std::make_shared<const InitResponseModel>(*answer) : nullptr;
            self.kits = answer && answer->list ? *answer->list : QList<ThirdPartyKitModel>();
            self.rebindScreen();
            settleList(origin); // behind the reload that the screen has just queued
        });
    });
}

void ParloquinViewModel::start(const ThirdPartyKitModel &kit)
{
    const URLSchemeManager schemes;
    if (!kit.appPackage || !schemes.checkIfAppIsInstalled(*kit.appPackage))
        return;
    if (!presentedViewController.expired())
        HudManager::shared().show(presentedViewController);

    StartRequestModel request;
    request.countryCode =
        StartRequestModel::getCountryCodeFromCarrier().value_or(Device::regionCode());
    request.app = kit.app;
    request.installedApps = schemes.getInstalledAppsOnDevice(initResponse
            ? initResponse->appPackageList.value_or(QList<AppPackageModel>())
            : QList<AppPackageModel>());
    ApiRequest::start(request, [origin = origin()](const Result<StartResponseModel> &result) {
        origin.hideProgress();
        const auto *const envelope = printed(result);
        if (!envelope) {
            tellFailure(ParloquinError::serverError);
            return;
        }
        if (origin.isGone())
            return;
        const StartResponseModel answer = envelope->result.value_or(StartResponseModel());
        openDeeplink(answer.deeplink.value_or(QString()));
        origin.onMainThread([reference = answer.reference](
                                ParloquinViewModel &self) { self.startReference = reference; });
    });
}

void ParloquinViewModel::openDeeplink(const QString &deeplink)
{
    onMain([deeplink] {
        const QUrl url = UrlOpener::parse(deeplink);
        if (!url.isValid())
            qCWarning(developerLog, "start: no link that could be opened came with the answer");
        else if (UrlOpener::canOpen(url))
            UrlOpener::open(
                url, [](const QString &fault) { LogManager::shared().log(fault, true); });
        else
            qCWarning(developerLog, "%ls: no handler for the link that the service sent",
                qUtf16Printable(url.scheme()));
    });
}

void ParloquinViewModel::checkStatusAfterThirdPartyApp()
{
    if (!startReference)
        return;
    if (!presentedViewController.expired())
        HudManager::shared().show(presentedViewController);
    // The reference stays: every later return asks again, until a new start replaces it.
    ApiRequest::check({ .reference = startReference },
        [origin = origin()](const Result<CheckResponseModel> &result) {
            origin.hideProgress();
            const auto *const envelope = printed(result);
            if (!envelope)
                tellFailure(ParloquinError::serverError);
            else if (!origin.isGone())
                tellOutcome(envelope->result ? envelope->result->sessionId : std::nullopt);
        });
}

} // namespace parloquin
