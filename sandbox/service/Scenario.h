#pragma once

#include "sandbox/service/Fault.h"

#include <chrono>
#include <compare>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sandbox {

struct Keys {
    std::string secret; ///< 32 bytes
    std::string client;
};

/// A text, in one language or in several.
struct LocalText {
    std::map<std::string, std::string> byLanguage; ///< one that stands for all is English

    /// In English, or in whatever there is, where \p language has none.
    const std::string &in(const std::string &language) const;
};

/// A messaging app on offer. What is absent is left out of the answer.
struct App {
    std::string app;
    std::string name;
    std::optional<std::string> appPackage;
    std::optional<LocalText> text;
    std::optional<std::string> icon; ///< a URL, or a path on this service
    std::optional<std::string> bgColour;
    std::optional<std::string> textColour;
};

struct Country {
    std::string countryCode;
    std::string title;
    std::string phoneCode; ///< with the plus

    bool operator==(const Country &) const = default;
};

struct Texts {
    LocalText description;
    LocalText alternative;
    LocalText message; ///< "{code}" stands for the code of the attempt
    LocalText recipient;
};

struct Codes {
    static constexpr int length = 3; ///< characters: the boxes of a client
    std::optional<std::string> fixed;
    std::string alphabet;
    std::chrono::seconds expiry {};
    int attempts = 0; ///< wrong ones, before the reference is void
};

/// How one request that passed the judge is answered.
struct Outcome {
    int status = 200;
    std::string errorCode;
    std::string message;
    std::vector<std::string> without; ///< keys left out of the result; "result" leaves out all
    std::chrono::milliseconds delay {};
    bool plain = false; ///< not encrypted
    Fault fault;
    std::string said; ///< as it was set, in JSON

    bool refuses() const { return status >= 400; }
};

/// Which requests outcomes are for.
struct OutcomeKey {
    std::string call;
    /// Empty: everybody's; "number +90…" those about a phone number, "client …" those with this
    /// client key or device id.
    std::string whose = {};

    // clang-tidy takes the compiler's own 0 for a null pointer.
    auto operator<=>(const OutcomeKey &) const = default; // NOLINT(modernize-use-nullptr)
};

inline std::string whoseNumber(const std::string &number) { return "number " + number; }
inline std::string whoseClient(const std::string &client) { return "client " + client; }

/// The first request takes the first of a list, the last stands for all that follow. An empty list
/// says that nothing is set.
using OutcomeLists = std::map<OutcomeKey, std::vector<Outcome>>;

/// Says what is wrong with a scenario: the path of the field, then what was expected there.
class ScenarioError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// \brief What the service offers and how it answers: all that a developer may want to set.
struct Scenario {
    Keys keys;
    std::chrono::seconds clockTolerance {};
    std::string validation;
    std::optional<std::string> alternative;
    Texts texts;
    std::vector<App> apps;
    std::vector<std::string> appPackageList;
    std::vector<Country> countries;
    Codes codes;
    std::chrono::seconds messageExpiry {};
    OutcomeLists outcomes;
    std::string source; ///< JSON: what was read, as it was written

    /// Fields that \p json lacks come from the built-in scenario; "keys" it must have.
    /// \throws ScenarioError
    static Scenario fromJson(const nlohmann::json &json);
    /// \throws ScenarioError
    static Scenario fromText(const std::string &text);
    /// \throws ScenarioError, also when the file cannot be read; the message begins with its path
    static Scenario fromFile(const std::string &path);
    static Scenario builtIn();
};

/// The built-in scenario as text: whole, so that it can be saved and edited.
std::string builtInScenarioText();
/// The JSON schema of scenarios, for editors: it refuses nothing that is a scenario.
std::string scenarioSchemaText();

}
