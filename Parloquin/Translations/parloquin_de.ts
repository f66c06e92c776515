<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Parloquin</name>
    <message>
        <source>Parloquin</source>
        <translation>Parloquin</translation>
    </message>
    <message>
        <source>Phone number verification</source>
        <translation>Bestätigung der Telefonnummer</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Country List</source>
        <translation>Länderliste</translation>
    </message>
    <message>
        <source>Fill in %1 from your message</source>
        <translation>%1 aus der Nachricht einsetzen</translation>
    </message>
    <message>
        <source>Send Code</source>
        <translation>Code senden</translation>
    </message>
    <message>
        <source>Didn&apos;t you receive the code? Tap here to try again</source>
        <translation>Keinen Code erhalten? Hier tippen und noch einmal versuchen</translation>
    </message>
    <message>
        <source>SMS</source>
        <translation>SMS</translation>
    </message>
    <message>
        <source>Select Country..</source>
        <translation>Land wählen..</translation>
    </message>
    <message>
        <source>+(Code)</source>
        <translation>+(Vorw.)</translation>
    </message>
    <message>
        <source>Phone Number..</source>
        <translation>Ihre Nummer..</translation>
    </message>
    <message>
        <source>Send SMS</source>
        <translation>SMS senden</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Messaging apps</source>
        <translation>Messenger</translation>
    </message>
    <message>
        <source>Don&apos;t use any of these apps?</source>
        <translation>Keine dieser Apps dabei?</translation>
    </message>
    <message>
        <source>In progress</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Wird geladen</translation>
    </message>
    <message>
        <source>Code, digit %1 of %2</source>
        <translation>Code, Zeichen %1 von %2</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einsetzen</translation>
    </message>
    <message>
        <source>Loading the apps…</source>
        <translation>Die Apps werden geladen …</translation>
    </message>
    <message>
        <source>No apps to show</source>
        <translation>Keine Apps vorhanden</translation>
    </message>
    <message>
        <source>Loading the countries…</source>
        <translation>Die Länder werden geladen …</translation>
    </message>
    <message>
        <source>No countries to show</source>
        <translation>Keine Länder vorhanden</translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation>Telefonnummer</translation>
    </message>
    <message>
        <source>Country, %1</source>
        <translation>Land, %1</translation>
    </message>
</context>
</TS>
