#pragma once

#include "Parloquin/Model/ThirdPartyKitModel.h"
#include "Parloquin/ViewModel/Base/BaseViewModel.h"
#include "Parloquin/ViewModel/Base/ListState.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>
#include <optional>

namespace parloquin {

template <class ViewModel> class AnswerOrigin;
struct InitResponseModel;

/// \brief The road by messaging app: which apps there are, the way to one, the outcome.
///
/// Main thread only. Outcomes go to the host's delegate on the network thread, or at once where
/// there is no network; those of a failed call also when the view model is gone by then.
class ParloquinViewModel : public BaseViewModel,
                           public std::enable_shared_from_this<ParloquinViewModel> {
public:
    using BaseViewModel::BaseViewModel;

    QList<ThirdPartyKitModel> kits; ///< the rows, in the service's order
    ListState listState;
    std::shared_ptr<const InitResponseModel> initResponse; ///< of the last `init`
    std::optional<QString> startReference; ///< of the last `start`; the key of every `check`

    /// \brief Asks which apps to offer; the screen hears of the answer by rebindData().
    void requestInit();

    /// \brief Begins a verification with an app and goes to it.
    ///
    /// Does nothing at all, deliberately, where the app is not on the device.
    void start(const ThirdPartyKitModel &kit);

    /// \brief Asks for the outcome, every time the user comes back; not before a start succeeded.
    void checkStatusAfterThirdPartyApp();

private:
    [[nodiscard]] AnswerOrigin<ParloquinViewModel> origin();
    static void openDeeplink(const QString &deeplink);
};

} // namespace parloquin
