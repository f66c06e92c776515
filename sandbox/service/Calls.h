#pragma once

#include "sandbox/service/Scenario.h"
#include "sandbox/service/State.h"

#include <nlohmann/json.hpp>
#include <string>

namespace sandbox {

/// What a call gives, and what the console adds to its line.
struct CallResult {
    nlohmann::json result;
    std::string note;
};

/// \brief The calls of the service: from right parameters to a result.
///
/// Made for one request, which keeps to one scenario. Both must outlive it.
class Calls {
public:
    /// \param language in which texts are wanted, by its code
    Calls(const Scenario &scenario, State &state, std::string language);

    /// \param call a name that isCall() knows
    /// \param parameters tested by the judge
    /// \param ownUrl scheme, host and port under which the client reached us; icons are below it
    Answer<CallResult> perform(
        const std::string &call, const nlohmann::json &parameters, const std::string &ownUrl);

    /// The full number that a request is about; empty when there is none.
    std::string numberOf(const std::string &call, const nlohmann::json &parameters) const;

private:
    CallResult init(const nlohmann::json &parameters, const std::string &ownUrl) const;
    Answer<CallResult> start(const nlohmann::json &parameters);
    Answer<CallResult> check(const nlohmann::json &parameters);
    Answer<CallResult> sendOtp(const nlohmann::json &parameters);
    Answer<CallResult> checkOtp(const nlohmann::json &parameters);
    Answer<CallResult> result(const nlohmann::json &parameters) const;
    CallResult country() const;

    /// Plus and digits, or why the number cannot be dialled.
    Answer<std::string> fullNumber(
        const std::string &number, const std::string &countryCode, bool withPhoneCode) const;

    const Scenario &m_scenario;
    State &m_state;
    std::string m_language;
};

}
