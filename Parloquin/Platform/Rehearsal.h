#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

/// \brief What a test may say by the environment: where the service is, and what the device has.
///
/// Heard by a library that is built for a loopback address, and by no other: what is built for a
/// real service reads none of these variables. Each is read anew at each use. Any thread.
namespace parloquin::Rehearsal {

/// The host:port that the library is built for, as it stands; defined where that is known.
[[nodiscard]] QString builtFor();

/// \brief Where the service is: as built, or the loopback address in `PARLOQUIN_SERVICE_HOST`.
///
/// An address is an IPv4 or IPv6 address of the loopback and a port. A value that is none is
/// complained about on standard error, and left alone.
[[nodiscard]] QString serviceHost();

/// \brief Whether the device has a default route, by `PARLOQUIN_ROUTE`: `none` or `default`.
/// \return nothing where the device itself is to be asked
[[nodiscard]] std::optional<bool> hasRoute();

/// \brief Asks the socket at `PARLOQUIN_DESKTOP` in place of the desktop's handlers.
///
/// One connection a question. It gets a line, `can SCHEME` or `open URL`, and answers by the line
/// `yes` within 1.5 seconds; all else is a no.
/// \return nothing where the desktop itself is to be asked
[[nodiscard]] std::optional<bool> askDesktop(const QByteArray &question);

} // namespace parloquin::Rehearsal
