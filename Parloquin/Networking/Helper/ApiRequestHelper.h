#pragma once

#include "Parloquin/Networking/Model/Base/BaseRequestHeaderModel.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace parloquin {

/// \brief Cleans, signs and encrypts the parameters of one request.
///
/// Made for one request and dropped after it. Any thread. Each signature writes its trace to
/// standard output.
class ApiRequestHelper {
public:
    ApiRequestHelper(std::optional<QJsonObject> parameters, std::optional<QJsonObject> headers);

    /// \return the headers with the signature in place; nothing where no signature can be made
    [[nodiscard]] std::optional<QJsonObject> requestHeaders() const;

    /// \return the body: the cleaned parameters, or {"data": cipher text or null} where the headers
    /// mark the request as encrypted; nothing without parameters
    [[nodiscard]] std::optional<QJsonObject> requestParameters() const;

private:
    [[nodiscard]] std::optional<EncryptedState> encryptStatus() const;
    [[nodiscard]] std::optional<QJsonObject> encryptedParameters() const;
    [[nodiscard]] std::optional<QString> requestSignature() const;
    static void logHMAC(const QString &text, const std::optional<QString> &signature);

    const std::optional<QJsonObject> parameters; ///< cleaned
    const std::optional<QJsonObject> headers;
};

} // namespace parloquin
