#pragma once

#include "Parloquin/Networking/Model/Request/CheckOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckResultRequestModel.h"
#include "Parloquin/Networking/Model/Request/CountryRequestModel.h"
#include "Parloquin/Networking/Model/Request/InitRequestModel.h"
#include "Parloquin/Networking/Model/Request/SendOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/StartRequestModel.h"
#include "Parloquin/Transport/UrlRequest.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <utility>
#include <variant>

namespace parloquin {

/// \brief One call to the service with its request model. A plain value.
class ApiRouter {
public:
    enum class Route { initializer, start, check, sendOTP, checkOTP, checkResult, country };

    // clang-format off
    static ApiRouter initializer(InitRequestModel model) { return ApiRouter(std::move(model)); }
    static ApiRouter start(StartRequestModel model) { return ApiRouter(std::move(model)); }
    static ApiRouter check(CheckRequestModel model) { return ApiRouter(std::move(model)); }
    static ApiRouter sendOTP(SendOtpRequestModel model) { return ApiRouter(std::move(model)); }
    static ApiRouter checkOTP(CheckOtpRequestModel model) { return ApiRouter(std::move(model)); }
    static ApiRouter checkResult(CheckResultRequestModel model) { return ApiRouter(std::move(model)); }
    static ApiRouter country(CountryRequestModel model) { return ApiRouter(std::move(model)); }
    // clang-format on

    [[nodiscard]] Route route() const { return static_cast<Route>(m_model.index()); }

    /// Last part of the route's URL; not the name of its case.
    [[nodiscard]] QString path() const;

    /// "POST" for every route.
    [[nodiscard]] QByteArray method() const;

    /// The request model as a dictionary, as it comes: neither cleaned nor encrypted.
    [[nodiscard]] QJsonObject parameters() const;

    /// \brief Builds the signed and encrypted request of this moment; it always has a body.
    ///
    /// Any thread. Writes the signature's trace to standard output. A service address that is no
    /// URL stops the program; nothing else fails: without a signature the request goes out bare,
    /// without an encryption key its body is {"data":null}.
    [[nodiscard]] UrlRequest asURLRequest() const;

private:
    // In the order of Route.
    using Model = std::variant<InitRequestModel, StartRequestModel, CheckRequestModel,
        SendOtpRequestModel, CheckOtpRequestModel, CheckResultRequestModel, CountryRequestModel>;

    explicit ApiRouter(Model model)
        : m_model(std::move(model))
    {
    }

    Model m_model;
};

} // namespace parloquin
