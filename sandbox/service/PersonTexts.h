#pragma once

#include <string>

namespace sandbox {

/// \brief What a person reads of a refusal, in the language of the request.
///
/// Refusals that a developer mends name fields and headers, and stay in English; so does whatever a
/// scenario says in its own words, and a language that nobody wrote.
/// \param english as the console and the journal have it
std::string personText(const std::string &english, const std::string &language);

}
