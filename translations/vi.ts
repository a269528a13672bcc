<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="vi" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>Ngôn ngữ</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Cài đặt</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Thay đổi</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Ngôn ngữ:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>Thay đổi thành công.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Thành công</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>Thay đổi không thành công.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Lỗi</translation>
    </message>
</context>
</TS>
