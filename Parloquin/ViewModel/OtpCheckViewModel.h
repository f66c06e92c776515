#pragma once

#include "Parloquin/ViewModel/Base/BaseViewModel.h"

#include <QtCore/QString>

#include <memory>
#include <optional>

namespace parloquin {

/// \brief Has the typed code checked and tells the host the outcome. Main thread only.
class OtpCheckViewModel : public BaseViewModel,
                          public std::enable_shared_from_this<OtpCheckViewModel> {
public:
    using BaseViewModel::BaseViewModel;

    std::optional<QString> reference; ///< of the code sent
    std::optional<QString> countryCode;
    std::optional<QString> phoneNumber; ///< as typed, without the dialling prefix
    std::optional<QString> otpCode; ///< all boxes in one

    /// \brief Sends the code, whatever its length; refuses in silence while it is empty.
    ///
    /// The outcome goes to the host's delegate, on the network thread, or at once where there is no
    /// network. A call that failed is reported even when the screen is gone by then; an answer is
    /// not.
    void requestCheckOtp();
};

} // namespace parloquin
