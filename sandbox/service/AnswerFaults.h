#pragma once

#include "sandbox/service/Fault.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

/// Faults that are made where an answer is made. Any thread; every function is pure.
namespace sandbox {

/// \return whether \p value may stand behind "json:" in a fault
bool isJsonFault(std::string_view value);

/// The text of \p envelope, spoilt if \p fault is one of JSON.
/// \throws FaultError when the answer has no such place
std::string textOf(nlohmann::json envelope, const Fault &fault);

/// Encrypts \p text, wrongly if \p fault is one of the cipher.
std::string cipherTextOf(const std::string &text, const Fault &fault, const std::string &key);

}
