#pragma once

#include "Parloquin/Transport/UrlRequest.h"

#include <QtCore/QByteArray>

#include <optional>

namespace parloquin {

/// \brief Recognises and unwraps encrypted bodies. Any thread; no state.
class ApiResponseHelper {
public:
    /// \return whether the first header named X-TRZ-Encrypted, in whatever case, has the value "1"
    [[nodiscard]] bool checkResponseJsonEncryptedStatus(
        const std::optional<HeaderFields> &headerFields) const;

    /// \brief Plain text of an encrypted body, of an answer as of a request.
    /// \return nothing unless the body is a JSON object of texts alone, with a "data" that decrypts
    [[nodiscard]] std::optional<QByteArray> getData(const QByteArray &body) const;
};

} // namespace parloquin
