<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Langue&#xa0;:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>Modification effectuée.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Succès</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>Échec de la modification.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
</TS>
