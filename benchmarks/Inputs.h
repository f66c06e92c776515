#pragma once

#include "Parloquin/Networking/Model/Request/StartRequestModel.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

/// \brief Made-up texts of the wire. The same seed gives the same text, another one another.
namespace Inputs {

/// \param bytes of the JSON text, met within a few
[[nodiscard]] parloquin::StartRequestModel startRequest(unsigned seed, int bytes);
/// The envelope of an answer to `start`. \param bytes as above
[[nodiscard]] QJsonObject startAnswer(unsigned seed, int bytes);
[[nodiscard]] QJsonObject initAnswer();
[[nodiscard]] QJsonObject countryAnswer(unsigned seed, int countries);

/// The body that carries the envelope: {"data": cipher text}.
[[nodiscard]] QByteArray encrypted(const QJsonObject &envelope);

} // namespace Inputs
