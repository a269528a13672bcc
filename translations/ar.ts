<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>اللغة</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>الإعدادات</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>تغيير</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>اللغة:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>تم التغيير بنجاح.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>تم بنجاح</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>فشل التغيير.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>خطأ</translation>
    </message>
</context>
</TS>
