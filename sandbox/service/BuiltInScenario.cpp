#include "sandbox/service/Countries.h"
#include "sandbox/service/Scenario.h"

#include <nlohmann/json.hpp>

namespace sandbox {
namespace {
constexpr auto head = R"({
  "keys": {
    "secret": "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e",
    "client": "parloquin-demo"
  },
  "clockToleranceSeconds": 300,
  "validation": "3rdparty",
  "alternative": "otp",
  "texts": {
    "description": "Pick an app to confirm your phone number. The message is ready, you only send it.",
    "alternative": "Get a code by SMS instead",
    "message": "Please confirm my number for the demo. My code is {code}. Please do not change this text.",
    "recipient": "Verification service"
  },
  "apps": [
    {
      "app": "parlo", "name": "Parlo", "appPackage": "parlo://", "text": "Verify with Parlo",
      "icon": "/sandbox/icons/parlo.png", "bgColour": "1b7a4b", "textColour": "ffffff"
    },
    {
      "app": "kite", "name": "Kite", "appPackage": "kite://", "text": "Verify with Kite",
      "icon": "/sandbox/icons/kite.png", "bgColour": "1565c0", "textColour": "ffffff"
    },
    {
      "app": "murmur", "name": "Murmur", "appPackage": "murmur://", "text": "Verify with Murmur",
      "icon": "/sandbox/icons/murmur.png", "bgColour": "6a45c2", "textColour": "ffffff"
    },
    {
      "app": "wrenly", "name": "Wrenly", "appPackage": "wrenly://", "text": "Verify with Wrenly",
      "icon": "/sandbox/icons/wrenly.png", "bgColour": "ffd24a", "textColour": "2b2100"
    },
    {
      "app": "hushbell", "name": "Hushbell", "appPackage": "hushbell://",
      "text": "Verify with Hushbell", "icon": "/sandbox/icons/hushbell.png"
    }
  ],
  "codes": { "fixed": null, "alphabet": "0123456789", "expirySeconds": 300, "attempts": 5 },
  "messageExpirySeconds": 600,
  "outcomes": {},
  "appPackageList": [ "parlo://", "kite://", "murmur://", "wrenly://", "hushbell://" ],
  "countries": [
)";
}

std::string builtInScenarioText()
{
    std::string text = head;
    std::string separator;
    for (const auto &country : allCountries()) {
        // Written by hand, a line a country: a printed scenario is there to be read and edited.
        text += separator + R"(    { "countryCode": )" + nlohmann::json(country.countryCode).dump()
            + R"(, "title": )" + nlohmann::json(country.title).dump() + R"(, "phoneCode": )"
            + nlohmann::json(country.phoneCode).dump() + " }";
        separator = ",\n";
    }
    return text + "\n  ]\n}\n";
}

}
