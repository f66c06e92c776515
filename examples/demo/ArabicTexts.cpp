#include "ArabicTexts.h"

#include <cstring>

namespace demo {

namespace {

struct Entry {
    const char *source;
    const char16_t *text;
};

// clang-format off
constexpr Entry entries[] = {
    { "Is this number yours?", u"هل هذا الرقم لك؟" },
    { "One message from your phone proves it.\nNo password, about half a minute.",
        u"رسالة واحدة من هاتفك تثبت ذلك.\nبلا كلمة مرور، في نحو نصف دقيقة." },
    { "Choose a messaging app", u"اختر تطبيق مراسلة" },
    { "Or ask for a code by SMS", u"أو اطلب رمزًا برسالة نصية" },
    { "Send the prepared message", u"أرسل الرسالة الجاهزة" },
    { "It opens ready, just tap Send", u"تُفتح جاهزة، اضغط إرسال فقط" },
    { "Come back here", u"عُد إلى هنا" },
    { "Your number is confirmed at once", u"يُؤكَّد رقمك في الحال" },
    { "Verify my number", u"تحقق من رقمي" },
    { "Looking for the sandbox", u"البحث عن خدمة التجربة" },
    { "Sandbox is running", u"خدمة التجربة تعمل" },
    { "Sandbox is not running, start it with ./demo", u"خدمة التجربة لا تعمل، شغّلها بالأمر ./demo" },
    { "Number verified", u"تم التحقق من الرقم" },
    { "The back end has confirmed this session.", u"أكّد الخادم هذه الجلسة." },
    { "Almost there", u"أوشكنا على الانتهاء" },
    { "The back end is confirming this session.", u"يؤكد الخادم هذه الجلسة الآن." },
    { "Session id", u"معرّف الجلسة" },
    { "Copy", u"نسخ" },
    { "Copied", u"تم النسخ" },
    { "Confirmed by", u"أكّده" },
    { "Back end, %1", u"الخادم، %1" },
    { "Method", u"الطريقة" },
    { "%1 message", u"رسالة %1" },
    { "SMS code", u"رمز برسالة نصية" },
    { "Time taken", u"المدة" },
    { "1 second", u"ثانية واحدة" },
    { "%1 seconds", u"%1 ثانية" },
    { "%1 min %2 s", u"%1 د %2 ث" },
    { "Done", u"تم" },
    { "Verify again", u"تحقق مرة أخرى" },
    { "Try again", u"حاول مرة أخرى" },
    { "Not now", u"ليس الآن" },
    { "Not verified", u"لم يتم التحقق" },
    { "Not confirmed", u"لم تُؤكَّد الجلسة" },
    { "No answer", u"لا جواب" },
    { "Reason", u"السبب" },
    { "The service has not received your message,\nor the code was not right.",
        u"لم تصل رسالتك إلى الخدمة،\nأو أن الرمز غير صحيح." },
    { "Not authorised", u"غير مصرّح" },
    { "The verification service could not be asked.\nIs this device connected?",
        u"تعذّر سؤال خدمة التحقق.\nهل هذا الجهاز متصل؟" },
    { "Service error", u"خطأ في الخدمة" },
    { "The messaging app could not be opened.", u"تعذّر فتح تطبيق المراسلة." },
    { "App not reachable", u"التطبيق غير متاح" },
    { "Asked", u"سُئل" },
    { "Back end", u"الخادم" },
    { "The back end does not know this session.", u"لا يعرف الخادم هذه الجلسة." },
    { "The back end did not answer: %1", u"لم يجب الخادم: %1" },
    { "The back end does not confirm this session.", u"لا يؤكد الخادم هذه الجلسة." },
};
// clang-format on

} // namespace

QString ArabicTexts::translate(
    const char * /*context*/, const char *source, const char * /*disambiguation*/, int /*n*/) const
{
    for (const Entry &entry : entries) {
        if (std::strcmp(entry.source, source) == 0)
            return QString::fromUtf16(entry.text);
    }
    return {};
}

} // namespace demo
