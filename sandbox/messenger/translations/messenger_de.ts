<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>messenger::MessageSender</name>
    <message>
        <source>The service at %1 does not answer.</source>
        <translation>Der Dienst unter %1 antwortet nicht.</translation>
    </message>
    <message>
        <source>Not taken: %1.</source>
        <translation>Nicht angenommen: %1.</translation>
    </message>
    <message>
        <source>status %1</source>
        <translation>Status %1</translation>
    </message>
</context>
<context>
    <name>messenger::MessengerWindow</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Opened by a link from another app</source>
        <translation>Durch einen Link einer anderen App geöffnet</translation>
    </message>
    <message>
        <source>No messages yet.</source>
        <translation>Noch keine Nachrichten.</translation>
    </message>
    <message>
        <source>Tap Send, then go back to the other app.</source>
        <translation>Tippen Sie auf „Senden“ und kehren Sie dann zur anderen App zurück.</translation>
    </message>
    <message>
        <source>Stand-in messenger, for development</source>
        <translation>Ersatz-Messenger für die Entwicklung</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Prepared message</source>
        <translation>Vorbereitete Nachricht</translation>
    </message>
    <message>
        <source>Sending</source>
        <translation>Wird gesendet</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>Gesendet</translation>
    </message>
</context>
</TS>
