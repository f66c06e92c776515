#pragma once

#include <QtCore/QString>

/// \brief What the device says of itself. Any thread; read afresh on every call.
namespace parloquin::Device {

/// The name the user gave the device, else the host name.
[[nodiscard]] QString name();

/// The system's version number, as "12".
[[nodiscard]] QString systemVersion();

/// An upper-case UUID (RFC 4122) that is the same for all apps of one organisation on this device
/// and tells nothing else of it; empty where the device has no identity.
[[nodiscard]] QString identifierForVendor();

/// ISO 639 language code of the system locale; empty where it has none.
[[nodiscard]] QString languageCode();

/// ISO 3166-1 alpha-2 region code of the system locale; empty where it has none.
[[nodiscard]] QString regionCode();

/// IANA name of the current time zone.
[[nodiscard]] QString timeZone();

} // namespace parloquin::Device
