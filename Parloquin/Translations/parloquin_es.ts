<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Parloquin</name>
    <message>
        <source>Parloquin</source>
        <translation>Parloquin</translation>
    </message>
    <message>
        <source>Phone number verification</source>
        <translation>Verificación del número de teléfono</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Country List</source>
        <translation>Lista de países</translation>
    </message>
    <message>
        <source>Fill in %1 from your message</source>
        <translation>Usar %1 de su mensaje</translation>
    </message>
    <message>
        <source>Send Code</source>
        <translation>Enviar código</translation>
    </message>
    <message>
        <source>Didn&apos;t you receive the code? Tap here to try again</source>
        <translation>¿No ha recibido el código? Toque aquí para intentarlo de nuevo</translation>
    </message>
    <message>
        <source>SMS</source>
        <translation>SMS</translation>
    </message>
    <message>
        <source>Select Country..</source>
        <translation>Elegir país..</translation>
    </message>
    <message>
        <source>+(Code)</source>
        <translation>+(Prefijo)</translation>
    </message>
    <message>
        <source>Phone Number..</source>
        <translation>Su número..</translation>
    </message>
    <message>
        <source>Send SMS</source>
        <translation>Enviar SMS</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Messaging apps</source>
        <translation>Aplicaciones de mensajería</translation>
    </message>
    <message>
        <source>Don&apos;t use any of these apps?</source>
        <translation>¿No usa ninguna de estas aplicaciones?</translation>
    </message>
    <message>
        <source>In progress</source>
        <translation>En curso</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Cargando</translation>
    </message>
    <message>
        <source>Code, digit %1 of %2</source>
        <translation>Código, carácter %1 de %2</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Cortar</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Pegar</translation>
    </message>
    <message>
        <source>Loading the apps…</source>
        <translation>Cargando las aplicaciones…</translation>
    </message>
    <message>
        <source>No apps to show</source>
        <translation>No hay aplicaciones</translation>
    </message>
    <message>
        <source>Loading the countries…</source>
        <translation>Cargando los países…</translation>
    </message>
    <message>
        <source>No countries to show</source>
        <translation>No hay países</translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation>Número de teléfono</translation>
    </message>
    <message>
        <source>Country, %1</source>
        <translation>País, %1</translation>
    </message>
</context>
</TS>
