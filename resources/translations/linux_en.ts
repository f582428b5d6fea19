<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What is said instead on Linux, in every locale. -->
<TS version="2.1" sourcelanguage="en" language="en">
<context>
    <name>GalleryPlaceholder</name>
    <message>
        <source>Take a screenshot with ⌘⇧4 or ⌘⇧3 to get started</source>
        <translation>Take a screenshot with the Print Screen key to get started</translation>
    </message>
</context>
<context>
    <name>GeneralSettingsPage</name>
    <message>
        <source>macOS delays saving a screenshot until its floating thumbnail is dismissed or auto-saves. Disabling it (system-wide) lets Deskbroom detect screenshots the instant they're taken.</source>
        <translation>Plasma's Spectacle shows a screenshot first and saves it only when told to. Disabling this makes it save at once, so Deskbroom notices screenshots as soon as they're taken.</translation>
    </message>
</context>
<context>
    <name>OnboardingWelcomeStepView</name>
    <message>
        <source>A few quick steps and you're set — screenshots handled automatically, right from your menu bar.</source>
        <translation>A few quick steps and you're set — screenshots handled automatically, right from your panel.</translation>
    </message>
</context>
<context>
    <name>OnboardingDoneStepView</name>
    <message>
        <source>Deskbroom is already watching. Look for its icon in your menu bar whenever you need it.</source>
        <translation>Deskbroom is already watching. Look for its icon in your panel whenever you need it.</translation>
    </message>
</context>
</TS>
