#include "Parloquin/ViewModel/Base/Answer.h"

#include "Parloquin/Manager/DeveloperLog.h"
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"

namespace parloquin {

namespace {
std::shared_ptr<ParloquinDelegate> listener()
{
    auto delegate = ParloquinSingleton::shared().delegate();
    if (!delegate)
        qCWarning(developerLog, "an outcome reaches nobody: no delegate is set");
    return delegate;
}
} // namespace

void hideProgressOf(const std::weak_ptr<Updateable> &screen) { HudManager::shared().hide(screen); }

void tellFailure(ParloquinError error)
{
    if (const auto delegate = listener())
        delegate->verificationDidFail(error);
}

void tellOutcome(const std::optional<QString> &sessionId)
{
    if (!sessionId)
        tellFailure(ParloquinError::authorizationError);
    else if (const auto delegate = listener())
        delegate->verificationDidSucceed(*sessionId);
}

} // namespace parloquin
