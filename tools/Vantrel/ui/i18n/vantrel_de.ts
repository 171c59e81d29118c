<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Application</name>
    <message>
        <source>A step of the program failed: %1. It was left out; later failures are only logged. If the window does not work as it should, close it and start it again.</source>
        <translation>Ein Schritt des Programms ist fehlgeschlagen: %1. Er wurde ausgelassen; spätere Fehler stehen nur im Log. Wenn das Fenster nicht mehr arbeitet, wie es soll, schließen Sie es und starten Sie es neu.</translation>
    </message>
    <message>
        <source>Vantrel Info</source>
        <translation>Vantrel-Info</translation>
    </message>
</context>
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
    <name>LeftOverDialog</name>
    <message>
        <source>Vantrel Info</source>
        <translation>Vantrel-Info</translation>
    </message>
    <message>
        <source>&amp;Put Back</source>
        <translation>&amp;Zurückholen</translation>
    </message>
    <message>
        <source>Makes &quot;scr&quot; what it was before the run. Can be stopped and repeated.</source>
        <translation>Macht &quot;scr&quot; wieder zu dem, was es vor dem Lauf war. Kann angehalten und wiederholt werden.</translation>
    </message>
    <message>
        <source>C&amp;omplete</source>
        <translation>&amp;Fertigstellen</translation>
    </message>
    <message>
        <source>Does what remains of the run. Can be stopped and repeated.</source>
        <translation>Tut, was vom Lauf noch fehlt. Kann angehalten und wiederholt werden.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Changes nothing. The next start asks again.</source>
        <translation>Verändert nichts. Der nächste Start fragt wieder.</translation>
    </message>
</context>
<context>
    <name>MessageBar</name>
    <message>
        <source>Information</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Closes this message. Nothing else is changed.</source>
        <translation>Schließt diese Meldung. Sonst ändert sich nichts.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>RecoveryFlow</name>
    <message>
        <source>Vantrel Info</source>
        <translation>Vantrel-Info</translation>
    </message>
    <message>
        <source>Put &amp;Away</source>
        <translation>&amp;Weglegen</translation>
    </message>
    <message>
        <source>Moves &quot;scr_temp&quot; to the earlier runs, so that the next run converts all screens anew.</source>
        <translation>Legt &quot;scr_temp&quot; zu den früheren Läufen, damit der nächste Lauf alle Bilder neu umwandelt.</translation>
    </message>
</context>
<context>
    <name>RecoveryProgress</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Vantrel Info</source>
        <translation>Vantrel-Info</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Stops before the next screen. No screen is lost; the next start asks again.</source>
        <translation>Hält vor dem nächsten Bild an. Kein Bild geht verloren; der nächste Start fragt wieder.</translation>
    </message>
    <message>
        <source>Stopping after the current screen...</source>
        <translation>Hält nach dem jetzigen Bild an...</translation>
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
    <name>Story</name>
    <message>
        <source>Put Back removes &quot;scr_temp&quot;; &quot;scr&quot; stays as it is.</source>
        <translation>&quot;Zurückholen&quot; entfernt &quot;scr_temp&quot;; &quot;scr&quot; bleibt, wie es ist.</translation>
    </message>
    <message>
        <source>Put Back copies the screens from &quot;scr_bak&quot; back to &quot;scr&quot; and removes &quot;scr_temp&quot;.</source>
        <translation>&quot;Zurückholen&quot; kopiert die Bilder aus &quot;scr_bak&quot; zurück nach &quot;scr&quot; und entfernt &quot;scr_temp&quot;.</translation>
    </message>
    <message>
        <source>Complete takes the run back, then performs it anew.</source>
        <translation>&quot;Fertigstellen&quot; macht den Lauf rückgängig und führt ihn dann neu aus.</translation>
    </message>
    <message>
        <source>It ended while it was converting: &quot;scr&quot; is untouched.</source>
        <translation>Er endete beim Umwandeln: &quot;scr&quot; ist unberührt.</translation>
    </message>
    <message>
        <source>Complete converts all screens again and goes on.</source>
        <translation>&quot;Fertigstellen&quot; wandelt alle Bilder noch einmal um und fährt fort.</translation>
    </message>
    <message>
        <source>It ended while it was removing the last backup: &quot;scr&quot; is untouched, and &quot;scr_temp&quot; holds all converted screens.</source>
        <translation>Er endete beim Entfernen der letzten Sicherung: &quot;scr&quot; ist unberührt, und in &quot;scr_temp&quot; liegen alle umgewandelten Bilder.</translation>
    </message>
    <message>
        <source>Complete backs up and copies back.</source>
        <translation>&quot;Fertigstellen&quot; sichert und kopiert zurück.</translation>
    </message>
    <message>
        <source>It ended while it was backing up: each screen lies in &quot;scr&quot; or in &quot;scr_bak&quot;, and &quot;scr_temp&quot; holds all converted screens.</source>
        <translation>Er endete beim Sichern: jedes Bild liegt in &quot;scr&quot; oder in &quot;scr_bak&quot;, und in &quot;scr_temp&quot; liegen alle umgewandelten Bilder.</translation>
    </message>
    <message>
        <source>Complete backs up the rest and copies back.</source>
        <translation>&quot;Fertigstellen&quot; sichert den Rest und kopiert zurück.</translation>
    </message>
    <message>
        <source>It ended while it was removing the screens that are backed up: &quot;scr_bak&quot; holds all screens from before the run, and &quot;scr_temp&quot; all converted ones.</source>
        <translation>Er endete beim Entfernen der gesicherten Bilder: in &quot;scr_bak&quot; liegen alle Bilder von vor dem Lauf, in &quot;scr_temp&quot; alle umgewandelten.</translation>
    </message>
    <message>
        <source>Complete copies back.</source>
        <translation>&quot;Fertigstellen&quot; kopiert zurück.</translation>
    </message>
    <message>
        <source>It ended while it was copying back: &quot;scr_bak&quot; holds the screens from before the run, &quot;scr&quot; and &quot;scr_temp&quot; hold the converted ones.</source>
        <translation>Er endete beim Zurückkopieren: in &quot;scr_bak&quot; liegen die Bilder von vor dem Lauf, in &quot;scr&quot; und &quot;scr_temp&quot; die umgewandelten.</translation>
    </message>
    <message>
        <source>Complete copies the rest back.</source>
        <translation>&quot;Fertigstellen&quot; kopiert den Rest zurück.</translation>
    </message>
    <message>
        <source>It was being taken back: each screen from before the run lies in &quot;scr_bak&quot; or in &quot;scr&quot;.</source>
        <translation>Er wurde gerade rückgängig gemacht: jedes Bild von vor dem Lauf liegt in &quot;scr_bak&quot; oder in &quot;scr&quot;.</translation>
    </message>
    <message>
        <source>It was taken back, but for what is left of it: &quot;scr&quot; is as it was before the run.</source>
        <translation>Er wurde bis auf einige Reste rückgängig gemacht: &quot;scr&quot; ist, wie es vor dem Lauf war.</translation>
    </message>
    <message>
        <source>These lie neither in &quot;scr&quot; nor in &quot;scr_bak&quot;, where the run had left them; put them back:</source>
        <translation>Diese liegen weder in &quot;scr&quot; noch in &quot;scr_bak&quot;, wo der Lauf sie gelassen hatte; legen Sie sie zurück:</translation>
    </message>
    <message>
        <source>The versions of these in &quot;scr&quot; and &quot;scr_bak&quot; differ, but should be one; move the wrong ones away:</source>
        <translation>Die Fassungen von diesen in &quot;scr&quot; und &quot;scr_bak&quot; sind verschieden, sollten aber gleich sein; schieben Sie die falschen beiseite:</translation>
    </message>
    <message>
        <source>Over a link, these are the same files in &quot;scr&quot; and in &quot;scr_bak&quot;; put copies in place of the links:</source>
        <translation>Über einen Link sind dies in &quot;scr&quot; und in &quot;scr_bak&quot; dieselben Dateien; ersetzen Sie die Links durch Kopien:</translation>
    </message>
    <message>
        <source>These folders cannot be listed; make them readable:</source>
        <translation>Diese Ordner können nicht gelesen werden; machen Sie sie lesbar:</translation>
    </message>
    <message>
        <source>The names of these are not valid UTF-8; rename them:</source>
        <translation>Die Namen von diesen sind kein gültiges UTF-8; benennen Sie sie um:</translation>
    </message>
    <message>
        <source>The undoing of a run over %1 was interrupted.</source>
        <translation>Das Rückgängigmachen eines Laufs über %1 wurde unterbrochen.</translation>
    </message>
    <message>
        <source>A run over %1 was interrupted.</source>
        <translation>Ein Lauf über %1 wurde unterbrochen.</translation>
    </message>
    <message>
        <source>What is right cannot be decided, so nothing is touched. Put these files in order, then press Start Update again.</source>
        <translation>Was richtig ist, lässt sich nicht entscheiden; deshalb wird nichts berührt. Bringen Sie diese Dateien in Ordnung und drücken Sie dann noch einmal &quot;Aktualisieren&quot;.</translation>
    </message>
    <message>
        <source>How far it came is not known: the file &quot;.vantrel.run&quot; in the project cannot be read or understood.</source>
        <translation>Wie weit er kam, ist nicht bekannt: die Datei &quot;.vantrel.run&quot; im Projekt kann nicht gelesen oder verstanden werden.</translation>
    </message>
    <message>
        <source>Make a copy of the project. Then look which of &quot;scr&quot;, &quot;scr_bak&quot; and &quot;scr_temp&quot; are whole, put them in order, and remove that file.</source>
        <translation>Machen Sie eine Kopie des Projekts. Sehen Sie dann nach, welche der Ordner &quot;scr&quot;, &quot;scr_bak&quot; und &quot;scr_temp&quot; vollständig sind, bringen Sie sie in Ordnung und entfernen Sie diese Datei.</translation>
    </message>
    <message>
        <source>It was begun by %1 at %2.</source>
        <translation>Begonnen wurde er von %1 um %2.</translation>
    </message>
    <message>
        <source>Screens from before the run that lie in &quot;scr&quot;: %1, in &quot;scr_bak&quot; only: %2.</source>
        <translation>Bilder von vor dem Lauf, die in &quot;scr&quot; liegen: %1, nur in &quot;scr_bak&quot;: %2.</translation>
    </message>
    <message>
        <source>Put Back goes on with it: &quot;scr&quot; gets the screens from before the run, and the history keeps those that it had made.</source>
        <translation>&quot;Zurückholen&quot; fährt damit fort: &quot;scr&quot; bekommt die Bilder von vor dem Lauf, und der Verlauf behält die, die er gemacht hatte.</translation>
    </message>
    <message>
        <source>Cancel changes nothing.</source>
        <translation>&quot;Abbrechen&quot; verändert nichts.</translation>
    </message>
    <message>
        <source>Nothing was touched: files were changed since the run ended. They hold neither what the run had found nor what it had made. Move them away, then press Start Update again:</source>
        <translation>Nichts wurde berührt: seit dem Ende des Laufs wurden Dateien verändert. Sie enthalten weder, was der Lauf vorgefunden, noch, was er gemacht hatte. Schieben Sie sie beiseite und drücken Sie dann noch einmal &quot;Aktualisieren&quot;:</translation>
    </message>
    <message>
        <source>Nothing was touched: &quot;scr_temp&quot; is gone, and the converted screens with it. Press Start Update again and choose Put Back.</source>
        <translation>Nichts wurde berührt: &quot;scr_temp&quot; ist verschwunden und mit ihm die umgewandelten Bilder. Drücken Sie noch einmal &quot;Aktualisieren&quot; und wählen Sie &quot;Zurückholen&quot;.</translation>
    </message>
    <message>
        <source>Not all converted screens could be copied from &quot;scr_temp&quot; to &quot;scr&quot;; the log says why. No screen is lost. Put right what is in the way, then press Start Update again.</source>
        <translation>Nicht alle umgewandelten Bilder konnten von &quot;scr_temp&quot; nach &quot;scr&quot; kopiert werden; das Protokoll sagt, warum. Kein Bild ist verloren. Beheben Sie, was im Weg ist, und drücken Sie dann noch einmal &quot;Aktualisieren&quot;.</translation>
    </message>
    <message>
        <source>No screen is lost. Put right what is in the way, then press Start Update again.</source>
        <translation>Kein Bild ist verloren. Beheben Sie, was im Weg ist, und drücken Sie dann noch einmal &quot;Aktualisieren&quot;.</translation>
    </message>
    <message>
        <source>The last run was undone: &quot;scr&quot; holds the screens from before it, the history those that it had made.</source>
        <translation>Der letzte Lauf wurde rückgängig gemacht: in &quot;scr&quot; liegen die Bilder von vor ihm, im Verlauf die, die er gemacht hatte.</translation>
    </message>
    <message>
        <source>All %1 screens are back as they were before the run.</source>
        <translation>Alle %1 Bilder sind wieder, wie sie vor dem Lauf waren.</translation>
    </message>
    <message>
        <source>Copied from &quot;scr_bak&quot;: %1.</source>
        <translation>Aus &quot;scr_bak&quot; kopiert: %1.</translation>
    </message>
    <message>
        <source>To run now, press Start Update again.</source>
        <translation>Für einen neuen Lauf drücken Sie noch einmal &quot;Aktualisieren&quot;.</translation>
    </message>
    <message>
        <source>The run is complete: &quot;scr&quot; holds the converted screens, &quot;scr_bak&quot; those from before it.</source>
        <translation>Der Lauf ist fertiggestellt: in &quot;scr&quot; liegen die umgewandelten Bilder, in &quot;scr_bak&quot; die von vor ihm.</translation>
    </message>
    <message>
        <source>These are not in &quot;scr&quot;: the run could not convert them, or their copies are gone. Their versions from before the run lie in &quot;scr_bak&quot;:</source>
        <translation>Diese fehlen in &quot;scr&quot;: der Lauf konnte sie nicht umwandeln, oder ihre Kopien sind verschwunden. Ihre Fassungen von vor dem Lauf liegen in &quot;scr_bak&quot;:</translation>
    </message>
    <message>
        <source>The recovery was stopped before it was done. No screen is lost; the next start asks again.</source>
        <translation>Die Wiederherstellung wurde angehalten, bevor sie fertig war. Kein Bild ist verloren; der nächste Start fragt wieder.</translation>
    </message>
    <message>
        <source>What the interrupted run has left could not be found out: %1. The next start tries again.</source>
        <translation>Was der unterbrochene Lauf hinterlassen hat, war nicht herauszufinden: %1. Der nächste Start versucht es wieder.</translation>
    </message>
    <message>
        <source>Nothing was touched: the project is in use by %1.</source>
        <translation>Nichts wurde berührt: das Projekt wird benutzt von %1.</translation>
    </message>
    <message>
        <source>Nothing is left to be done: somebody else has recovered the project.</source>
        <translation>Es ist nichts mehr zu tun: jemand anderes hat das Projekt schon in Ordnung gebracht.</translation>
    </message>
    <message>
        <source>Looking what an interrupted run has left in %1...</source>
        <translation>Sieht nach, was ein unterbrochener Lauf in %1 hinterlassen hat...</translation>
    </message>
    <message>
        <source>Putting the screens of %1 back...</source>
        <translation>Holt die Bilder von %1 zurück...</translation>
    </message>
    <message>
        <source>Completing the interrupted run over %1...</source>
        <translation>Stellt den unterbrochenen Lauf über %1 fertig...</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>&quot;scr&quot; is as it was before the run.</source>
        <translation>&quot;scr&quot; ist wieder, wie es vor dem Lauf war.</translation>
    </message>
    <message>
        <source>&quot;scr_temp&quot; was put away. The next run converts all screens anew.</source>
        <translation>&quot;scr_temp&quot; ist weggelegt. Der nächste Lauf wandelt alle Bilder neu um.</translation>
    </message>
    <message>
        <source>&quot;scr_temp&quot; stays where it is, and takes part in the next run.</source>
        <translation>&quot;scr_temp&quot; bleibt, wo es ist, und geht in den nächsten Lauf ein.</translation>
    </message>
    <message>
        <source>Cancelled before the first screen. &quot;scr&quot; is untouched.</source>
        <translation>Vor dem ersten Bild abgebrochen. &quot;scr&quot; ist unberührt.</translation>
    </message>
    <message>
        <source>Cancelled after %1 of %2 screens. &quot;scr&quot; is untouched.</source>
        <translation>Nach %1 von %2 Bildern abgebrochen. &quot;scr&quot; ist unberührt.</translation>
    </message>
    <message>
        <source>What was converted lies in &quot;scr_temp&quot;, and takes part in the next run.</source>
        <translation>Was umgewandelt wurde, liegt in &quot;scr_temp&quot; und geht in den nächsten Lauf ein.</translation>
    </message>
    <message>
        <source>Putting away what a cancelled run over %1 has left...</source>
        <translation>Was ein abgebrochener Lauf über %1 hinterlassen hat, wird weggelegt...</translation>
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
