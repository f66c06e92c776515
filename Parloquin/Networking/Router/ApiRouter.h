#pragma once

#include "Parloquin/Networking/Router/ApiCalls.h"
#include "Parloquin/Transport/UrlRequest.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <utility>

namespace parloquin {

/// \brief One call to the service with what it sends. A plain value.
class ApiRouter {
public:
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel) name,
    enum class Route { PARLOQUIN_API_CALLS(PARLOQUIN_ROW) };
#undef PARLOQUIN_ROW

// A maker for each route, of its name.
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    static ApiRouter name(const RequestModel &model);
    PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW

    [[nodiscard]] Route route() const { return m_route; }

    /// Last part of the route's URL; not the name of its case.
    [[nodiscard]] QString path() const;

    /// "POST" for every route.
    [[nodiscard]] QByteArray method() const;

    /// The request model as a dictionary, as it comes: neither cleaned nor encrypted.
    [[nodiscard]] QJsonObject parameters() const { return m_parameters; }

    /// \brief Builds the signed and encrypted request of this moment; it always has a body.
    ///
    /// Any thread. Writes the signature's trace to standard output. A service address that is no
    /// URL stops the program; nothing else fails: without a signature the request goes out bare,
    /// without an encryption key its body is {"data":null}.
    [[nodiscard]] UrlRequest asURLRequest() const;

private:
    ApiRouter(Route route, QJsonObject parameters)
        : m_route(route)
        , m_parameters(std::move(parameters))
    {
    }

    Route m_route;
    QJsonObject m_parameters;
};

} // namespace parloquin
