<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sv" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>Språk</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Inställningar</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Ändra</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Språk:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>Ändringen lyckades.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Klart</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>Ändringen misslyckades.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fel</translation>
    </message>
</context>
</TS>
