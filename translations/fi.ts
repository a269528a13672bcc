<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fi" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>Kieli</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Asetukset</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Vaihda</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Kieli:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>Vaihto onnistui.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Valmis</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>Vaihto epäonnistui.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Virhe</translation>
    </message>
</context>
</TS>
