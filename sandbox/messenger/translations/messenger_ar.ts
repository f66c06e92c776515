<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>messenger::MessageSender</name>
    <message>
        <source>The service at %1 does not answer.</source>
        <translation>لا تجيب الخدمة على %1.</translation>
    </message>
    <message>
        <source>Not taken: %1.</source>
        <translation>لم تُقبل: %1.</translation>
    </message>
    <message>
        <source>status %1</source>
        <translation>الحالة %1</translation>
    </message>
</context>
<context>
    <name>messenger::MessengerWindow</name>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Opened by a link from another app</source>
        <translation>فُتح برابط من تطبيق آخر</translation>
    </message>
    <message>
        <source>No messages yet.</source>
        <translation>لا رسائل بعد.</translation>
    </message>
    <message>
        <source>Tap Send, then go back to the other app.</source>
        <translation>اضغط «إرسال» ثم عد إلى التطبيق الآخر.</translation>
    </message>
    <message>
        <source>Stand-in messenger, for development</source>
        <translation>تطبيق مراسلة بديل للتطوير</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>إرسال</translation>
    </message>
    <message>
        <source>Prepared message</source>
        <translation>رسالة جاهزة</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>جارٍ الإرسال</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>أُرسلت</translation>
    </message>
</context>
</TS>
