#pragma once

#include "Parloquin/Networking/Constant/ApiError.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"

#include <functional>
#include <utility>
#include <variant>

namespace parloquin {

/// \brief Outcome of one request: the whole envelope, or why there is none.
///
/// A success does not mean that the service was pleased: ask the envelope's isSuccess().
template <class T> class [[nodiscard]] Result {
public:
    static Result success(BaseResponseModel<T> response) { return Result(std::move(response)); }
    static Result failure(ApiError error) { return Result(error); }

    /// Null on failure.
    [[nodiscard]] const BaseResponseModel<T> *response() const
    {
        return std::get_if<BaseResponseModel<T>>(&m_outcome);
    }

    /// Null on success.
    [[nodiscard]] const ApiError *error() const { return std::get_if<ApiError>(&m_outcome); }

private:
    explicit Result(std::variant<BaseResponseModel<T>, ApiError> outcome)
        : m_outcome(std::move(outcome))
    {
    }

    std::variant<BaseResponseModel<T>, ApiError> m_outcome;
};

/// Runs exactly once; which thread, the operation says.
template <class T> using Completion = std::function<void(Result<T>)>;

} // namespace parloquin
