<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_GB">
<context>
    <name>orvek::host::ChoiceButton</name>
    <message>
        <source>%1, choice</source>
        <translation>%1, Auswahl</translation>
    </message>
</context>
<context>
    <name>orvek::host::ColourButton</name>
    <message>
        <source>Choose a colour</source>
        <translation>Farbe auswählen</translation>
    </message>
    <message>
        <source>%1, colour</source>
        <translation>%1, Farbe</translation>
    </message>
</context>
<context>
    <name>orvek::host::EditorAccessibility</name>
    <message>
        <source>%1, value</source>
        <translation>%1, Wert</translation>
    </message>
    <message>
        <source>%1, slider</source>
        <translation>%1, Schieberegler</translation>
    </message>
    <message>
        <source>%1, reset to default</source>
        <translation>%1, auf den Vorgabewert zurücksetzen</translation>
    </message>
    <message>
        <source>%1, decrease</source>
        <translation>%1, verringern</translation>
    </message>
    <message>
        <source>%1, increase</source>
        <translation>%1, erhöhen</translation>
    </message>
    <message>
        <source>%1, browse</source>
        <translation>%1, Datei wählen</translation>
    </message>
    <message>
        <source>%1, X</source>
        <translation>%1, X</translation>
    </message>
    <message>
        <source>%1, Y</source>
        <translation>%1, Y</translation>
    </message>
    <message>
        <source>%1, Z</source>
        <translation>%1, Z</translation>
    </message>
    <message>
        <source>%1, red</source>
        <translation>%1, Rot</translation>
    </message>
    <message>
        <source>%1, green</source>
        <translation>%1, Grün</translation>
    </message>
    <message>
        <source>%1, blue</source>
        <translation>%1, Blau</translation>
    </message>
    <message>
        <source>%1, alpha</source>
        <translation>%1, Alpha</translation>
    </message>
    <message>
        <source>Rendered view</source>
        <translation>Gerenderte Ansicht</translation>
    </message>
    <message>
        <source>%1, rendered view</source>
        <translation>%1, gerenderte Ansicht</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>%1, search</source>
        <translation>%1, Suche</translation>
    </message>
    <message>
        <source>%1, section</source>
        <translation>%1, Abschnitt</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>value and units</comment>
        <translation>%1 %2</translation>
    </message>
</context>
<context>
    <name>orvek::host::EditorInput</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
</context>
<context>
    <name>orvek::host::EditorUndo</name>
    <message>
        <source>Change of %1</source>
        <translation>Änderung von %1</translation>
    </message>
</context>
<context>
    <name>orvek::host::PanelSearch</name>
    <message>
        <source>Nothing matches &quot;%1&quot;</source>
        <translation>Keine Treffer für „%1“</translation>
    </message>
</context>
</TS>
