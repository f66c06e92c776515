#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <array>
#include <utility>

namespace parloquin {

/// \brief A way to verify a phone number.
enum class ValidationMethodEnum {
    accountkit,
    otp,
    call,
    thirdParty,
    whatsapp,
    telegram,
    viber,
};

template <> struct RawValues<ValidationMethodEnum> {
    static constexpr auto rows = std::to_array<std::pair<ValidationMethodEnum, const char *>>({
        { ValidationMethodEnum::accountkit, "accountkit" },
        { ValidationMethodEnum::otp, "otp" },
        { ValidationMethodEnum::call, "call" },
        { ValidationMethodEnum::thirdParty, "3rdparty" },
        { ValidationMethodEnum::whatsapp, "whatsapp" },
        { ValidationMethodEnum::telegram, "telegram" },
        { ValidationMethodEnum::viber, "viber" },
    });
};

} // namespace parloquin
