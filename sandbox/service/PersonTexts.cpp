#include "sandbox/service/PersonTexts.h"

#include <algorithm>
#include <iterator>

namespace sandbox {
namespace {
constexpr std::string_view languages[] = { "de", "fr", "es", "tr", "ar" };

struct Row {
    std::string_view english;
    std::string_view others[std::size(languages)];
};

// clang-format off
constexpr Row rows[] = {
    { "This is not a phone number.",
        { "Das ist keine Telefonnummer.", "Ce n’est pas un numéro de téléphone.",
            "Esto no es un número de teléfono.", "Bu bir telefon numarası değil.",
            "هذا ليس رقم هاتف." } },
    { "This code is not right.",
        { "Dieser Code stimmt nicht.", "Ce code n’est pas le bon.", "Este código no es correcto.",
            "Bu kod doğru değil.", "هذا الرمز غير صحيح." } },
    { "This code is too old.",
        { "Dieser Code ist zu alt.", "Ce code a expiré.", "Este código ha caducado.",
            "Bu kodun süresi doldu.", "انتهت صلاحية هذا الرمز." } },
    { "This code is too old. Please ask for a new one.",
        { "Dieser Code ist zu alt. Bitte fordern Sie einen neuen an.",
            "Ce code a expiré. Demandez-en un nouveau.",
            "Este código ha caducado. Pida uno nuevo.",
            "Bu kodun süresi doldu. Lütfen yeni bir kod isteyin.",
            "انتهت صلاحية هذا الرمز. يرجى طلب رمز جديد." } },
    { "Too many attempts.",
        { "Zu viele Versuche.", "Trop de tentatives.", "Demasiados intentos.",
            "Çok fazla deneme yapıldı.", "محاولات كثيرة جدًا." } },
    { "Too many attempts. Please ask for a new code.",
        { "Zu viele Versuche. Bitte fordern Sie einen neuen Code an.",
            "Trop de tentatives. Demandez un nouveau code.",
            "Demasiados intentos. Pida un código nuevo.",
            "Çok fazla deneme yapıldı. Lütfen yeni bir kod isteyin.",
            "محاولات كثيرة جدًا. يرجى طلب رمز جديد." } },
    { "Something went wrong here.",
        { "Hier ist etwas schiefgegangen.", "Une erreur s’est produite ici.",
            "Algo ha fallado aquí.", "Burada bir şeyler ters gitti.", "حدث خطأ ما هنا." } },
};
// clang-format on
}

std::string personText(const std::string &english, const std::string &language)
{
    const auto *const known = std::find(std::begin(languages), std::end(languages), language);
    const auto *const row = std::find_if(std::begin(rows), std::end(rows),
        [&english](const Row &each) { return each.english == english; });
    if (known == std::end(languages) || row == std::end(rows))
        return english;
    return std::string(row->others[known - std::begin(languages)]);
}

}
