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
    "description": {
      "en": "Pick an app to confirm your phone number. The message is ready, you only send it.",
      "de": "Wählen Sie eine App, um Ihre Nummer zu bestätigen. Die Nachricht ist fertig, Sie senden sie nur.",
      "fr": "Choisissez une application pour confirmer votre numéro. Le message est prêt, il suffit de l’envoyer.",
      "es": "Elija una aplicación para confirmar su número. El mensaje está listo, solo tiene que enviarlo.",
      "tr": "Numaranızı doğrulamak için bir uygulama seçin. Mesaj hazır, yalnızca göndermeniz yeterli.",
      "ar": "اختر تطبيقًا لتأكيد رقم هاتفك. الرسالة جاهزة، ما عليك إلا إرسالها."
    },
    "alternative": {
      "en": "Get a code by SMS instead", "de": "Stattdessen einen Code per SMS erhalten",
      "fr": "Recevoir plutôt un code par SMS", "es": "Recibir un código por SMS",
      "tr": "Bunun yerine SMS ile kod alın", "ar": "الحصول على رمز برسالة نصية بدلًا من ذلك"
    },
    "message": {
      "en": "Please confirm my number for the demo. My code is {code}. Please do not change this text.",
      "de": "Bitte bestätigen Sie meine Nummer für die Demo. Mein Code ist {code}. Bitte diesen Text nicht ändern.",
      "fr": "Merci de confirmer mon numéro pour la démo. Mon code est {code}. Merci de ne pas modifier ce texte.",
      "es": "Por favor, confirmen mi número para la demo. Mi código es {code}. No cambie este texto.",
      "tr": "Lütfen demo için numaramı doğrulayın. Kodum {code}. Lütfen bu metni değiştirmeyin.",
      "ar": "يرجى تأكيد رقمي للعرض التجريبي. رمزي هو {code}. يرجى عدم تغيير هذا النص."
    },
    "recipient": {
      "en": "Verification service", "de": "Bestätigungsdienst", "fr": "Service de vérification",
      "es": "Servicio de verificación", "tr": "Doğrulama hizmeti", "ar": "خدمة التحقق"
    }
  },
  "apps": [
    {
      "app": "parlo", "name": "Parlo", "appPackage": "parlo://", "text": {
        "en": "Verify with Parlo", "de": "Mit Parlo bestätigen", "fr": "Vérifier avec Parlo",
        "es": "Verificar con Parlo", "tr": "Parlo ile doğrula", "ar": "التحقق عبر Parlo"
      },
      "icon": "/sandbox/icons/parlo.png", "bgColour": "1b7a4b", "textColour": "ffffff"
    },
    {
      "app": "kite", "name": "Kite", "appPackage": "kite://", "text": {
        "en": "Verify with Kite", "de": "Mit Kite bestätigen", "fr": "Vérifier avec Kite",
        "es": "Verificar con Kite", "tr": "Kite ile doğrula", "ar": "التحقق عبر Kite"
      },
      "icon": "/sandbox/icons/kite.png", "bgColour": "1565c0", "textColour": "ffffff"
    },
    {
      "app": "murmur", "name": "Murmur", "appPackage": "murmur://", "text": {
        "en": "Verify with Murmur", "de": "Mit Murmur bestätigen", "fr": "Vérifier avec Murmur",
        "es": "Verificar con Murmur", "tr": "Murmur ile doğrula", "ar": "التحقق عبر Murmur"
      },
      "icon": "/sandbox/icons/murmur.png", "bgColour": "6a45c2", "textColour": "ffffff"
    },
    {
      "app": "wrenly", "name": "Wrenly", "appPackage": "wrenly://", "text": {
        "en": "Verify with Wrenly", "de": "Mit Wrenly bestätigen", "fr": "Vérifier avec Wrenly",
        "es": "Verificar con Wrenly", "tr": "Wrenly ile doğrula", "ar": "التحقق عبر Wrenly"
      },
      "icon": "/sandbox/icons/wrenly.png", "bgColour": "ffd24a", "textColour": "2b2100"
    },
    {
      "app": "hushbell", "name": "Hushbell", "appPackage": "hushbell://",
      "text": {
        "en": "Verify with Hushbell", "de": "Mit Hushbell bestätigen", "fr": "Vérifier avec Hushbell",
        "es": "Verificar con Hushbell", "tr": "Hushbell ile doğrula", "ar": "التحقق عبر Hushbell"
      }, "icon": "/sandbox/icons/hushbell.png"
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
