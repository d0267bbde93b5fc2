<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_GB">
<context>
    <name>EnvironmentImage</name>
    <message>
        <source>%1: is not a regular file, expected a picture of the surroundings</source>
        <translation>%1: ist keine gewöhnliche Datei, erwartet wurde ein Bild der Umgebung</translation>
    </message>
    <message>
        <source>%1: expected a picture of at most %2 million pixels, found %3 × %4</source>
        <translation>%1: ein Bild mit höchstens %2 Millionen Pixeln wurde erwartet, gefunden: %3 × %4</translation>
    </message>
    <message>
        <source>%1: expected a picture of the surroundings: %2</source>
        <translation>%1: ein Bild der Umgebung wurde erwartet: %2</translation>
    </message>
</context>
<context>
    <name>Looks</name>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;High contrast</source>
        <translation>Hoher &amp;Kontrast</translation>
    </message>
    <message>
        <source>&amp;System</source>
        <translation>&amp;System</translation>
    </message>
</context>
<context>
    <name>MeshLoader</name>
    <message>
        <source>Meshes (%1);;All files (*)</source>
        <translation>Netze (%1);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>vertex %1 is not finite, expected three finite numbers</source>
        <translation>Eckpunkt %1 ist nicht endlich; erwartet: drei endliche Zahlen</translation>
    </message>
    <message>
        <source>has no faces, expected at least one triangle</source>
        <translation>hat keine Flächen; erwartet: mindestens ein Dreieck</translation>
    </message>
    <message>
        <source>does not exist, expected a mesh file</source>
        <translation>existiert nicht; erwartet: eine Netzdatei</translation>
    </message>
    <message>
        <source>is not a regular file, expected a mesh file</source>
        <translation>ist keine gewöhnliche Datei; erwartet: eine Netzdatei</translation>
    </message>
    <message>
        <source>is of an unknown kind, expected %1</source>
        <translation>ist von unbekannter Art; erwartet: %1</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>is not a mesh that can be read, expected %1 (%2)</source>
        <translation>ist kein lesbares Netz; erwartet: %1 (%2)</translation>
    </message>
    <message>
        <source>needs more memory than there is</source>
        <translation>braucht mehr Speicher, als vorhanden ist</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>cannot be read: it broke the program that reads meshes</source>
        <translation>kann nicht gelesen werden: Das Programm, das Netze liest, ist daran gescheitert</translation>
    </message>
    <message>
        <source>cannot be read: nothing came of it for %1 seconds</source>
        <translation>kann nicht gelesen werden: %1 Sekunden lang kam nichts</translation>
    </message>
    <message>
        <source>cannot be read: %1 does not start (%2)</source>
        <translation>kann nicht gelesen werden: %1 startet nicht (%2)</translation>
    </message>
    <message>
        <source>asks for more memory than a mesh may take, %1 GiB</source>
        <translation>verlangt mehr Speicher, als ein Netz belegen darf: %1 GiB</translation>
    </message>
    <message>
        <source>a face uses vertex %1, expected one below %2</source>
        <translation>eine Fläche benutzt Eckpunkt %1; erwartet: einer unter %2</translation>
    </message>
    <message>
        <source>has too many triangles, expected at most %1</source>
        <translation>hat zu viele Dreiecke; erwartet: höchstens %1</translation>
    </message>
</context>
<context>
    <name>Recovery</name>
    <message>
        <source>%1: cannot be written</source>
        <translation>%1: kann nicht geschrieben werden</translation>
    </message>
</context>
<context>
    <name>Scene</name>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>The point that the camera looks at</source>
        <translation>Der Punkt, auf den die Kamera blickt</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Abstand</translation>
    </message>
    <message>
        <source>From the target to the camera</source>
        <translation>Vom Ziel zur Kamera</translation>
    </message>
    <message>
        <source>Azimuth</source>
        <translation>Azimut</translation>
    </message>
    <message>
        <source>Where the camera stands around the target</source>
        <translation>Wo die Kamera rund um das Ziel steht</translation>
    </message>
    <message>
        <source>Elevation</source>
        <translation>Höhenwinkel</translation>
    </message>
    <message>
        <source>How high the camera stands; above 0 it looks down</source>
        <translation>Wie hoch die Kamera steht; über 0 blickt sie hinab</translation>
    </message>
    <message>
        <source>Field of view</source>
        <translation>Sichtfeld</translation>
    </message>
    <message>
        <source>Opening angle from bottom to top</source>
        <translation>Öffnungswinkel von unten nach oben</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Licht</translation>
    </message>
    <message>
        <source>Directional</source>
        <translation>Gerichtet</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>Punktlicht</translation>
    </message>
    <message>
        <source>Spot</source>
        <translation>Spotlicht</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>A directional light shines from far away, a point light from its place, a spot light from its place towards the origin</source>
        <translation>Gerichtetes Licht kommt von weit her, ein Punktlicht von seinem Ort, ein Spotlicht von seinem Ort zum Ursprung hin</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Red, green and blue from 0 to 1</source>
        <translation>Rot, Grün und Blau von 0 bis 1</translation>
    </message>
    <message>
        <source>Intensity</source>
        <translation>Stärke</translation>
    </message>
    <message>
        <source>Strength of the light</source>
        <translation>Stärke des Lichts</translation>
    </message>
    <message>
        <source>Where the light stands around the scene</source>
        <translation>Wo das Licht rund um die Szene steht</translation>
    </message>
    <message>
        <source>How high the light stands</source>
        <translation>Wie hoch das Licht steht</translation>
    </message>
    <message>
        <source>From the origin to the light</source>
        <translation>Vom Ursprung zum Licht</translation>
    </message>
    <message>
        <source>Cone</source>
        <translation>Kegel</translation>
    </message>
    <message>
        <source>Opening of a spot light from edge to edge</source>
        <translation>Öffnung eines Spotlichts von Rand zu Rand</translation>
    </message>
    <message>
        <source>Cone softness</source>
        <translation>Kegelweichheit</translation>
    </message>
    <message>
        <source>How much of the cone fades towards its edge: 0 is sharp</source>
        <translation>Wie viel vom Kegel zum Rand hin ausläuft: 0 ist scharf</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>Umgebungslicht</translation>
    </message>
    <message>
        <source>Strength of the light from the surroundings</source>
        <translation>Stärke des Lichts aus der Umgebung</translation>
    </message>
    <message>
        <source>Shadow size</source>
        <translation>Schattengröße</translation>
    </message>
    <message>
        <source>Edge of the shadow map: larger is sharper and slower</source>
        <translation>Kante der Schattenkarte: größer ist schärfer und langsamer</translation>
    </message>
    <message>
        <source>Shadows</source>
        <translation>Schatten</translation>
    </message>
    <message>
        <source>Whether the light casts shadows</source>
        <translation>Ob das Licht Schatten wirft</translation>
    </message>
    <message>
        <source>Animation</source>
        <translation>Animation</translation>
    </message>
    <message>
        <source>Turntable</source>
        <translation>Drehteller</translation>
    </message>
    <message>
        <source>Speed of the turntable; changes when the handle is let go</source>
        <translation>Geschwindigkeit des Drehtellers; ändert sich, wenn der Griff losgelassen wird</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Turn the objects about the camera&apos;s target</source>
        <translation>Die Objekte um das Ziel der Kamera drehen</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Lit</source>
        <translation>Beleuchtet</translation>
    </message>
    <message>
        <source>Flat</source>
        <translation>Flach</translation>
    </message>
    <message>
        <source>Normals</source>
        <translation>Normalen</translation>
    </message>
    <message>
        <source>Wireframe</source>
        <translation>Drahtgitter</translation>
    </message>
    <message>
        <source>Shading</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>What the view shows of the objects</source>
        <translation>Was die Ansicht von den Objekten zeigt</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Brightness of the picture</source>
        <translation>Helligkeit des Bildes</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>Umgebung</translation>
    </message>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.bmp);;All files (*)</source>
        <translation>Bilder (*.png *.jpg *.jpeg *.bmp);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Picture of the surroundings, twice as wide as high</source>
        <translation>Bild der Umgebung, doppelt so breit wie hoch</translation>
    </message>
    <message>
        <source>Nearest</source>
        <translation>Nächster</translation>
    </message>
    <message>
        <source>Bilinear</source>
        <translation>Bilinear</translation>
    </message>
    <message>
        <source>Trilinear</source>
        <translation>Trilinear</translation>
    </message>
    <message>
        <source>Filtering</source>
        <translation>Filterung</translation>
    </message>
    <message>
        <source>How pictures on objects and of the surroundings are sampled</source>
        <translation>Wie Bilder auf Objekten und das der Umgebung abgetastet werden</translation>
    </message>
    <message>
        <source>Backdrop</source>
        <translation>Hintergrundbild</translation>
    </message>
    <message>
        <source>The picture of the surroundings behind the scene, in place of the background colour</source>
        <translation>Das Bild der Umgebung hinter der Szene, statt der Hintergrundfarbe</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>Lines on the floor</source>
        <translation>Linien auf dem Boden</translation>
    </message>
    <message>
        <source>Grid cell</source>
        <translation>Rasterzelle</translation>
    </message>
    <message>
        <source>Edge of a cell of the grid</source>
        <translation>Kante einer Zelle des Rasters</translation>
    </message>
    <message>
        <source>Grid extent</source>
        <translation>Rastergröße</translation>
    </message>
    <message>
        <source>cells</source>
        <translation>Zellen</translation>
    </message>
    <message>
        <source>From the centre to an edge</source>
        <translation>Von der Mitte bis zu einem Rand</translation>
    </message>
    <message>
        <source>Outline</source>
        <translation>Umriss</translation>
    </message>
    <message>
        <source>A line around the selected objects</source>
        <translation>Eine Linie um die ausgewählten Objekte</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>Base colour</source>
        <translation>Grundfarbe</translation>
    </message>
    <message>
        <source>Roughness</source>
        <translation>Rauheit</translation>
    </message>
    <message>
        <source>0 is a mirror, 1 is chalk</source>
        <translation>0 ist ein Spiegel, 1 ist Kreide</translation>
    </message>
    <message>
        <source>Metallic</source>
        <translation>Metallisch</translation>
    </message>
    <message>
        <source>0 is plastic or stone, 1 is bare metal</source>
        <translation>0 ist Kunststoff oder Stein, 1 ist blankes Metall</translation>
    </message>
    <message>
        <source>Emission colour</source>
        <translation>Leuchtfarbe</translation>
    </message>
    <message>
        <source>Colour of the light that the material gives off</source>
        <translation>Farbe des Lichts, das das Material abgibt</translation>
    </message>
    <message>
        <source>Emission</source>
        <translation>Leuchten</translation>
    </message>
    <message>
        <source>Strength of the light that the material gives off</source>
        <translation>Stärke des Lichts, das das Material abgibt</translation>
    </message>
    <message>
        <source>Object</source>
        <translation>Objekt</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Name of the selected object</source>
        <translation>Name des ausgewählten Objekts</translation>
    </message>
    <message>
        <source>Mesh</source>
        <translation>Netz</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>Sichtbar</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Position of the object&apos;s origin</source>
        <translation>Lage des Objektursprungs</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>Turn about X, then Y, then Z</source>
        <translation>Drehung um X, dann Y, dann Z</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Skalierung</translation>
    </message>
    <message>
        <source>Factor along each axis</source>
        <translation>Faktor entlang jeder Achse</translation>
    </message>
    <message>
        <source>Scene name</source>
        <translation>Szenenname</translation>
    </message>
    <message>
        <source>Name of the scene</source>
        <translation>Name der Szene</translation>
    </message>
</context>
<context>
    <name>SceneEditor</name>
    <message>
        <source>Edits the objects, material, light and camera of a small 3D scene.</source>
        <translation>Bearbeitet Objekte, Material, Licht und Kamera einer kleinen 3D-Szene.</translation>
    </message>
    <message>
        <source>Save a picture of the window as a PNG file and exit.</source>
        <translation>Ein Bild des Fensters als PNG-Datei speichern und enden.</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Size of the window in pixels.</source>
        <translation>Größe des Fensters in Pixeln.</translation>
    </message>
    <message>
        <source>WxH</source>
        <translation>BxH</translation>
    </message>
    <message>
        <source>Show only the properties with this text.</source>
        <translation>Nur die Eigenschaften mit diesem Text zeigen.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Look of this run: %1.</source>
        <translation>Aussehen in diesem Lauf: %1.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Scene to open instead of the shipped one.</source>
        <translation>Szene, die anstelle der mitgelieferten geöffnet wird.</translation>
    </message>
    <message>
        <source>expected one scene, found %1</source>
        <translation>eine Szene erwartet, %1 gefunden</translation>
    </message>
    <message>
        <source>--size: expected WIDTHxHEIGHT such as 1400x900, found %1</source>
        <translation>--size: BREITExHÖHE wie 1400x900 erwartet, %1 gefunden</translation>
    </message>
    <message>
        <source>--look: expected one of %1, found %2</source>
        <translation>--look: eines von %1 erwartet, %2 gefunden</translation>
    </message>
    <message>
        <source>%1: cannot be written</source>
        <translation>%1: kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>on Wayland the view stays black; expected an X11 server, also Xwayland</source>
        <translation>Unter Wayland bleibt die Ansicht schwarz; erwartet wurde ein X11-Server, auch Xwayland</translation>
    </message>
</context>
<context>
    <name>SceneFile</name>
    <message>
        <source>%1: is not a regular file, expected a scene</source>
        <translation>%1: ist keine gewöhnliche Datei, erwartet wurde eine Szene</translation>
    </message>
</context>
<context>
    <name>SceneRenderer</name>
    <message>
        <source>The graphics driver refuses a shader: %1</source>
        <translation>Der Grafiktreiber weist einen Shader ab: %1</translation>
    </message>
    <message>
        <source>The graphics driver has no OpenGL 3.3</source>
        <translation>Der Grafiktreiber hat kein OpenGL 3.3</translation>
    </message>
    <message>
        <source>The view is larger than %1 pixels, the limit of the graphics driver</source>
        <translation>Die Ansicht ist größer als %1 Pixel, die Grenze des Grafiktreibers</translation>
    </message>
    <message>
        <source>The graphics driver has no frame buffer of %1 x %2 pixels</source>
        <translation>Der Grafiktreiber hat keinen Bildspeicher mit %1 x %2 Pixeln</translation>
    </message>
</context>
<context>
    <name>sceneeditor::Document</name>
    <message>
        <source>Import of %1</source>
        <translation>Import von %1</translation>
    </message>
    <message>
        <source>%1 meshes</source>
        <translation>%1 Netzen</translation>
    </message>
    <message>
        <source>Duplicate of %1</source>
        <translation>Duplikat von %1</translation>
    </message>
    <message>
        <source>Removal of %1</source>
        <translation>Entfernen von %1</translation>
    </message>
    <message>
        <source>Renaming of %1</source>
        <translation>Umbenennen von %1</translation>
    </message>
    <message>
        <source>%1 objects</source>
        <translation>%1 Objekten</translation>
    </message>
    <message>
        <source>Showing of %1</source>
        <translation>Einblenden von %1</translation>
    </message>
    <message>
        <source>Hiding of %1</source>
        <translation>Ausblenden von %1</translation>
    </message>
    <message>
        <source>New order</source>
        <translation>Neue Reihenfolge</translation>
    </message>
    <message>
        <source>Change of mesh</source>
        <translation>Wechsel des Netzes</translation>
    </message>
    <message>
        <source>Move of %1</source>
        <translation>Verschieben von %1</translation>
    </message>
    <message>
        <source>Unsaved changes would be lost if the program ended unexpectedly: %1</source>
        <translation>Ungespeicherte Änderungen gingen verloren, wenn das Programm unerwartet endete: %1</translation>
    </message>
</context>
<context>
    <name>sceneeditor::MainWindow</name>
    <message>
        <source>Scenes (*.json);;All files (*)</source>
        <translation>Szenen (*.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig %1</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>&amp;Wiederherstellen %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Open Scene</source>
        <translation>Szene öffnen</translation>
    </message>
    <message>
        <source>Save Scene</source>
        <translation>Szene speichern</translation>
    </message>
    <message>
        <source>untitled.json</source>
        <translation>unbenannt.json</translation>
    </message>
    <message>
        <source>Unsaved Changes</source>
        <translation>Nicht gespeicherte Änderungen</translation>
    </message>
    <message>
        <source>%1 has changes that were not saved.</source>
        <translation>%1 hat Änderungen, die nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>The scene</source>
        <translation>Die Szene</translation>
    </message>
    <message>
        <source>Import Mesh</source>
        <translation>Netz importieren</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>%1[*] – Scene Editor</source>
        <translation>%1[*] – Szeneneditor</translation>
    </message>
    <message>
        <source>About Scene Editor</source>
        <translation>Über den Szeneneditor</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>&amp;System</source>
        <translation>&amp;System</translation>
    </message>
    <message>
        <source>A scene without a file</source>
        <translation>Eine Szene ohne Datei</translation>
    </message>
    <message>
        <source>%1 had changes that were not saved when the scene editor ended unexpectedly. Open them, as they were at %2?</source>
        <translation>%1 hatte ungespeicherte Änderungen, als der Szeneneditor unerwartet endete. Sollen sie geöffnet werden, wie sie am %2 waren?</translation>
    </message>
    <message>
        <source>Scene Editor</source>
        <translation>Szeneneditor</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Style</source>
        <translation>Aus&amp;sehen</translation>
    </message>
    <message>
        <source>&amp;Language (from the next start)</source>
        <translation>S&amp;prache (ab dem nächsten Start)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter …</translation>
    </message>
    <message>
        <source>&amp;Import Mesh…</source>
        <translation>Netz &amp;importieren …</translation>
    </message>
    <message>
        <source>Ctrl+I</source>
        <translation>Ctrl+I</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Duplicate</source>
        <translation>&amp;Duplizieren</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>F2</source>
        <translation>F2</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>F&amp;rame Selection</source>
        <translation>Aus&amp;wahl einpassen</translation>
    </message>
    <message>
        <source>F</source>
        <translation>F</translation>
    </message>
    <message>
        <source>Reset &amp;Property</source>
        <translation>&amp;Eigenschaft zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Reset Camera</source>
        <translation>&amp;Kamera zurücksetzen</translation>
    </message>
    <message>
        <source>Ctrl+Home</source>
        <translation>Ctrl+Home</translation>
    </message>
    <message>
        <source>&amp;New View Window</source>
        <translation>&amp;Neues Ansichtsfenster</translation>
    </message>
    <message>
        <source>Ctrl+Shift+N</source>
        <translation>Ctrl+Shift+N</translation>
    </message>
    <message>
        <source>&amp;Fold All</source>
        <translation>Alle &amp;zuklappen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+F</source>
        <translation>Ctrl+Shift+F</translation>
    </message>
    <message>
        <source>&amp;Unfold All</source>
        <translation>Alle &amp;aufklappen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+U</source>
        <translation>Ctrl+Shift+U</translation>
    </message>
    <message>
        <source>&amp;About Scene Editor</source>
        <translation>Ü&amp;ber den Szeneneditor</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 gespeichert</translation>
    </message>
    <message>
        <source>Imported %1</source>
        <translation>%1 importiert</translation>
    </message>
    <message>
        <source>1 object</source>
        <translation>1 Objekt</translation>
    </message>
    <message>
        <source>%L1 objects</source>
        <translation>%L1 Objekte</translation>
    </message>
    <message>
        <source>1 triangle</source>
        <translation>1 Dreieck</translation>
    </message>
    <message>
        <source>%L1 triangles</source>
        <translation>%L1 Dreiecke</translation>
    </message>
    <message>
        <source>&lt;p&gt;Scene Editor, an example of OrvekQtWidgets %1.&lt;/p&gt;&lt;p&gt;Its property panel is made from a description of the scene; the view is drawn by a small OpenGL engine through the library&apos;s render widget.&lt;/p&gt;&lt;p&gt;Graphics: %2&lt;/p&gt;</source>
        <translation>&lt;p&gt;Szeneneditor, ein Beispiel für OrvekQtWidgets %1.&lt;/p&gt;&lt;p&gt;Seine Eigenschaften werden aus einer Beschreibung der Szene gemacht; die Ansicht zeichnet eine kleine OpenGL-Engine über das Zeichen-Widget der Bibliothek.&lt;/p&gt;&lt;p&gt;Grafik: %2&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>also open in another window; whichever saves last overwrites the other</source>
        <translation>auch in einem anderen Fenster offen; wer zuletzt speichert, überschreibt das andere</translation>
    </message>
</context>
<context>
    <name>sceneeditor::MessageBar</name>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
</context>
<context>
    <name>sceneeditor::ObjectList</name>
    <message>
        <source>No objects yet. Drop a mesh on the window, or choose “Add mesh…”.</source>
        <translation>Noch keine Objekte. Ein Netz auf das Fenster ziehen oder „Netz hinzufügen …“ wählen.</translation>
    </message>
    <message>
        <source>(no name)</source>
        <translation>(ohne Namen)</translation>
    </message>
</context>
<context>
    <name>sceneeditor::SceneOpener</name>
    <message>
        <source>%1: view.environmentImage: %2</source>
        <translation>%1: view.environmentImage: %2</translation>
    </message>
    <message>
        <source>%1: objects[%2].mesh: %3</source>
        <translation>%1: objects[%2].mesh: %3</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
</context>
<context>
    <name>sceneeditor::ScenePanel</name>
    <message>
        <source>Objects of the scene; the check box shows or hides one, a double click renames it, dragging changes the order</source>
        <translation>Objekte der Szene; das Kästchen blendet eines ein oder aus, ein Doppelklick benennt es um, Ziehen ändert die Reihenfolge</translation>
    </message>
    <message>
        <source>Add mesh…</source>
        <translation>Netz hinzufügen …</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Mesh</source>
        <translation>Netz</translation>
    </message>
    <message>
        <source>Mesh of the object; other files are read in the background</source>
        <translation>Netz des Objekts; andere Dateien werden im Hintergrund gelesen</translation>
    </message>
</context>
<context>
    <name>sceneeditor::SceneViews</name>
    <message>
        <source>View %1 – Scene Editor</source>
        <translation>Ansicht %1 – Szeneneditor</translation>
    </message>
</context>
<context>
    <name>sceneeditor::SurfaceManager</name>
    <message>
        <source>OpenGL cannot draw to this window</source>
        <translation>OpenGL kann in dieses Fenster nicht zeichnen</translation>
    </message>
    <message>
        <source>OpenGL cannot draw to the windows of the platform &quot;%1&quot;</source>
        <translation>OpenGL kann in die Fenster der Plattform „%1“ nicht zeichnen</translation>
    </message>
    <message>
        <source>OpenGL is not available: no context could be created</source>
        <translation>OpenGL ist nicht verfügbar: Es konnte kein Kontext angelegt werden</translation>
    </message>
    <message>
        <source>OpenGL is not available: the context cannot be used</source>
        <translation>OpenGL ist nicht verfügbar: Der Kontext ist nicht benutzbar</translation>
    </message>
    <message>
        <source>OpenGL 3.3 is needed; &quot;%1&quot; has %2.%3</source>
        <translation>OpenGL 3.3 wird benötigt; „%1“ hat %2.%3</translation>
    </message>
</context>
</TS>
