<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What is said instead where the folder that the program works with isn't the Desktop. -->
<TS version="2.1" sourcelanguage="en" language="en">
<context>
    <name>FileAccessManager</name>
    <message>
        <source>Please select your Desktop folder to grant access for screenshot detection</source>
        <translation>Please select your screenshot folder to grant access for screenshot detection</translation>
    </message>
    <message>
        <source>Select Desktop Folder</source>
        <translation>Select Screenshot Folder</translation>
    </message>
</context>
<context>
    <name>NotificationManager</name>
    <message>
        <source>Desktop Folder Access Required</source>
        <translation>Screenshot Folder Access Required</translation>
    </message>
    <message>
        <source>Deskbroom needs access to your Desktop folder. Click to open System Settings.</source>
        <translation>Deskbroom needs access to your screenshot folder. Click to open System Settings.</translation>
    </message>
</context>
<context>
    <name>AccessBanner</name>
    <message>
        <source>Desktop Folder Access Required</source>
        <translation>Screenshot Folder Access Required</translation>
    </message>
    <message>
        <source>Deskbroom needs access to your Desktop folder. Click to open System Settings.</source>
        <translation>Deskbroom needs access to your screenshot folder. Click to open System Settings.</translation>
    </message>
</context>
</TS>
