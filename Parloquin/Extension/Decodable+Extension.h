#pragma once

#include "Parloquin/Extension/JsonType.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>
#include <type_traits>

namespace parloquin {

/// Asks a model that has no default constructor for one whose fields are still to be filled.
struct Undecoded { };

/// Into any model, by its table; decode() is the way in.
[[nodiscard]] bool decodeModel(
    const QByteArray &body, void *model, const JsonType &type, QString *fault);

/// \brief Reads a model from a JSON body, strictly: a wrong type is a fault, never a default.
///
/// Any thread. The whole body must be one valid JSON object; keys that the model does not list are
/// passed over, whatever their numbers; of a key given twice the last counts. A missing or null
/// optional is empty.
/// \param fault where not null, set to the place and the reason of a failure, as
/// `result.list[2].app: expected string`
/// \return nothing on any fault
template <class Model>
[[nodiscard]] std::optional<Model> decode(const QByteArray &body, QString *fault = nullptr)
{
    std::optional<Model> model;
    if constexpr (std::is_default_constructible_v<Model>)
        model.emplace();
    else
        model.emplace(Undecoded {});
    if (!decodeModel(body, &*model, jsonType<Model>, fault))
        model.reset();
    return model;
}

} // namespace parloquin
