<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>1 Language</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>1 Settings</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>1 A word that is too long</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>1 Language:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>1 Change successful!</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>1 Success</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>1 Change failed!</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>1 Error</translation>
    </message>
</context>
</TS>
