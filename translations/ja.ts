<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>変更</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>言語：</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>変更しました。</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>変更できませんでした。</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
</context>
</TS>
