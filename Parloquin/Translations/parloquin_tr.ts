<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="tr" sourcelanguage="en">
<context>
    <name>Parloquin</name>
    <message>
        <source>Parloquin</source>
        <translation>Parloquin</translation>
    </message>
    <message>
        <source>Phone number verification</source>
        <translation>Telefon numarası doğrulama</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Geri</translation>
    </message>
    <message>
        <source>Country List</source>
        <translation>Ülke listesi</translation>
    </message>
    <message>
        <source>Fill in %1 from your message</source>
        <translation>Mesajınızdaki %1 kodunu gir</translation>
    </message>
    <message>
        <source>Send Code</source>
        <translation>Kodu gönder</translation>
    </message>
    <message>
        <source>Didn&apos;t you receive the code? Tap here to try again</source>
        <translation>Kodu almadınız mı? Yeniden denemek için buraya dokunun</translation>
    </message>
    <message>
        <source>SMS</source>
        <translation>SMS</translation>
    </message>
    <message>
        <source>Select Country..</source>
        <translation>Ülke seçin..</translation>
    </message>
    <message>
        <source>+(Code)</source>
        <translation>+(Kod)</translation>
    </message>
    <message>
        <source>Phone Number..</source>
        <translation>Telefon numarası..</translation>
    </message>
    <message>
        <source>Send SMS</source>
        <translation>SMS gönder</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Kapat</translation>
    </message>
    <message>
        <source>Messaging apps</source>
        <translation>Mesajlaşma uygulamaları</translation>
    </message>
    <message>
        <source>Don&apos;t use any of these apps?</source>
        <translation>Bu uygulamaları kullanmıyor musunuz?</translation>
    </message>
    <message>
        <source>In progress</source>
        <translation>Sürüyor</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Yükleniyor</translation>
    </message>
    <message>
        <source>Code, digit %1 of %2</source>
        <translation>Kod, %2 karakterden %1.</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Kes</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopyala</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Yapıştır</translation>
    </message>
    <message>
        <source>Loading the apps…</source>
        <translation>Uygulamalar yükleniyor…</translation>
    </message>
    <message>
        <source>No apps to show</source>
        <translation>Gösterilecek uygulama yok</translation>
    </message>
    <message>
        <source>Loading the countries…</source>
        <translation>Ülkeler yükleniyor…</translation>
    </message>
    <message>
        <source>No countries to show</source>
        <translation>Gösterilecek ülke yok</translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation>Telefon numarası</translation>
    </message>
    <message>
        <source>Country, %1</source>
        <translation>Ülke, %1</translation>
    </message>
</context>
</TS>
