<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Predictions</name>
    <message numerus="yes">
        <source>Predictions for %1 records in %2.</source>
        <translation>
            <numerusform>Predictions for %1 record in %2.</numerusform>
            <numerusform>Predictions for %1 records in %2.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Predictions for %1 records in %2; %3 of them have no value: %4.</source>
        <translation>
            <numerusform>Predictions for %1 records in %2; %3 of them has no value: %4.</numerusform>
            <numerusform>Predictions for %1 records in %2; %3 of them have no value: %4.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 records in %2, and none of them has a value: %3.</source>
        <translation>
            <numerusform>%1 record in %2, without a value: %3.</numerusform>
            <numerusform>%1 records in %2, and none of them has a value: %3.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TFiguresPage</name>
    <message numerus="yes">
        <source>%n of the pictures are in this folder already. Replace them?</source>
        <translation>
            <numerusform>%n of the pictures is in this folder already. Replace it?</numerusform>
            <numerusform>%n of the pictures are in this folder already. Replace them?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>nuvo::Handout</name>
    <message numerus="yes">
        <source>Copied %n row(s).</source>
        <translation>
            <numerusform>Copied %n row.</numerusform>
            <numerusform>Copied %n rows.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>nuvo::LiveFit</name>
    <message numerus="yes">
        <source>None of the %1 records can be used.</source>
        <translation>
            <numerusform>%1 record, and it cannot be used.</numerusform>
            <numerusform>None of the %1 records can be used.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>None of the %1 records can be used: %2.</source>
        <translation>
            <numerusform>%1 record, and it cannot be used: %2.</numerusform>
            <numerusform>None of the %1 records can be used: %2.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>nuvo::MainWindow</name>
    <message numerus="yes">
        <source>Fitted to %1 records.</source>
        <translation>
            <numerusform>Fitted to %1 record.</numerusform>
            <numerusform>Fitted to %1 records.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>nuvo::Sitting</name>
    <message numerus="yes">
        <source>Throw models away</source>
        <translation>
            <numerusform>Throw a model away</numerusform>
            <numerusform>Throw models away</numerusform>
        </translation>
    </message>
</context>
</TS>
