<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>GraphGrid</name>
    <message>
        <source>Frequency (bpm)</source>
        <translation>Frequency (bpm)</translation>
    </message>
</context>
<context>
    <name>QWContextGraph</name>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>Auto-resize</source>
        <translation>Auto-resize</translation>
    </message>
    <message>
        <source>Selection area</source>
        <translation>Selection area</translation>
    </message>
</context>
<context>
    <name>QWGridTool</name>
    <message>
        <source>Record the session</source>
        <translation>Record the session</translation>
    </message>
    <message>
        <source>Crossfader position decides which deck sounds</source>
        <translation>Crossfader position decides which deck sounds</translation>
    </message>
    <message>
        <source>Reverse the crossfader (hamster)</source>
        <translation>Reverse the crossfader (hamster)</translation>
    </message>
    <message>
        <source>Hold the graph while the vinyl stands still</source>
        <translation>Hold the graph while the vinyl stands still</translation>
    </message>
    <message>
        <source>Metronome</source>
        <translation>Metronome</translation>
    </message>
    <message>
        <source>Start or stop the session (Space)</source>
        <translation>Start or stop the session (Space)</translation>
    </message>
    <message>
        <source>Choose deck A, deck B or both</source>
        <translation>Choose deck A, deck B or both</translation>
    </message>
    <message>
        <source>Beats that the graph shows</source>
        <translation>Beats that the graph shows</translation>
    </message>
    <message>
        <source>Regular Training</source>
        <translation>Regular Training</translation>
    </message>
</context>
<context>
    <name>QWPainter</name>
    <message>
        <source>Graph of deck A</source>
        <translation>Graph of deck A</translation>
    </message>
    <message>
        <source>Graph of deck B</source>
        <translation>Graph of deck B</translation>
    </message>
    <message>
        <source>Out of memory: %1 samples lost</source>
        <translation>Out of memory: %1 samples lost</translation>
    </message>
    <message>
        <source>Not written: %1</source>
        <translation>Not written: %1</translation>
    </message>
    <message>
        <source>No sound from the device</source>
        <translation>No sound from the device</translation>
    </message>
    <message>
        <source>File already imported !</source>
        <translation>File already imported !</translation>
    </message>
    <message>
        <source>Could not be written: %1</source>
        <translation>Could not be written: %1</translation>
    </message>
    <message>
        <source>Non-compliant file !</source>
        <translation>Non-compliant file !</translation>
    </message>
    <message>
        <source>New file has been created and loaded into color tab !!</source>
        <translation>New file has been created and loaded into color tab !!</translation>
    </message>
    <message>
        <source>The sound server was lost. Start the program again.</source>
        <translation>The sound server was lost. Start the program again.</translation>
    </message>
    <message>
        <source>The device isn&apos;t there: %1</source>
        <translation>The device isn&apos;t there: %1</translation>
    </message>
</context>
<context>
    <name>SaveColorPhrasing</name>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Save configuration of phrasing colors: </source>
        <translation>Save configuration of phrasing colors: </translation>
    </message>
    <message>
        <source>Input DeckB</source>
        <translation>Input DeckB</translation>
    </message>
    <message>
        <source>Input DeckA</source>
        <translation>Input DeckA</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Filename</translation>
    </message>
</context>
</TS>
