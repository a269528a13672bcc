<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="hu" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>Nyelv</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Beállítások</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Módosítás</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Nyelv:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>A módosítás sikerült.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Kész</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>A módosítás nem sikerült.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Hiba</translation>
    </message>
</context>
</TS>
