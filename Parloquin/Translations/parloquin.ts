<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>Parloquin</name>
    <message>
        <source>Parloquin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Phone number verification</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Country List</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill in %1 from your message</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Send Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Didn&apos;t you receive the code? Tap here to try again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SMS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Country..</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>+(Code)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Phone Number..</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Send SMS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Messaging apps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Don&apos;t use any of these apps?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Country, %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading the countries…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No countries to show</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Code, digit %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading the apps…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No apps to show</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
