<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Parloquin</name>
    <message>
        <source>Parloquin</source>
        <translation>Parloquin</translation>
    </message>
    <message>
        <source>Phone number verification</source>
        <translation>Vérification du numéro de téléphone</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Country List</source>
        <translation>Liste des pays</translation>
    </message>
    <message>
        <source>Fill in %1 from your message</source>
        <translation>Insérer %1 de votre message</translation>
    </message>
    <message>
        <source>Send Code</source>
        <translation>Envoyer le code</translation>
    </message>
    <message>
        <source>Didn&apos;t you receive the code? Tap here to try again</source>
        <translation>Vous n’avez pas reçu le code ? Touchez ici pour réessayer</translation>
    </message>
    <message>
        <source>SMS</source>
        <translation>SMS</translation>
    </message>
    <message>
        <source>Select Country..</source>
        <translation>Choisir un pays..</translation>
    </message>
    <message>
        <source>+(Code)</source>
        <translation>+(Indic.)</translation>
    </message>
    <message>
        <source>Phone Number..</source>
        <translation>Votre numéro..</translation>
    </message>
    <message>
        <source>Send SMS</source>
        <translation>Envoyer un SMS</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Messaging apps</source>
        <translation>Applications de messagerie</translation>
    </message>
    <message>
        <source>Don&apos;t use any of these apps?</source>
        <translation>Vous n’utilisez aucune de ces applications ?</translation>
    </message>
    <message>
        <source>In progress</source>
        <translation>En cours</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Chargement</translation>
    </message>
    <message>
        <source>Code, digit %1 of %2</source>
        <translation>Code, caractère %1 sur %2</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Couper</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message>
        <source>Loading the apps…</source>
        <translation>Chargement des applications…</translation>
    </message>
    <message>
        <source>No apps to show</source>
        <translation>Aucune application à afficher</translation>
    </message>
    <message>
        <source>Loading the countries…</source>
        <translation>Chargement des pays…</translation>
    </message>
    <message>
        <source>No countries to show</source>
        <translation>Aucun pays à afficher</translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation>Numéro de téléphone</translation>
    </message>
    <message>
        <source>Country, %1</source>
        <translation>Pays, %1</translation>
    </message>
</context>
</TS>
