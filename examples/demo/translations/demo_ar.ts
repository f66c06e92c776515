<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>demo::BackEnd</name>
    <message>
        <source>The back end does not know this session.</source>
        <translation>لا يعرف الخادم هذه الجلسة.</translation>
    </message>
    <message>
        <source>The back end did not answer: %1</source>
        <translation>لم يجب الخادم: %1</translation>
    </message>
    <message>
        <source>The back end does not confirm this session.</source>
        <translation>لا يؤكد الخادم هذه الجلسة.</translation>
    </message>
</context>
<context>
    <name>demo::DemoWindow</name>
    <message>
        <source>Parloquin demo</source>
        <translation>تجربة بارلوكوين</translation>
    </message>
</context>
<context>
    <name>demo::OutcomePage</name>
    <message>
        <source>1 second</source>
        <translation>ثانية واحدة</translation>
    </message>
    <message>
        <source>%1 seconds</source>
        <translation>%1 ث</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 د %2 ث</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>تم</translation>
    </message>
    <message>
        <source>Verify again</source>
        <translation>تحقق مرة أخرى</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>حاول مرة أخرى</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>ليس الآن</translation>
    </message>
    <message>
        <source>Almost there</source>
        <translation>أوشكنا على الانتهاء</translation>
    </message>
    <message>
        <source>The back end is confirming this session.</source>
        <translation>يؤكد الخادم هذه الجلسة الآن.</translation>
    </message>
    <message>
        <source>Number verified</source>
        <translation>تم التحقق من الرقم</translation>
    </message>
    <message>
        <source>The back end has confirmed this session.</source>
        <translation>أكّد الخادم هذه الجلسة.</translation>
    </message>
    <message>
        <source>Session id</source>
        <translation>معرّف الجلسة</translation>
    </message>
    <message>
        <source>Confirmed by</source>
        <translation>أكّده</translation>
    </message>
    <message>
        <source>Time taken</source>
        <translation>المدة</translation>
    </message>
    <message>
        <source>Not confirmed</source>
        <translation>لم تُؤكَّد الجلسة</translation>
    </message>
    <message>
        <source>Asked</source>
        <translation>سُئل</translation>
    </message>
    <message>
        <source>Back end</source>
        <translation>الخادم</translation>
    </message>
    <message>
        <source>Not verified</source>
        <translation>لم يتم التحقق</translation>
    </message>
    <message>
        <source>The service has not received your message,
or the code was not right.</source>
        <translation>لم تصل رسالتك إلى الخدمة،
أو أن الرمز غير صحيح.</translation>
    </message>
    <message>
        <source>Not authorised</source>
        <translation>غير مصرّح</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>لا جواب</translation>
    </message>
    <message>
        <source>The verification service could not be asked.
Is this device connected?</source>
        <translation>تعذّر سؤال خدمة التحقق.
هل هذا الجهاز متصل؟</translation>
    </message>
    <message>
        <source>Service error</source>
        <translation>خطأ في الخدمة</translation>
    </message>
    <message>
        <source>The messaging app could not be opened.</source>
        <translation>تعذّر فتح تطبيق المراسلة.</translation>
    </message>
    <message>
        <source>App not reachable</source>
        <translation>التطبيق غير متاح</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>السبب</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>تم النسخ</translation>
    </message>
</context>
<context>
    <name>demo::StartPage</name>
    <message>
        <source>Verify my number</source>
        <translation>تحقق من رقمي</translation>
    </message>
    <message>
        <source>Is this number yours?</source>
        <translation>هل هذا الرقم لك؟</translation>
    </message>
    <message>
        <source>One message from your phone proves it.
No password, about half a minute.</source>
        <translation>رسالة واحدة من هاتفك تثبت ذلك.
بلا كلمة مرور، في نحو نصف دقيقة.</translation>
    </message>
    <message>
        <source>Choose a messaging app</source>
        <translation>اختر تطبيق مراسلة</translation>
    </message>
    <message>
        <source>Or ask for a code by SMS</source>
        <translation>أو اطلب رمزًا برسالة نصية</translation>
    </message>
    <message>
        <source>Send the prepared message</source>
        <translation>أرسل الرسالة الجاهزة</translation>
    </message>
    <message>
        <source>It opens ready, just tap Send</source>
        <translation>تُفتح جاهزة، اضغط إرسال فقط</translation>
    </message>
    <message>
        <source>Come back here</source>
        <translation>عُد إلى هنا</translation>
    </message>
    <message>
        <source>Your number is confirmed at once</source>
        <translation>يُؤكَّد رقمك في الحال</translation>
    </message>
    <message>
        <source>Looking for the sandbox</source>
        <translation>البحث عن خدمة التجربة</translation>
    </message>
    <message>
        <source>Sandbox is running</source>
        <translation>خدمة التجربة تعمل</translation>
    </message>
    <message>
        <source>Sandbox is not running, start it with ./demo</source>
        <translation>خدمة التجربة لا تعمل، شغّلها بالأمر &#x200e;./demo</translation>
    </message>
</context>
</TS>
