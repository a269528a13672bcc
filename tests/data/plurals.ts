<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Change</translation>
    </message>
    <message numerus="yes">
        <source>%n languages</source>
        <translation>
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
</context>
</TS>
