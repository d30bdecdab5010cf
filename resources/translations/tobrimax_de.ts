<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en_GB">
<context>
    <name>AboutBox</name>
    <message>
        <source>windows, BMP and WebP pictures</source>
        <translation>Fenster, BMP- und WebP-Bilder</translation>
    </message>
    <message>
        <source>SVG pictures</source>
        <translation>SVG-Bilder</translation>
    </message>
    <message>
        <source>fonts of SVG pictures</source>
        <translation>Schriften in SVG-Bildern</translation>
    </message>
    <message>
        <source>limits of what draws SVG pictures</source>
        <translation>Grenzen des Programms, das SVG-Bilder zeichnet</translation>
    </message>
    <message>
        <source>colour profiles</source>
        <translation>Farbprofile</translation>
    </message>
    <message>
        <source>PNG pictures</source>
        <translation>PNG-Bilder</translation>
    </message>
    <message>
        <source>JPEG pictures</source>
        <translation>JPEG-Bilder</translation>
    </message>
    <message>
        <source>TIFF pictures</source>
        <translation>TIFF-Bilder</translation>
    </message>
    <message>
        <source>GIF pictures</source>
        <translation>GIF-Bilder</translation>
    </message>
    <message>
        <source>JPEG 2000 pictures</source>
        <translation>JPEG-2000-Bilder</translation>
    </message>
    <message>
        <source>PNG compression, compressed SVG pictures</source>
        <translation>PNG-Kompression, komprimierte SVG-Bilder</translation>
    </message>
    <message>
        <source>PNG decompression</source>
        <translation>PNG-Dekompression</translation>
    </message>
    <message>
        <source>property lists</source>
        <translation>Property-Listen</translation>
    </message>
    <message>
        <source>portable SIMD</source>
        <translation>portables SIMD</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation>Bibliotheken</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>For</source>
        <translation>Wofür</translation>
    </message>
    <message>
        <source>Licence</source>
        <translation>Lizenz</translation>
    </message>
    <message>
        <source>About Tobrimax</source>
        <translation>Über Tobrimax</translation>
    </message>
    <message>
        <source>One picture in, the app icons of every platform out. Free software under the MIT licence. It is made with these libraries:</source>
        <translation>Ein Bild hinein, die App-Icons aller Plattformen heraus. Freie Software unter der MIT-Lizenz, erstellt mit diesen Bibliotheken:</translation>
    </message>
</context>
<context>
    <name>BFPageControl</name>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>BorderImageView</name>
    <message>
        <source>%1 or %2</source>
        <extracomment>The end of a list of formats.</extracomment>
        <translation>%1 oder %2</translation>
    </message>
    <message>
        <source>%1.
Best: square, 1024 × 1024 or larger.</source>
        <translation>%1.
Ideal: quadratisch, mindestens 1024 × 1024.</translation>
    </message>
    <message>
        <source>Empty. Drop a picture here, or press Space to choose one.</source>
        <translation>Leer. Ziehen Sie ein Bild hierher, oder drücken Sie die Leertaste, um eines auszuwählen.</translation>
    </message>
    <message>
        <source>A picture of %1 × %2</source>
        <translation>Ein Bild mit %1 × %2</translation>
    </message>
</context>
<context>
    <name>ColorWell</name>
    <message>
        <source>%1, alpha %2 %</source>
        <translation>%1, Deckkraft %2&#xa0;%</translation>
    </message>
</context>
<context>
    <name>FloatSlider</name>
    <message>
        <source>%1 %</source>
        <translation>%1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>LayoutList</name>
    <message>
        <source>Layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>For</source>
        <translation>Für</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open Picture…</source>
        <translation>Bild ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Generate…</source>
        <translation>Icons &amp;erzeugen …</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>&amp;Save Application Data</source>
        <translation>Anwendungsdaten s&amp;peichern</translation>
    </message>
    <message>
        <source>&amp;Quit Tobrimax</source>
        <translation>Tobrimax &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Platform</source>
        <translation>&amp;Plattform</translation>
    </message>
    <message>
        <source>&amp;Rounded Corner</source>
        <translation>&amp;Abgerundete Ecken</translation>
    </message>
    <message>
        <source>&amp;Border</source>
        <translation>&amp;Rahmen</translation>
    </message>
    <message>
        <source>Border &amp;Colour…</source>
        <translation>Rahmen&amp;farbe …</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Minimise</source>
        <translation>&amp;Minimieren</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Tobrimax &amp;Guide</source>
        <translation>Tobrimax-&amp;Handbuch</translation>
    </message>
    <message>
        <source>Tobrimax &amp;Web Site</source>
        <translation>Tobrimax im &amp;Web</translation>
    </message>
    <message>
        <source>&amp;More from Varnholt…</source>
        <translation>&amp;Mehr von Varnholt …</translation>
    </message>
    <message>
        <source>&amp;About Tobrimax</source>
        <translation>&amp;Über Tobrimax</translation>
    </message>
    <message>
        <source>Generate for a &amp;Project…</source>
        <translation>Für ein Projek&amp;t erzeugen …</translation>
    </message>
</context>
<context>
    <name>MainWindowController</name>
    <message>
        <source>Source picture</source>
        <translation>Ausgangsbild</translation>
    </message>
    <message>
        <source>Drop or paste a picture, or click to choose one</source>
        <translation>Bild hierherziehen oder einfügen, oder klicken, um eines auszuwählen</translation>
    </message>
    <message>
        <source>Drop a picture here
or click to choose one</source>
        <translation>Bild hierherziehen
oder zum Auswählen klicken</translation>
    </message>
    <message>
        <source>&amp;Platform</source>
        <translation>&amp;Plattform</translation>
    </message>
    <message>
        <source>Platform</source>
        <translation>Plattform</translation>
    </message>
    <message>
        <source>The devices that the icons are for</source>
        <translation>Geräte, für die die Icons bestimmt sind</translation>
    </message>
    <message>
        <source>iPhone and iPad</source>
        <translation>iPhone und iPad</translation>
    </message>
    <message>
        <source>&amp;Rounded corner</source>
        <translation>Abgerundete &amp;Ecken</translation>
    </message>
    <message>
        <source>R&amp;adius</source>
        <translation>Radi&amp;us</translation>
    </message>
    <message>
        <source>Corner radius</source>
        <translation>Eckenradius</translation>
    </message>
    <message>
        <source>Corner radius, as a part of the icon&apos;s side</source>
        <translation>Eckenradius als Anteil der Seitenlänge des Icons</translation>
    </message>
    <message>
        <source>&amp;Border</source>
        <translation>Rah&amp;men</translation>
    </message>
    <message>
        <source>Wi&amp;dth</source>
        <translation>Brei&amp;te</translation>
    </message>
    <message>
        <source>Border width</source>
        <translation>Rahmenbreite</translation>
    </message>
    <message>
        <source>Line width, as a part of the icon&apos;s width; its inner half shows</source>
        <translation>Linienbreite als Anteil der Breite des Icons; sichtbar ist die innere Hälfte</translation>
    </message>
    <message>
        <source>&amp;Colour</source>
        <translation>Fa&amp;rbe</translation>
    </message>
    <message>
        <source>Border colour</source>
        <translation>Rahmenfarbe</translation>
    </message>
    <message>
        <source>Border colour and its opacity</source>
        <translation>Farbe und Deckkraft des Rahmens</translation>
    </message>
    <message>
        <source>&amp;Generate</source>
        <translation>&amp;Icons erzeugen</translation>
    </message>
    <message>
        <source>Choose a folder and write the icons into it</source>
        <translation>Einen Ordner auswählen und die Icons darin speichern</translation>
    </message>
</context>
<context>
    <name>PictureCaption</name>
    <message>
        <source>Reading %1…</source>
        <extracomment>%1 is the name of a picture.</extracomment>
        <translation>%1 wird gelesen …</translation>
    </message>
    <message>
        <source>Pasted picture</source>
        <translation>Eingefügtes Bild</translation>
    </message>
    <message>
        <source>Not square: will be stretched.</source>
        <translation>Nicht quadratisch: wird verzerrt.</translation>
    </message>
    <message>
        <source>Smaller than %1 px: will be enlarged.</source>
        <translation>Kleiner als %1 px: wird vergrößert.</translation>
    </message>
    <message>
        <source>Transparent: the App Store refuses such icons.</source>
        <translation>Transparent: vom App Store abgelehnt.</translation>
    </message>
    <message>
        <source>, %1 × %2</source>
        <translation>, %1 × %2</translation>
    </message>
    <message>
        <source>%1.</source>
        <extracomment>A sentence and its end.</extracomment>
        <translation>%1.</translation>
    </message>
</context>
<context>
    <name>PictureFiles</name>
    <message>
        <source>Pictures (*.png *.jpg *.jpeg *.tif *.tiff *.gif *.bmp *.webp *.icns *.svg *.svgz)</source>
        <translation>Bilder (*.png *.jpg *.jpeg *.tif *.tiff *.gif *.bmp *.webp *.icns *.svg *.svgz)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>PictureWell</name>
    <message>
        <source>Empty. Drop a picture here, or press Space to choose one.</source>
        <translation>Leer. Legen Sie ein Bild hier ab, oder drücken Sie die Leertaste, um eines auszuwählen.</translation>
    </message>
    <message>
        <source>%1, %2 × %3. Delete removes it.</source>
        <translation>%1, %2 × %3. Entf nimmt es weg.</translation>
    </message>
    <message>
        <source>&amp;Choose Another…</source>
        <translation>Anderes &amp;auswählen …</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
</context>
<context>
    <name>PlanCaption</name>
    <message>
        <source>1 PNG file, %1 px, in %2</source>
        <translation>1 PNG-Datei, %1 px, in %2</translation>
    </message>
    <message>
        <source>%1 PNG files, %2 to %3 px, in %4</source>
        <translation>%1 PNG-Dateien, %2 bis %3 px, in %4</translation>
    </message>
    <message>
        <source>, and %1/%2Application.icns</source>
        <translation>, dazu %1/%2Application.icns</translation>
    </message>
</context>
<context>
    <name>PreviewStrip</name>
    <message>
        <source>Icons as they will be written, at 16, 32, 64 and 128 pixels</source>
        <translation>Icons, wie sie gespeichert werden, mit 16, 32, 64 und 128 Pixeln</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
</context>
<context>
    <name>ProjectResult</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>1 file was written</source>
        <translation>1 Datei wurde geschrieben</translation>
    </message>
    <message>
        <source>%1 files were written</source>
        <translation>%1 Dateien wurden geschrieben</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>Not written: %1: %2.</source>
        <translation>Nicht geschrieben: %1: %2.</translation>
    </message>
    <message>
        <source>Failures</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>%1 lacks this line. Tobrimax does not change it.</source>
        <translation>In %1 fehlt diese Zeile. Tobrimax ändert die Datei nicht.</translation>
    </message>
    <message>
        <source>%1 lacks these lines. Tobrimax does not change it.</source>
        <translation>In %1 fehlen diese Zeilen. Tobrimax ändert die Datei nicht.</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy for %1</source>
        <extracomment>%1 is the name of a file.</extracomment>
        <translation>Für %1 kopieren</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
</context>
<context>
    <name>ProjectSheet</name>
    <message>
        <source>Generate for a Project</source>
        <translation>Für ein Projekt erzeugen</translation>
    </message>
    <message>
        <source>&amp;Layouts</source>
        <translation>&amp;Layouts</translation>
    </message>
    <message>
        <source>Layouts</source>
        <translation>Layouts</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>&amp;Einpassung</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Einpassung</translation>
    </message>
    <message>
        <source>How a picture that is not square lies on its icons</source>
        <translation>Wie ein Bild, das nicht quadratisch ist, auf seinen Icons liegt</translation>
    </message>
    <message>
        <source>Stretch to the square</source>
        <translation>Auf das Quadrat strecken</translation>
    </message>
    <message>
        <source>Show all of it</source>
        <translation>Ganz zeigen</translation>
    </message>
    <message>
        <source>Fill the square, cut off the rest</source>
        <translation>Quadrat füllen, Rest abschneiden</translation>
    </message>
    <message>
        <source>&amp;Padding</source>
        <translation>&amp;Rand</translation>
    </message>
    <message>
        <source>Padding</source>
        <translation>Rand</translation>
    </message>
    <message>
        <source>Free margin at each edge, as a part of the icon&apos;s side</source>
        <translation>Freier Rand an jeder Kante, als Teil der Seite des Icons</translation>
    </message>
    <message>
        <source>&amp;Background</source>
        <translation>&amp;Hintergrund</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>The colour below icons that have no alpha channel</source>
        <translation>Die Farbe unter Icons, die keinen Alphakanal haben</translation>
    </message>
    <message>
        <source>Further pictures</source>
        <translation>Weitere Bilder</translation>
    </message>
    <message>
        <source>Dark picture</source>
        <translation>Dunkles Bild</translation>
    </message>
    <message>
        <source>The picture for dark icons; without it none are made</source>
        <translation>Das Bild für dunkle Icons; ohne dieses werden keine erzeugt</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>Tinted picture</source>
        <translation>Getöntes Bild</translation>
    </message>
    <message>
        <source>The picture for tinted icons; without it none are made</source>
        <translation>Das Bild für getönte Icons; ohne dieses werden keine erzeugt</translation>
    </message>
    <message>
        <source>&amp;Tinted</source>
        <translation>&amp;Getönt</translation>
    </message>
    <message>
        <source>Foreground picture</source>
        <translation>Vordergrundbild</translation>
    </message>
    <message>
        <source>The front layer of Android&apos;s icons; without it, the main picture</source>
        <translation>Die vordere Ebene der Android-Icons; ohne dieses das Ausgangsbild</translation>
    </message>
    <message>
        <source>F&amp;oreground</source>
        <translation>&amp;Vordergrund</translation>
    </message>
    <message>
        <source>Monochrome picture</source>
        <translation>Monochromes Bild</translation>
    </message>
    <message>
        <source>The shape of Android&apos;s themed icons; without it, that of the front layer</source>
        <translation>Die Form der Android-Icons im Farbdesign; ohne dieses die der vorderen Ebene</translation>
    </message>
    <message>
        <source>&amp;Monochrome</source>
        <translation>&amp;Monochrom</translation>
    </message>
    <message>
        <source>Proj&amp;ect folder</source>
        <translation>&amp;Projektordner</translation>
    </message>
    <message>
        <source>Project folder</source>
        <translation>Projektordner</translation>
    </message>
    <message>
        <source>The folder of the project</source>
        <translation>Der Ordner des Projekts</translation>
    </message>
    <message>
        <source>&amp;Choose…</source>
        <translation>&amp;Auswählen …</translation>
    </message>
    <message>
        <source>P&amp;roof</source>
        <translation>Vors&amp;chau</translation>
    </message>
    <message>
        <source>Proof</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Generate</source>
        <translation>Er&amp;zeugen</translation>
    </message>
    <message>
        <source>&amp;Open Folder</source>
        <translation>&amp;Ordner öffnen</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>&amp;Fertig</translation>
    </message>
    <message>
        <source>Tick what the project needs.</source>
        <translation>Haken Sie an, was das Projekt braucht.</translation>
    </message>
    <message>
        <source>Choose the project&apos;s folder.</source>
        <translation>Wählen Sie den Ordner des Projekts.</translation>
    </message>
    <message>
        <source>The icons of the layouts that are ticked</source>
        <translation>Die Icons der angehakten Layouts</translation>
    </message>
    <message>
        <source>The folder could not be opened.</source>
        <translation>Der Ordner konnte nicht geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>PromotionWindow</name>
    <message>
        <source>More from Varnholt</source>
        <translation>Mehr von Varnholt</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>&amp;Open in Store</source>
        <translation>Im &amp;Store öffnen</translation>
    </message>
    <message>
        <source>&amp;Don’t show this again</source>
        <translation>&amp;Nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>Hide this window</source>
        <translation>Dieses Fenster ausblenden</translation>
    </message>
    <message>
        <source>&amp;Quit Tobrimax</source>
        <translation>Tobrimax &amp;beenden</translation>
    </message>
    <message>
        <source>You have them all</source>
        <translation>Sie haben schon alle</translation>
    </message>
    <message>
        <source>Every other application of ours is installed already. Thank you!</source>
        <translation>Alle unsere anderen Programme sind bereits installiert. Vielen Dank!</translation>
    </message>
</context>
<context>
    <name>ProofPreview</name>
    <message>
        <source>Proof of the icons</source>
        <translation>Vorschau der Icons</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>dunkel</translation>
    </message>
    <message>
        <source>tinted</source>
        <translation>getönt</translation>
    </message>
    <message>
        <source>front layer</source>
        <translation>vordere Ebene</translation>
    </message>
    <message>
        <source>themed</source>
        <translation>Farbdesign</translation>
    </message>
    <message>
        <source>back layer</source>
        <translation>hintere Ebene</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
    <message>
        <source>%1–%2 px</source>
        <extracomment>Sizes of icons in pixels, from the smallest to the largest.</extracomment>
        <translation>%1–%2 px</translation>
    </message>
</context>
<context>
    <name>Sentences</name>
    <message>
        <source>not a picture but text</source>
        <translation>kein Bild, sondern Text</translation>
    </message>
    <message>
        <source>not a picture but an HTML page; save the picture itself</source>
        <translation>kein Bild, sondern eine HTML-Seite; bitte das Bild selbst sichern</translation>
    </message>
    <message>
        <source>not a picture but %1; %2</source>
        <translation>kein Bild, sondern %1; bitte %2</translation>
    </message>
    <message>
        <source>not a picture but %1</source>
        <translation>kein Bild, sondern %1</translation>
    </message>
    <message>
        <source>%1 is not read here; %2</source>
        <translation>%1 kann nicht gelesen werden; bitte %2</translation>
    </message>
    <message>
        <source>not a picture of a known format (%1)</source>
        <translation>kein Bild in einem bekannten Format (%1)</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>die Datei ist leer</translation>
    </message>
    <message>
        <source>the %1 picture is truncated or damaged (%2)</source>
        <translation>das %1-Bild ist unvollständig oder beschädigt (%2)</translation>
    </message>
    <message>
        <source>the file was changed while it was read</source>
        <translation>die Datei wurde beim Lesen verändert</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>Datei oder Ordner nicht gefunden</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>keine Berechtigung</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>ein Ordner, keine Datei</translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation>keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>save it as SVG or PNG</source>
        <translation>als SVG oder PNG sichern</translation>
    </message>
    <message>
        <source>save it as PNG</source>
        <translation>als PNG sichern</translation>
    </message>
    <message>
        <source>save one frame as PNG</source>
        <translation>ein Einzelbild als PNG sichern</translation>
    </message>
    <message>
        <source>unpack it and take the picture in it</source>
        <translation>entpacken und das Bild darin nehmen</translation>
    </message>
    <message>
        <source>a video</source>
        <translation>ein Video</translation>
    </message>
    <message>
        <source>a sound</source>
        <translation>eine Tondatei</translation>
    </message>
    <message>
        <source>a sound or video</source>
        <translation>eine Ton- oder Videodatei</translation>
    </message>
    <message>
        <source>a program</source>
        <translation>ein Programm</translation>
    </message>
    <message>
        <source>a font</source>
        <translation>eine Schrift</translation>
    </message>
    <message>
        <source>a Windows cursor</source>
        <translation>ein Windows-Mauszeiger</translation>
    </message>
    <message>
        <source>a camera&apos;s raw picture</source>
        <translation>das RAW-Bild einer Kamera</translation>
    </message>
    <message>
        <source>a %1 picture</source>
        <translation>ein %1-Bild</translation>
    </message>
    <message>
        <source>an %1 picture</source>
        <translation>ein %1-Bild</translation>
    </message>
    <message>
        <source>a %1 document</source>
        <translation>ein %1-Dokument</translation>
    </message>
    <message>
        <source>an %1 document</source>
        <translation>ein %1-Dokument</translation>
    </message>
    <message>
        <source>a %1 archive</source>
        <translation>ein %1-Archiv</translation>
    </message>
    <message>
        <source>an %1 archive</source>
        <translation>ein %1-Archiv</translation>
    </message>
    <message>
        <source>the picture (%1) is %2 and will be enlarged</source>
        <translation>das Bild (%1) ist %2 und wird vergrößert</translation>
    </message>
    <message>
        <source>smaller than the largest icon (%1)</source>
        <translation>kleiner als das größte Icon (%1)</translation>
    </message>
    <message>
        <source>narrower than the widest icon (%1)</source>
        <translation>schmaler als das breiteste Icon (%1)</translation>
    </message>
    <message>
        <source>lower than the highest icon (%1)</source>
        <translation>niedriger als das höchste Icon (%1)</translation>
    </message>
    <message>
        <source>drawn as large as %1</source>
        <translation>so groß wie %1 gezeichnet</translation>
    </message>
    <message>
        <source>the picture (%1) is not square and will be stretched</source>
        <translation>das Bild (%1) ist nicht quadratisch und wird gestreckt</translation>
    </message>
    <message>
        <source>the picture (%1) is not square and is drawn whole, with two edges of its icons free</source>
        <translation>das Bild (%1) ist nicht quadratisch und wird ganz gezeichnet; zwei Kanten der Icons bleiben frei</translation>
    </message>
    <message>
        <source>the picture (%1) is not square and is cut off at two edges</source>
        <translation>das Bild (%1) ist nicht quadratisch und wird an zwei Kanten abgeschnitten</translation>
    </message>
    <message>
        <source>the picture is empty: all that icons show of it is transparent</source>
        <translation>das Bild ist leer: alles, was Icons davon zeigen, ist durchsichtig</translation>
    </message>
    <message>
        <source>the picture has transparent parts; where icons need a ground it is white</source>
        <translation>das Bild hat durchsichtige Teile; wo Icons einen Grund brauchen, ist er weiß</translation>
    </message>
    <message>
        <source>icons that fill their square get rounded corners on the background, but stores and systems cut corners themselves</source>
        <translation>Icons, die ihr Quadrat füllen, bekommen abgerundete Ecken auf dem Hintergrund, aber Stores und Systeme schneiden Ecken selbst</translation>
    </message>
    <message>
        <source>the picture&apos;s corners leave the circle that every launcher shows, and may be cut off in adaptive and maskable icons</source>
        <translation>die Ecken des Bildes verlassen den Kreis, den jeder Launcher zeigt, und können in adaptiven und maskierbaren Icons abgeschnitten werden</translation>
    </message>
    <message>
        <source>%1 is there already, and a build takes only one of the two; remove it first</source>
        <translation>%1 ist schon da, und ein Build nimmt nur eines von beiden; entfernen Sie es zuerst</translation>
    </message>
    <message>
        <source>circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>squircle</source>
        <translation>Superellipse</translation>
    </message>
    <message>
        <source>rounded square</source>
        <translation>rundes Quadrat</translation>
    </message>
    <message>
        <source>teardrop</source>
        <translation>Tropfen</translation>
    </message>
    <message>
        <source>Android: launcher icons below res/, and Google Play&apos;s picture</source>
        <translation>Android: Launcher-Icons unter res/ und das Bild für Google Play</translation>
    </message>
    <message>
        <source>A Capacitor project: iOS and Android</source>
        <translation>Ein Capacitor-Projekt: iOS und Android</translation>
    </message>
    <message>
        <source>An Electron project: the build/ folder of electron-builder</source>
        <translation>Ein Electron-Projekt: der Ordner build/ von electron-builder</translation>
    </message>
    <message>
        <source>An Expo project: the pictures that app.json names</source>
        <translation>Ein Expo-Projekt: die Bilder, die app.json nennt</translation>
    </message>
    <message>
        <source>A Flutter project: all platforms</source>
        <translation>Ein Flutter-Projekt: alle Plattformen</translation>
    </message>
    <message>
        <source>Linux: the hicolor icon theme</source>
        <translation>Linux: das Icon-Thema hicolor</translation>
    </message>
    <message>
        <source>A React Native project: iOS and Android</source>
        <translation>Ein React-Native-Projekt: iOS und Android</translation>
    </message>
    <message>
        <source>A Tauri 2 project: desktop and mobile</source>
        <translation>Ein Tauri-2-Projekt: Desktop und Mobilgeräte</translation>
    </message>
    <message>
        <source>A web site: favicon, touch icon, web app manifest</source>
        <translation>Eine Website: Favicon, Touch-Icon, Web-App-Manifest</translation>
    </message>
    <message>
        <source>Windows: app.ico, and the pictures of a package</source>
        <translation>Windows: app.ico und die Bilder eines Pakets</translation>
    </message>
    <message>
        <source>macOS: an icon set with all sizes</source>
        <translation>macOS: ein Icon-Satz mit allen Größen</translation>
    </message>
    <message>
        <source>iPhone and iPad: an icon set with one 1024 for all sizes</source>
        <translation>iPhone und iPad: ein Icon-Satz mit einem 1024er für alle Größen</translation>
    </message>
    <message>
        <source>Apple Watch: an icon set with one 1024 for all sizes</source>
        <translation>Apple Watch: ein Icon-Satz mit einem 1024er für alle Größen</translation>
    </message>
    <message>
        <source>Apple Watch: an icon set with all sizes</source>
        <translation>Apple Watch: ein Icon-Satz mit allen Größen</translation>
    </message>
    <message>
        <source>iPhone, iPad and the App Store: an icon set with all sizes</source>
        <translation>iPhone, iPad und App Store: ein Icon-Satz mit allen Größen</translation>
    </message>
    <message>
        <source>the picture has several frames; the first is taken</source>
        <translation>das Bild hat mehrere Einzelbilder; das erste wird genommen</translation>
    </message>
    <message>
        <source>the picture&apos;s colour profile could not be used; its colours are taken as sRGB</source>
        <translation>das Farbprofil des Bildes war nicht brauchbar; seine Farben gelten als sRGB</translation>
    </message>
    <message>
        <source>the picture shows nothing of the files that it links to: %1</source>
        <translation>das Bild zeigt nichts von den Dateien, auf die es verweist: %1</translation>
    </message>
    <message>
        <source>the picture&apos;s foreignObject is left out</source>
        <translation>im Bild wird foreignObject weggelassen</translation>
    </message>
    <message>
        <source>the picture has styles with var(), which are left out</source>
        <translation>das Bild hat Stile mit var(); diese werden weggelassen</translation>
    </message>
    <message>
        <source>the picture&apos;s text is drawn with other fonts, since these are not installed: %1</source>
        <translation>der Text des Bildes wird mit anderen Schriften gezeichnet, da diese nicht installiert sind: %1</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 und %2 weitere</translation>
    </message>
    <message>
        <source>the picture takes more than %1 s to draw</source>
        <translation>das Bild braucht mehr als %1 s zum Zeichnen</translation>
    </message>
    <message>
        <source>the picture takes more memory to draw than %1 GiB</source>
        <translation>das Bild braucht zum Zeichnen mehr Speicher als %1 GiB</translation>
    </message>
    <message>
        <source>the SVG document is larger than %1 MiB</source>
        <translation>das SVG-Dokument ist größer als %1 MiB</translation>
    </message>
    <message>
        <source>the SVG document is nested deeper than %1 elements</source>
        <translation>das SVG-Dokument ist tiefer als %1 Elemente verschachtelt</translation>
    </message>
    <message>
        <source>the SVG document declares an external entity</source>
        <translation>das SVG-Dokument deklariert eine externe Entität</translation>
    </message>
</context>
<context>
    <name>SuggestedApp</name>
    <message>
        <source>Folds a paper model of any shape that you draw, and prints the sheets to cut out.</source>
        <translation>Faltet aus jeder gezeichneten Form ein Papiermodell und druckt die Bögen zum Ausschneiden.</translation>
    </message>
    <message>
        <source>A quiet place to write: one page, one font, and a word count when you ask for it.</source>
        <translation>Ein ruhiger Ort zum Schreiben: eine Seite, eine Schrift und auf Wunsch die Zahl der Wörter.</translation>
    </message>
    <message>
        <source>Tides and daylight for every harbour of your coast, for the week ahead.</source>
        <translation>Gezeiten und Tageslicht für jeden Hafen Ihrer Küste, eine Woche im Voraus.</translation>
    </message>
    <message>
        <source>Connects the sound of one program with the input of another, cable by cable.</source>
        <translation>Verbindet den Ton eines Programms mit dem Eingang eines anderen, Kabel für Kabel.</translation>
    </message>
    <message>
        <source>Keeps your garden&apos;s diary: what was sown, where it stands, and when to pick it.</source>
        <translation>Führt das Tagebuch Ihres Gartens: was gesät wurde, wo es steht und wann geerntet wird.</translation>
    </message>
    <message>
        <source>The time wherever your friends are, on one small globe in the menu bar.</source>
        <translation>Die Uhrzeit dort, wo Ihre Freunde sind, auf einem kleinen Globus in der Menüleiste.</translation>
    </message>
    <message>
        <source>Timers with names. Start three at once and know which one is ringing.</source>
        <translation>Kurzzeitwecker mit Namen. Starten Sie drei zugleich und wissen Sie, welcher klingelt.</translation>
    </message>
    <message>
        <source>Lays out labels, badges and name tags from a list, ready for the printer.</source>
        <translation>Setzt Etiketten, Abzeichen und Namensschilder aus einer Liste, fertig zum Drucken.</translation>
    </message>
</context>
</TS>
