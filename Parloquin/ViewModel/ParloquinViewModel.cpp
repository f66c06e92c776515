#include "Parloquin/ViewModel/ParloquinViewModel.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Manager/DeveloperLog.h"
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/Device.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"

#include <utility>

namespace parloquin {
namespace {

void tellOfNoDelegate()
{
    qCWarning(developerLog, "an outcome reaches nobody: no delegate is set");
}

/// Any thread. Asked for at each outcome: the host may have replaced it since the call began.
void tellFailure(ParloquinError error)
{
    if (const auto delegate = ParloquinSingleton::shared().delegate())
        delegate->verificationDidFail(error);
    else
        tellOfNoDelegate();
}

} // namespace

void ParloquinViewModel::Origin::hideProgress() const
{
    if (!viewModel.expired() && !screen.expired())
        HudManager::shared().hide(screen);
}

ParloquinViewModel::Origin ParloquinViewModel::origin()
{
    return { weak_from_this(), presentedViewController };
}

void ParloquinViewModel::requestInit()
{
    ApiRequest::initializer([origin = origin()](const auto &result) { receive(origin, result); });
}

void ParloquinViewModel::receive(const Origin &origin, const Result<InitResponseModel> &result)
{
    if (const ApiError *error = result.error()) {
        print(rawValue(*error));
        tellFailure(ParloquinError::serverError);
        origin.hideProgress();
        return;
    }

    const auto &envelope = *result.response();
    print(dump(envelope));
    if (origin.viewModel.expired())
        return;
    onMain([weak = origin.viewModel, answer = envelope.result] {
        const auto self = weak.lock();
        if (!self)
            return;
        self->initResponse = answer;
        self->kits = answer && answer->list ? *answer->list : QList<ThirdPartyKitModel>();
        self->rebindScreen();
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
    ApiRequest::start(
        request, [origin = origin()](const auto &result) { receive(origin, result); });
}

void ParloquinViewModel::receive(const Origin &origin, const Result<StartResponseModel> &result)
{
    origin.hideProgress();
    if (const ApiError *error = result.error()) {
        print(rawValue(*error));
        tellFailure(ParloquinError::serverError);
        return;
    }

    const auto &envelope = *result.response();
    print(dump(envelope));
    if (origin.viewModel.expired())
        return;
    const StartResponseModel answer = envelope.result.value_or(StartResponseModel());
    openDeeplink(answer.deeplink.value_or(QString()));
    onMain([weak = origin.viewModel, reference = answer.reference] {
        if (const auto self = weak.lock())
            self->startReference = reference;
    });
}

void ParloquinViewModel::openDeeplink(const QString &deeplink)
{
    onMain([deeplink] {
        const QUrl url = UrlOpener::parse(deeplink);
        if (url.isValid() && UrlOpener::canOpen(url))
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
        [origin = origin()](const auto &result) { receive(origin, result); });
}

void ParloquinViewModel::receive(const Origin &origin, const Result<CheckResponseModel> &result)
{
    origin.hideProgress();
    if (const ApiError *error = result.error()) {
        print(rawValue(*error));
        tellFailure(ParloquinError::serverError);
        return;
    }

    const auto &envelope = *result.response();
    print(dump(envelope));
    if (origin.viewModel.expired())
        return;
    // The session id alone decides, whatever the answer says of the validation.
    if (!envelope.result || !envelope.result->sessionId)
        tellFailure(ParloquinError::authorizationError);
    else if (const auto delegate = ParloquinSingleton::shared().delegate())
        delegate->verificationDidSucceed(*envelope.result->sessionId);
    else
        tellOfNoDelegate();
}

} // namespace parloquin
