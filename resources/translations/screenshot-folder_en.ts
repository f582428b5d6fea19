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
<context>
    <name>GeneralSettingsPage</name>
    <message>
        <source>Desktop folder access</source>
        <translation>Screenshot folder access</translation>
    </message>
    <message>
        <source>Deskbroom needs access to your Desktop folder to detect new screenshots automatically.</source>
        <translation>Deskbroom needs access to your screenshot folder to detect new screenshots automatically.</translation>
    </message>
</context>
<context>
    <name>OnboardingNotificationsStepView</name>
    <message>
        <source>Deskbroom can notify you right after you take a screenshot, so you can keep or delete it without hunting through your Desktop.</source>
        <translation>Deskbroom can notify you right after you take a screenshot, so you can keep or delete it without hunting through your screenshot folder.</translation>
    </message>
</context>
<context>
    <name>OnboardingFolderAccessStepView</name>
    <message>
        <source>By default, Deskbroom watches your Desktop, Downloads, and Pictures folders. Grant access below, or choose a different folder anytime in Settings.</source>
        <translation>By default, Deskbroom watches your screenshot, Downloads, and Pictures folders. Grant access below, or choose a different folder anytime in Settings.</translation>
    </message>
</context>
</TS>
