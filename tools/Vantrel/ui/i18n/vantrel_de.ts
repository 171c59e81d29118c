<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Filters_UI</name>
    <message>
        <source>BMO Filters</source>
        <translation>BMO-Filter</translation>
    </message>
    <message>
        <source>Each click selects or deselects a name.</source>
        <translation>Jeder Klick wählt einen Namen aus oder ab.</translation>
    </message>
    <message>
        <source>Shape files</source>
        <translation>Shape-Dateien</translation>
    </message>
    <message>
        <source>Shows only the names that contain this text, and deselects all.
Names that are hidden are not chosen by OK. Key: Ctrl+F</source>
        <translation>Zeigt nur die Namen, die diesen Text enthalten, und wählt alle ab.
Ausgeblendete Namen übernimmt OK nicht. Taste: Strg+F</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Deselects all names. Without a chosen name a run replaces nothing.</source>
        <translation>Wählt alle Namen ab. Ohne gewählten Namen ersetzt ein Lauf nichts.</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Alle abwählen</translation>
    </message>
    <message>
        <source>Selects all names that are shown; not those that the search text hides.</source>
        <translation>Wählt alle angezeigten Namen aus; nicht die, die der Suchtext ausblendet.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Chooses the selected names for the next run; not those that the search text hides.</source>
        <translation>Übernimmt die ausgewählten Namen für den nächsten Lauf; nicht die, die der Suchtext ausblendet.</translation>
    </message>
    <message>
        <source>Leaves the choice as it was when this dialog opened.</source>
        <translation>Lässt die Auswahl, wie sie beim Öffnen dieses Dialogs war.</translation>
    </message>
</context>
<context>
    <name>RunNotifier</name>
    <message>
        <source>The update of %1 has ended</source>
        <translation>Die Aktualisierung von %1 ist beendet</translation>
    </message>
    <message>
        <source>Objects replaced: %1, errors: %2</source>
        <translation>Ersetzte Objekte: %1, Fehler: %2</translation>
    </message>
</context>
<context>
    <name>TableActions</name>
    <message>
        <source>Save Table</source>
        <translation>Tabelle speichern</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>Kommagetrennte Werte (*.csv)</translation>
    </message>
    <message>
        <source>Vantrel Info</source>
        <translation>Vantrel-Info</translation>
    </message>
    <message>
        <source>File %1 could not be written: %2</source>
        <translation>Die Datei %1 konnte nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy Row</source>
        <translation>Zeile kopieren</translation>
    </message>
    <message>
        <source>Copy All</source>
        <translation>Alles kopieren</translation>
    </message>
    <message>
        <source>Save As...</source>
        <translation>Speichern unter...</translation>
    </message>
    <message>
        <source>Open Image File</source>
        <translation>Bilddatei öffnen</translation>
    </message>
    <message>
        <source>Open Containing Folder</source>
        <translation>Ordner der Datei öffnen</translation>
    </message>
    <message>
        <source>this is not a file</source>
        <translation>dies ist keine Datei</translation>
    </message>
</context>
<context>
    <name>Vantrel</name>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Date/Time</source>
        <translation>Datum/Zeit</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Start Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Searching in %1...</source>
        <translation>Suche in %1...</translation>
    </message>
    <message>
        <source>Select Project</source>
        <translation>Projekt wählen</translation>
    </message>
    <message>
        <source>File %1 does not exist anymore in the project folder %2</source>
        <translation>Die Datei %1 gibt es im Projektordner %2 nicht mehr</translation>
    </message>
    <message>
        <source>File %1 does not exist anymore</source>
        <translation>Die Datei %1 gibt es nicht mehr</translation>
    </message>
    <message>
        <source>Vantrel Info</source>
        <translation>Vantrel-Info</translation>
    </message>
</context>
<context>
    <name>VantrelClass</name>
    <message>
        <source>Vantrel</source>
        <translation>Vantrel</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:12pt;&quot;&gt;Project:&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:12pt;&quot;&gt;Projekt:&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>The project folder, which holds &quot;scr&quot; (screens) and &quot;mac&quot; (shapes).
It may be dropped anywhere on this window. Any change of it
forgets which shapes were chosen. Key: Ctrl+L</source>
        <translation>Der Projektordner mit &quot;scr&quot; (Bilder) und &quot;mac&quot; (Shapes).
Er kann überall auf diesem Fenster abgelegt werden. Jede Änderung
vergisst, welche Shapes gewählt waren. Taste: Strg+L</translation>
    </message>
    <message>
        <source>Project folder</source>
        <translation>Projektordner</translation>
    </message>
    <message>
        <source>Lets you choose the project folder. Nothing in it is changed. Key: Ctrl+O</source>
        <translation>Wählt den Projektordner. Nichts darin wird verändert. Taste: Strg+O</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:12pt;&quot;&gt;Replaced Shapes&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:12pt;&quot;&gt;Ersetzte Shapes&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Replaced Shapes</source>
        <translation>Ersetzte Shapes</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source> Image File</source>
        <translation> Bilddatei</translation>
    </message>
    <message>
        <source>Shape File</source>
        <translation>Shape-Datei</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Image-Object</source>
        <translation>Bildobjekt</translation>
    </message>
    <message>
        <source>Replace by Shape-Object</source>
        <translation>Ersetzt durch Shape-Objekt</translation>
    </message>
    <message>
        <source>Reinitalisation</source>
        <translation>Reinitialisierung</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Start Update: puts the current shapes in the place of their copies on all screens,
for the shapes chosen by &quot;BMO Filters&quot; and for no others. Rewrites the folder &quot;scr&quot;
and replaces the backup of the run before in &quot;scr_bak&quot;.
Cancel: ends the run before its next screen; &quot;scr&quot; stays as it was, unless
the last screen is done already. Key: F5</source>
        <translation>Aktualisieren: setzt auf allen Bildern die aktuellen Shapes an die Stelle ihrer Kopien,
für die mit &quot;BMO-Filter&quot; gewählten Shapes und für keine anderen. Schreibt den Ordner
&quot;scr&quot; neu und ersetzt die Sicherung des vorigen Laufs in &quot;scr_bak&quot;.
Abbrechen: beendet den Lauf vor dem nächsten Bild; &quot;scr&quot; bleibt, wie es war,
wenn das letzte Bild nicht schon fertig ist. Taste: F5</translation>
    </message>
    <message>
        <source>Start Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Opens the change log of the last run: which objects on which screens were replaced.
Does not open the screens. There is none before the first run.</source>
        <translation>Öffnet das Änderungsprotokoll des letzten Laufs: welche Objekte auf welchen Bildern
ersetzt wurden. Öffnet nicht die Bilder. Vor dem ersten Lauf gibt es keines.</translation>
    </message>
    <message>
        <source>Changed Files</source>
        <translation>Geänderte Dateien</translation>
    </message>
    <message>
        <source>Opens the log file of the program, which holds older entries too.
The table of the window is only of this run.</source>
        <translation>Öffnet die Protokolldatei des Programms, die auch ältere Einträge hat.
Die Tabelle im Fenster gilt nur für diesen Lauf.</translation>
    </message>
    <message>
        <source>Log-File</source>
        <translation>Protokolldatei</translation>
    </message>
    <message>
        <source>Lets you choose the shapes whose copies the next run replaces.
Reads the screens, changes nothing, and does not touch a run under way.</source>
        <translation>Wählt die Shapes, deren Kopien der nächste Lauf ersetzt.
Liest die Bilder, verändert nichts und berührt einen laufenden Lauf nicht.</translation>
    </message>
    <message>
        <source>BMO Filters</source>
        <translation>BMO-Filter</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:12pt;&quot;&gt;Logs&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:12pt;&quot;&gt;Protokoll&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;br/&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;br/&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Ends the program. Remembers window and project; chosen shapes are forgotten.
Not available during a run: cancel it first.</source>
        <translation>Beendet das Programm. Fenster und Projekt werden gemerkt, gewählte Shapes nicht.
Während eines Laufs gesperrt: zuerst abbrechen.</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
</context>
</TS>
