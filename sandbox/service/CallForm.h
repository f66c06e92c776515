#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace sandbox {

/// The calls of the service, in the order in which a client declares them.
inline constexpr std::string_view callNames[] = { "init", "start", "check", "send-otp", "check-otp",
    "result", "country" };

bool isCall(std::string_view name);

/// What else may go wrong by name: a connection, whatever it brings, and the picture of an app.
inline constexpr std::string_view connectionName = "connection";
inline constexpr std::string_view iconName = "icon";

/// Tests the parameters of \p call against the keys that it has: none missing, none unknown, every
/// value a text and none empty (a client leaves an empty text out).
/// \return what is wrong, naming the key; nothing when all is well
std::optional<std::string> faultOfParameters(
    std::string_view call, const nlohmann::json &parameters);

/// A plus and digits, as E.164 writes a number.
bool isFullNumber(std::string_view text);

/// The one spelling of \p json that a client may send: compact, keys sorted, slashes escaped.
std::string canonicalText(const nlohmann::json &json);

}
