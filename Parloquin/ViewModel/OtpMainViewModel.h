#pragma once

#include "Parloquin/ViewModel/Base/BaseViewModel.h"

#include <QtCore/QString>

#include <memory>
#include <optional>

namespace parloquin {

/// \brief Asks the service to send a code to the number typed. Main thread only.
class OtpMainViewModel : public BaseViewModel,
                         public std::enable_shared_from_this<OtpMainViewModel> {
public:
    using BaseViewModel::BaseViewModel;

    std::optional<QString> selectedCountryCode;
    std::optional<QString> phoneCode; ///< dialling prefix of the chosen country
    std::optional<QString> phoneNumber; ///< as typed, without the prefix; once set, never empty
    std::optional<QString> reference; ///< of the code sent last

    /// \brief Sends for a code; an answer with a reference moves the screen on.
    ///
    /// Refuses in silence while the number or the country is missing.
    void requestSendOtp();
};

} // namespace parloquin
