<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>pilot</name>
    <message>
        <source>Flight log</source>
        <translation>Flugbuch</translation>
    </message>
    <message>
        <source>%1 km in all</source>
        <translation>%1 km insgesamt</translation>
    </message>
</context>
</TS>
