<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>Parloquin</name>
    <message>
        <source>Parloquin</source>
        <translation>بارلوكوين</translation>
    </message>
    <message>
        <source>Phone number verification</source>
        <translation>التحقق من رقم الهاتف</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Country List</source>
        <translation>قائمة البلدان</translation>
    </message>
    <message>
        <source>Fill in %1 from your message</source>
        <translation>إدخال %1 من رسالتك</translation>
    </message>
    <message>
        <source>Send Code</source>
        <translation>إرسال الرمز</translation>
    </message>
    <message>
        <source>Didn&apos;t you receive the code? Tap here to try again</source>
        <translation>ألم يصلك الرمز؟ اضغط هنا للمحاولة مرة أخرى</translation>
    </message>
    <message>
        <source>SMS</source>
        <translation>رسالة نصية</translation>
    </message>
    <message>
        <source>Select Country..</source>
        <translation>اختر البلد..</translation>
    </message>
    <message>
        <source>+(Code)</source>
        <translation>+(الرمز)</translation>
    </message>
    <message>
        <source>Phone Number..</source>
        <translation>رقم الهاتف..</translation>
    </message>
    <message>
        <source>Send SMS</source>
        <translation>إرسال رسالة نصية</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Messaging apps</source>
        <translation>تطبيقات المراسلة</translation>
    </message>
    <message>
        <source>Don&apos;t use any of these apps?</source>
        <translation>لا تستخدم أيًا من هذه التطبيقات؟</translation>
    </message>
    <message>
        <source>In progress</source>
        <translation>قيد التنفيذ</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>جارٍ التحميل</translation>
    </message>
    <message>
        <source>Code, digit %1 of %2</source>
        <translation>الرمز، الخانة %1 من %2</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>قص</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>لصق</translation>
    </message>
    <message>
        <source>Loading the apps…</source>
        <translation>جارٍ تحميل التطبيقات…</translation>
    </message>
    <message>
        <source>No apps to show</source>
        <translation>لا توجد تطبيقات</translation>
    </message>
    <message>
        <source>Loading the countries…</source>
        <translation>جارٍ تحميل البلدان…</translation>
    </message>
    <message>
        <source>No countries to show</source>
        <translation>لا توجد بلدان</translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation>رقم الهاتف</translation>
    </message>
    <message>
        <source>Country, %1</source>
        <translation>البلد، %1</translation>
    </message>
</context>
</TS>
