<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>demo::BackEnd</name>
    <message>
        <source>The back end does not know this session.</source>
        <translation>Der Server kennt diese Sitzung nicht.</translation>
    </message>
    <message>
        <source>The back end did not answer: %1</source>
        <translation>Der Server hat nicht geantwortet: %1</translation>
    </message>
    <message>
        <source>The back end does not confirm this session.</source>
        <translation>Der Server bestätigt diese Sitzung nicht.</translation>
    </message>
</context>
<context>
    <name>demo::DemoWindow</name>
    <message>
        <source>Parloquin demo</source>
        <translation>Parloquin-Demo</translation>
    </message>
</context>
<context>
    <name>demo::OutcomePage</name>
    <message>
        <source>1 second</source>
        <translation>1 Sekunde</translation>
    </message>
    <message>
        <source>%1 seconds</source>
        <translation>%1 Sekunden</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Verify again</source>
        <translation>Noch einmal bestätigen</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Nicht jetzt</translation>
    </message>
    <message>
        <source>Almost there</source>
        <translation>Gleich geschafft</translation>
    </message>
    <message>
        <source>The back end is confirming this session.</source>
        <translation>Der Server bestätigt gerade diese Sitzung.</translation>
    </message>
    <message>
        <source>Number verified</source>
        <translation>Nummer bestätigt</translation>
    </message>
    <message>
        <source>The back end has confirmed this session.</source>
        <translation>Der Server hat diese Sitzung bestätigt.</translation>
    </message>
    <message>
        <source>Session id</source>
        <translation>Sitzungskennung</translation>
    </message>
    <message>
        <source>Confirmed by</source>
        <translation>Bestätigt von</translation>
    </message>
    <message>
        <source>Time taken</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Not confirmed</source>
        <translation>Nicht bestätigt</translation>
    </message>
    <message>
        <source>Asked</source>
        <translation>Gefragt</translation>
    </message>
    <message>
        <source>Back end</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Not verified</source>
        <translation>Nicht bestätigt</translation>
    </message>
    <message>
        <source>The service has not received your message,
or the code was not right.</source>
        <translation>Der Dienst hat Ihre Nachricht nicht erhalten,
oder der Code war falsch.</translation>
    </message>
    <message>
        <source>Not authorised</source>
        <translation>Nicht berechtigt</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>Keine Antwort</translation>
    </message>
    <message>
        <source>The verification service could not be asked.
Is this device connected?</source>
        <translation>Der Dienst war nicht zu erreichen.
Ist dieses Gerät verbunden?</translation>
    </message>
    <message>
        <source>Service error</source>
        <translation>Dienstfehler</translation>
    </message>
    <message>
        <source>The messaging app could not be opened.</source>
        <translation>Der Messenger ließ sich nicht öffnen.</translation>
    </message>
    <message>
        <source>App not reachable</source>
        <translation>App nicht erreichbar</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
</context>
<context>
    <name>demo::StartPage</name>
    <message>
        <source>Verify my number</source>
        <translation>Meine Nummer bestätigen</translation>
    </message>
    <message>
        <source>Is this number yours?</source>
        <translation>Ist das Ihre Nummer?</translation>
    </message>
    <message>
        <source>One message from your phone proves it.
No password, about half a minute.</source>
        <translation>Eine Nachricht von Ihrem Telefon beweist es.
Kein Passwort, etwa eine halbe Minute.</translation>
    </message>
    <message>
        <source>Choose a messaging app</source>
        <translation>Messenger wählen</translation>
    </message>
    <message>
        <source>Or ask for a code by SMS</source>
        <translation>Oder einen Code per SMS anfordern</translation>
    </message>
    <message>
        <source>Send the prepared message</source>
        <translation>Vorbereitete Nachricht senden</translation>
    </message>
    <message>
        <source>It opens ready, just tap Send</source>
        <translation>Sie liegt bereit, nur noch absenden</translation>
    </message>
    <message>
        <source>Come back here</source>
        <translation>Hierher zurückkommen</translation>
    </message>
    <message>
        <source>Your number is confirmed at once</source>
        <translation>Ihre Nummer ist sofort bestätigt</translation>
    </message>
    <message>
        <source>Looking for the sandbox</source>
        <translation>Suche nach dem Übungsdienst</translation>
    </message>
    <message>
        <source>Sandbox is running</source>
        <translation>Der Übungsdienst läuft</translation>
    </message>
    <message>
        <source>Sandbox is not running, start it with ./demo</source>
        <translation>Der Übungsdienst läuft nicht, mit ./demo starten</translation>
    </message>
</context>
</TS>
