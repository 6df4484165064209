<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>Eine moderne Zeigerverwaltung für macOS</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>Über Pintle</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>App zu den Ausnahmen hinzufügen</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>Einstellbare Zeigergröße</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Animated cursors</source>
        <translation>Animierte Zeiger</translation>
    </message>
    <message>
        <source>App name (e.g., Safari)</source>
        <translation>Name der App (z. B. Safari)</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>Die App wurde zurückgesetzt. Pintle wird jetzt beendet. Zum Neubeginn wieder starten.</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>Apps, die schon laufen, behalten ihren Zeiger eventuell bis zum Neustart.</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>Angewendet</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>Letzten Zeiger beim Start anwenden</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>Wendet an …</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>Apps, in denen der Zeiger NICHT verwendet wird</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>Pfeil: %1 Pixel</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>Beim Start angewendet</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>Verhalten</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>Bitte die Internetverbindung prüfen und noch einmal versuchen.</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>Auf das Symbol klicken, um ein Zeigerthema zu wählen.</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>Klick zum Laden</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Verbindet …</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Support kontaktieren</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>Suche nach Updates fehlgeschlagen</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>Zeigergröße</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>Zeigergröße zurück auf 100 %</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>Eigene Zeigerthemen</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>Geladenes Thema löschen</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Laden</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>Heruntergeladen</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>Lädt %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>Fehler – neu laden</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>Ausnahmen</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>Entpackt …</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Funktionen</translation>
    </message>
    <message>
        <source>For the left hand</source>
        <translation>Für die linke Hand</translation>
    </message>
    <message>
        <source>For the right hand</source>
        <translation>Für die rechte Hand</translation>
    </message>
    <message>
        <source>Glass Opacity</source>
        <translation>Deckkraft des Glases</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>Es läuft ohne Symbol weiter. Zum Öffnen Pintle noch einmal starten.</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>Den Zeiger in Vollbild-Apps behalten</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Bei Anmeldung starten</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>In der Menüleiste</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>Keine Ausnahmen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Pintle</source>
        <translation>Pintle</translation>
    </message>
    <message>
        <source>Pintle %1 is available</source>
        <translation>Pintle %1 ist verfügbar</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>In dieser Art von Sitzung kann Pintle den Zeiger nicht ändern.</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>Pintle hat keine Symbolleiste gefunden</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>Pintle ist aktuell</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>Pintle wohnt in der Symbolleiste</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>Pintle beenden</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>Andere sehen den echten Zeiger (empfohlen)</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>Zurücksetzen &amp; beenden</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>App zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>App zurücksetzen?</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>Zurückgesetzt</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>Alle Themen und Einstellungen löschen und den Systemzeiger wiederherstellen</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>Beim Beenden auf den Standard zurücksetzen</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>Systemzeiger beim Beenden</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>Das Zeigerthema beim Start wiederherstellen</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Show system cursor (e.g., iBeam for text) when theme doesn&apos;t have it</source>
        <translation>Zeigt den Systemzeiger (z. B. für Text), wenn er im Thema fehlt</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>Themen anzeigen</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>Pintle beim Anmelden starten</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>Startet …</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>Systemzeiger bei Bildschirmfreigabe</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>Systemzeiger</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>Das Archiv enthält keine Zeiger</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>Das Archiv ist beschädigt</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>Das Archiv ist zu groß für ein Thema</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>Die Verbindung ist abgebrochen</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>Die Zeiger der Arbeitsumgebung sind in Gebrauch</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>Der Datenträger ist voll</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>Das Glas braucht einen Compositor, und keiner läuft</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>Der Server ist nicht erreichbar</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>Der Server hat ein Problem; bitte später noch einmal</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>Der Server hat diese Datei nicht</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>Der Server gibt die Datei nicht heraus</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>Die Identität des Servers ist nicht belegt</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>Die Adresse des Themas ist ungültig</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>In den Themenordner kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>Themen</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>Kein Netzwerk</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>Diese Art von Sitzung lässt das nicht zu</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>Alle geladenen Themen werden gelöscht, alle Einstellungen zurückgesetzt und der Systemzeiger wiederhergestellt. Danach wird Pintle beendet.</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>Glasmodus</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>Moderne, weiche Transparenz (macOS 2026)</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>Update %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>Fehlende Zeiger vom System</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>Themenzeiger im Vollbild</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>Die Zeiger der Arbeitsumgebung verwenden</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>Das ist die neueste Version.</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>Installiert ist Version %1. Neue Version laden und Pintle unter „Programme“ ersetzen.</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
</context>
</TS>
