<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="th" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>ภาษา</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>การตั้งค่า</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>เปลี่ยน</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>ภาษา:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>เปลี่ยนสำเร็จแล้ว</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>สำเร็จ</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>เปลี่ยนไม่สำเร็จ</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>ข้อผิดพลาด</translation>
    </message>
</context>
</TS>
