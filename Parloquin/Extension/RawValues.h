#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QLatin1String>
#include <QtCore/QString>

#include <optional>
#include <type_traits>

namespace parloquin {

/// \brief What stands for a case on the wire: `int` or QString, by the enumeration.
template <class Enum> [[nodiscard]] auto rawValue(Enum value)
{
    using Raw = typename decltype(RawValues<Enum>::rows)::value_type::second_type;
    using Result = std::conditional_t<std::is_same_v<Raw, int>, int, QString>;
    for (const auto &[candidate, raw] : RawValues<Enum>::rows) {
        if (candidate != value)
            continue;
        if constexpr (std::is_same_v<Raw, int>)
            return Result(raw);
        else
            return Result(QLatin1String(raw));
    }
    return Result(); // unreachable: every case has its row
}

/// \return the case of an integer; nothing for any other
template <class Enum> [[nodiscard]] std::optional<Enum> fromRaw(int raw)
{
    for (const auto &[value, candidate] : RawValues<Enum>::rows) {
        if (candidate == raw)
            return value;
    }
    return {};
}

/// \return the case of exactly this text; nothing for any other
template <class Enum> [[nodiscard]] std::optional<Enum> fromRaw(QStringView raw)
{
    for (const auto &[value, candidate] : RawValues<Enum>::rows) {
        if (raw == QLatin1String(candidate))
            return value;
    }
    return {};
}

} // namespace parloquin
