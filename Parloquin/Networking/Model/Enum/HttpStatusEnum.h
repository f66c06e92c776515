#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <array>
#include <utility>

namespace parloquin {

/// \brief Outcome class of a call, a JSON integer in the answer's meta block.
enum class HttpStatusCode {
    success200,
    success201,
    paramError,
    notFoundError,
    forbiddenError,
    limitError,
    internalServerError,
};

template <> struct RawValues<HttpStatusCode> {
    static constexpr auto rows = std::to_array<std::pair<HttpStatusCode, int>>({
        { HttpStatusCode::success200, 200 },
        { HttpStatusCode::success201, 201 },
        { HttpStatusCode::paramError, 400 },
        { HttpStatusCode::notFoundError, 404 },
        { HttpStatusCode::forbiddenError, 403 },
        { HttpStatusCode::limitError, 429 },
        { HttpStatusCode::internalServerError, 500 },
    });
};

/// \brief Detailed error of a call, a JSON string of six digits in the answer's meta block.
enum class ResponseErrorCode {
    authUserNotFound,
    authTokenNotFound,
    forbiddenSignatureMismatch,
    forbiddenEncryptionRequired,
};

template <> struct RawValues<ResponseErrorCode> {
    static constexpr auto rows = std::to_array<std::pair<ResponseErrorCode, const char *>>({
        { ResponseErrorCode::authUserNotFound, "403001" },
        { ResponseErrorCode::authTokenNotFound, "403002" },
        { ResponseErrorCode::forbiddenSignatureMismatch, "403003" },
        { ResponseErrorCode::forbiddenEncryptionRequired, "403026" },
    });
};

} // namespace parloquin
