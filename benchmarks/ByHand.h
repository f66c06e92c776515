#pragma once

#include "Parloquin/Networking/Model/Request/StartRequestModel.h"

#include <QtCore/QByteArray>

/// \brief The kit's work on a message, written out for the one message: JSON piece by piece,
/// libnettle, no models, no tables. Any thread.
namespace ByHand {

/// What a host's key file holds.
struct Keys {
    QByteArray clientKey;
    QByteArray secret; ///< 32 bytes
};
/// Read afresh.
[[nodiscard]] Keys keys();

/// A request of the kit's, all that differs from one to the next.
struct Request {
    QByteArray time; ///< milliseconds since 1970
    QByteArray signedText;
    QByteArray signature;
    QByteArray body;
};
[[nodiscard]] Request request(const parloquin::StartRequestModel &model, const Keys &keys);

/// The lines that the kit prints for one.
void print(const Request &request);

/// \return the plain text of an encrypted body; ends the program where it is none
[[nodiscard]] QByteArray plainText(const QByteArray &body, const Keys &keys);

} // namespace ByHand
