#pragma once

#include <string>

namespace sandbox {

/// Why a request gets no result.
struct Refusal {
    int status = 400; ///< one of 400, 403, 404, 429, 500: a client knows no other
    std::string errorCode; ///< six digits, or empty
    std::string reason; ///< for the answer and the console; names no person
};

namespace ErrorCode {
inline constexpr auto userNotFound = "403001";
inline constexpr auto tokenNotFound = "403002";
inline constexpr auto signatureMismatch = "403003";
inline constexpr auto encryptionRequired = "403026";
}

}
