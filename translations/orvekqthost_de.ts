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
    <message>
        <source>different values</source>
        <translation>verschiedene Werte</translation>
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
    <name>orvek::host::ObjectFile</name>
    <message>
        <source>null</source>
        <translation>null</translation>
    </message>
    <message>
        <source>an array of %1</source>
        <translation>ein Array mit %1 Elementen</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>ein Objekt</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>eine Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>a number of at least %1</source>
        <translation>eine Zahl ab %1</translation>
    </message>
    <message>
        <source>a number of at most %1</source>
        <translation>eine Zahl bis %1</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>the top level</source>
        <translation>oberste Ebene</translation>
    </message>
    <message>
        <source>expected %1, found %2</source>
        <translation>erwartet: %1; gefunden: %2</translation>
    </message>
    <message>
        <source>%1: unknown, ignored</source>
        <translation>%1: unbekannt, wird ignoriert</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>eine ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>a power of two from %1 to %2</source>
        <translation>eine Zweierpotenz von %1 bis %2</translation>
    </message>
    <message>
        <source>one of %1</source>
        <translation>eines von %1</translation>
    </message>
    <message>
        <source>a colour such as %1</source>
        <translation>eine Farbe wie %1</translation>
    </message>
    <message>
        <source>an array of three numbers</source>
        <translation>ein Array mit drei Zahlen</translation>
    </message>
    <message>
        <source>the text is not valid Unicode</source>
        <translation>der Text ist kein gültiges Unicode</translation>
    </message>
    <message>
        <source>a text of at most %1 characters</source>
        <translation>ein Text von höchstens %1 Zeichen</translation>
    </message>
    <message>
        <source>a text</source>
        <translation>ein Text</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true oder false</translation>
    </message>
    <message>
        <source>an array of at most %1</source>
        <translation>ein Array mit höchstens %1 Elementen</translation>
    </message>
    <message>
        <source>an array</source>
        <translation>ein Array</translation>
    </message>
    <message>
        <source>%1 refuses the value</source>
        <translation>%1 nimmt den Wert nicht an</translation>
    </message>
    <message>
        <source>the object has no description</source>
        <translation>das Objekt hat keine Beschreibung</translation>
    </message>
    <message>
        <source>%1 more unknown members, ignored</source>
        <translation>%1 weitere unbekannte Mitglieder, werden ignoriert</translation>
    </message>
    <message>
        <source>the value cannot be written exactly</source>
        <translation>der Wert lässt sich nicht genau speichern</translation>
    </message>
    <message>
        <source>expected at most %1, found %2</source>
        <translation>erwartet: höchstens %1; gefunden: %2</translation>
    </message>
    <message>
        <source>both a property and a member of the header</source>
        <translation>sowohl eine Eigenschaft als auch ein Mitglied des Kopfes</translation>
    </message>
    <message>
        <source>is a directory, expected a file</source>
        <translation>ist ein Ordner; erwartet: eine Datei</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>has more than %1 bytes</source>
        <translation>hat mehr als %1 Bytes</translation>
    </message>
    <message>
        <source>not valid JSON, %1</source>
        <translation>kein gültiges JSON, %1</translation>
    </message>
    <message>
        <source>expected an object, found an array</source>
        <translation>erwartet: ein Objekt; gefunden: ein Array</translation>
    </message>
    <message>
        <source>not saved, has more than %1 bytes</source>
        <translation>nicht gespeichert, hat mehr als %1 Bytes</translation>
    </message>
    <message>
        <source>cannot be written: %1</source>
        <translation>kann nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>not saved, %1</source>
        <translation>nicht gespeichert, %1</translation>
    </message>
    <message>
        <source>not saved, is a named pipe, expected a file</source>
        <translation>nicht gespeichert, ist eine benannte Pipe, erwartet wurde eine Datei</translation>
    </message>
    <message>
        <source>not saved, is a socket, expected a file</source>
        <translation>nicht gespeichert, ist ein Socket, erwartet wurde eine Datei</translation>
    </message>
    <message>
        <source>not saved, is a device, expected a file</source>
        <translation>nicht gespeichert, ist ein Gerät, erwartet wurde eine Datei</translation>
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
