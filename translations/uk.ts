<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="uk" sourcelanguage="en">
<context>
    <name>DlgSettings</name>
    <message>
        <source>Language</source>
        <translation>Мова</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Налаштування</translation>
    </message>
</context>
<context>
    <name>PageSetLang</name>
    <message>
        <source>Change</source>
        <translation>Змінити</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Мова:</translation>
    </message>
    <message>
        <source>Change successful!</source>
        <translation>Зміну виконано.</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>Change failed!</source>
        <translation>Не вдалося виконати зміну.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Помилка</translation>
    </message>
</context>
</TS>
