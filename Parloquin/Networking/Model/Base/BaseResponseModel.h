#pragma once

#include "Parloquin/Networking/Model/Base/MetaModel.h"

namespace parloquin {

/// \brief The envelope of every answer: how the call went, and what it brought.
template <class T> struct BaseResponseModel {
    std::optional<MetaModel> meta;
    std::optional<T> result;

    /// The meta block alone decides; an answer with a status of 200 and no result is a success.
    [[nodiscard]] bool isSuccess() const
    {
        return meta
            && (meta->httpStatusCode == HttpStatusCode::success200
                || meta->httpStatusCode == HttpStatusCode::success201);
    }

    static constexpr auto fields()
    {
        return std::tuple {
            field("meta", &BaseResponseModel::meta),
            field("result", &BaseResponseModel::result),
        };
    }
};

} // namespace parloquin
