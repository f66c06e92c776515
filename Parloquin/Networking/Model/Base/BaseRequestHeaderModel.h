#pragma once

#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <array>
#include <chrono>
#include <tuple>
#include <utility>

namespace parloquin {

/// \brief Whether a body is encrypted, as a header says it.
enum class EncryptedState { active, disable };

template <> struct RawValues<EncryptedState> {
    static constexpr auto rows = std::to_array<std::pair<EncryptedState, const char *>>({
        { EncryptedState::active, "1" },
        { EncryptedState::disable, "0" },
    });
};

/// \brief The fixed header set of every request; the keys are the names of the headers.
struct BaseRequestHeaderModel {
    /// Asks the device, the clock and the host's property list, at this moment.
    explicit BaseRequestHeaderModel(EncryptedState encryptedState);
    explicit BaseRequestHeaderModel(Undecoded) { }

    /// \return milliseconds since 1970, cut to whole seconds: always ends in "000"
    ///
    /// A clock before 1970 stops the program.
    [[nodiscard]] static QString timeStampText(std::chrono::system_clock::time_point now);

    QString userAgent;
    QString os;
    QString sdkVersion;
    QString clientDeviceID; ///< empty where the device has no identity
    QString lang; ///< ISO 639, or empty
    QString timeStamp;
    QString signature; ///< filled in when the parameters are known
    EncryptedState encrypted {};
    QString clientKey; ///< the host's ParloquinKey, or empty

    static constexpr auto fields()
    {
        return std::tuple {
            field("User-Agent", &BaseRequestHeaderModel::userAgent),
            field("X-TRZ-Os", &BaseRequestHeaderModel::os),
            field("X-TRZ-Sdk-Version", &BaseRequestHeaderModel::sdkVersion),
            field("X-TRZ-Client-Device-Id", &BaseRequestHeaderModel::clientDeviceID),
            field("X-TRZ-Lang", &BaseRequestHeaderModel::lang),
            field("X-TRZ-Req-Timestamp", &BaseRequestHeaderModel::timeStamp),
            field("X-TRZ-Req-Signature", &BaseRequestHeaderModel::signature),
            field("X-TRZ-Encrypted", &BaseRequestHeaderModel::encrypted),
            field("X-TRZ-Client-Key", &BaseRequestHeaderModel::clientKey),
        };
    }
};

} // namespace parloquin
