<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>glimmerpane::AreaEditor</name>
    <message>
        <source>Position &amp;X</source>
        <translation>Position &amp;X</translation>
    </message>
    <message>
        <source>Position &amp;Y</source>
        <translation>Position &amp;Y</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>&amp;Breite</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>&amp;Höhe</translation>
    </message>
</context>
<context>
    <name>glimmerpane::ButtonContainerView</name>
    <message>
        <source>Confirm</source>
        <translation>Bestätigen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>glimmerpane::Commands</name>
    <message>
        <source>Glimmerpane runs with another output window. Quit it to choose the window&apos;s kind.</source>
        <translation>Glimmerpane läuft mit einem anderen Ausgabefenster. Beenden Sie es, um die Art des Fensters zu wählen.</translation>
    </message>
    <message>
        <source>A message waits for its answer.</source>
        <translation>Eine Meldung wartet auf eine Antwort.</translation>
    </message>
    <message>
        <source>The area is just being selected.</source>
        <translation>Der Bereich wird gerade gewählt.</translation>
    </message>
    <message>
        <source>The area cannot be selected while it is shared.</source>
        <translation>Der Bereich kann nicht gewählt werden, solange er freigegeben ist.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::ContentView</name>
    <message>
        <source>Glimmerpane share</source>
        <translation>Glimmerpane-Freigabe</translation>
    </message>
    <message>
        <source>&amp;Start sharing</source>
        <translation>Freigabe &amp;starten</translation>
    </message>
    <message>
        <source>Set &amp;area</source>
        <translation>Bereich &amp;wählen</translation>
    </message>
    <message>
        <source>&amp;Reset area</source>
        <translation>Bereich &amp;zurücksetzen</translation>
    </message>
    <message>
        <source>Sto&amp;p sharing</source>
        <translation>Freigabe b&amp;eenden</translation>
    </message>
    <message>
        <source>Version: %1 | Device: %2</source>
        <translation>Version: %1 | Gerät: %2</translation>
    </message>
</context>
<context>
    <name>glimmerpane::Error</name>
    <message>
        <source>The captured display is gone or has changed.</source>
        <translation>Der aufgenommene Bildschirm ist nicht mehr da oder hat sich geändert.</translation>
    </message>
    <message>
        <source>The connection to the X server broke.</source>
        <translation>Die Verbindung zum X-Server ist abgebrochen.</translation>
    </message>
    <message>
        <source>The system has no file descriptor left.</source>
        <translation>Das System hat keinen Dateideskriptor mehr frei.</translation>
    </message>
    <message>
        <source>There is no X display here (DISPLAY is &quot;%1&quot;). Start Glimmerpane in an X11 session.</source>
        <translation>Hier ist kein X-Display (DISPLAY ist „%1“). Starten Sie Glimmerpane in einer X11-Sitzung.</translation>
    </message>
    <message>
        <source>The X server refused a request (%1).</source>
        <translation>Der X-Server hat eine Anfrage abgelehnt (%1).</translation>
    </message>
    <message>
        <source>The X server lacks the extension %1, or does not let this program use it. Enable it in the server&apos;s configuration; over SSH, connect with ssh -Y.</source>
        <translation>Dem X-Server fehlt die Erweiterung %1, oder er lässt dieses Programm sie nicht benutzen. Schalten Sie sie in der Konfiguration des Servers ein; verbinden Sie sich über SSH mit ssh -Y.</translation>
    </message>
    <message>
        <source>no window manager lists windows here</source>
        <translation>kein Fensterverwalter führt hier eine Liste der Fenster</translation>
    </message>
    <message>
        <source>%1 tiles the windows that it lists</source>
        <translation>%1 ordnet die Fenster, die er auflistet, als Kacheln an</translation>
    </message>
    <message>
        <source>%1 stays an unlisted window: %2.</source>
        <translation>„%1“ bleibt ein nicht aufgelistetes Fenster: %2.</translation>
    </message>
    <message>
        <source>The window manager keeps &quot;Glimmerpane - Output&quot; on the screen, and without a compositor it cannot be hidden there. Keep it outside the area.</source>
        <translation>Der Fensterverwalter behält „Glimmerpane - Output“ auf dem Bildschirm, und ohne Compositor kann es dort nicht verborgen werden. Lassen Sie es außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>The X server cannot draw pictures of the screen&apos;s kind.</source>
        <translation>Der X-Server kann keine Bilder im Format des Bildschirms zeichnen.</translation>
    </message>
    <message>
        <source>The X server does not let this program read the screen. Over SSH, connect with ssh -Y.</source>
        <translation>Der X-Server lässt dieses Programm den Bildschirm nicht lesen. Verbinden Sie sich über SSH mit ssh -Y.</translation>
    </message>
    <message>
        <source>This is a Wayland session, whose screen X programs cannot read. Log in to an X11 session instead.</source>
        <translation>Dies ist eine Wayland-Sitzung, deren Bildschirm X-Programme nicht lesen können. Melden Sie sich stattdessen in einer X11-Sitzung an.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::HttpsPost</name>
    <message>
        <source>The answer is too long.</source>
        <translation>Die Antwort ist zu lang.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Zeitüberschreitung bei der Anfrage.</translation>
    </message>
    <message>
        <source>The request was cancelled.</source>
        <translation>Die Anfrage wurde abgebrochen.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::InstanceBus</name>
    <message>
        <source>Glimmerpane runs but does not answer: %1</source>
        <translation>Glimmerpane läuft, antwortet aber nicht: %1</translation>
    </message>
</context>
<context>
    <name>glimmerpane::LaunchOptions</name>
    <message>
        <source>Glimmerpane is not running.</source>
        <translation>Glimmerpane läuft nicht.</translation>
    </message>
    <message>
        <source>The running Glimmerpane has just ended.</source>
        <translation>Das laufende Glimmerpane wurde gerade beendet.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Unerwartetes Argument „%1“.</translation>
    </message>
    <message>
        <source>Only one of --share, --stop and --select can be asked for at once.</source>
        <translation>--share, --stop und --select schließen einander aus.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an area. It must be X,Y,WIDTHxHEIGHT, four numbers.</source>
        <translation>„%1“ ist kein Bereich. Er muss X,Y,BREITExHÖHE sein, vier Zahlen.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no kind of output window. It must be managed or unlisted.</source>
        <translation>„%1“ ist keine Art von Ausgabefenster. Es muss managed oder unlisted sein.</translation>
    </message>
    <message>
        <source>Usage: glimmerpane [options]
Shares a part of the screen in a video call: share the window
&quot;Glimmerpane - Output&quot; there.

Options:
  --area X,Y,WIDTHxHEIGHT  Set and save the area, in points; X and Y are its
                           bottom-left corner, counted from the bottom-left
                           corner of the primary display.
  --share                  Start sharing at once.
  --stop                   Stop sharing.
  --select                 Open the selector of the area.
  --status                 Print the area, whether it is shared, the frames of
                           the last second and the dropped ones, as JSON.
  --output-window=managed  Let the window manager list the output window, for
                           programs that offer only what it lists.
  -h, --help               Print this and exit.
  -v, --version            Print the version and exit.

Where Glimmerpane runs already, it does what is asked for; without options its
window comes forward. The exit code is 0, 1 (failed) or 2 (usage).
</source>
        <translation>Aufruf: glimmerpane [Optionen]
Gibt einen Teil des Bildschirms in einem Videogespräch frei: Geben Sie dort das
Fenster „Glimmerpane - Output“ frei.

Optionen:
  --area X,Y,BREITExHÖHE   Den Bereich setzen und speichern, in Punkten; X und Y
                           sind seine linke untere Ecke, gezählt von der linken
                           unteren Ecke des Hauptbildschirms.
  --share                  Die Freigabe sofort starten.
  --stop                   Die Freigabe beenden.
  --select                 Den Bereich auf dem Bildschirm wählen.
  --status                 Den Bereich, ob er freigegeben ist, die Bilder der
                           letzten Sekunde und die ausgelassenen als JSON
                           ausgeben.
  --output-window=managed  Den Fensterverwalter das Ausgabefenster auflisten
                           lassen, für Programme, die nur anbieten, was er
                           auflistet.
  -h, --help               Dies ausgeben und enden.
  -v, --version            Die Version ausgeben und enden.

Läuft Glimmerpane schon, so tut es, was verlangt wird; ohne Optionen kommt sein
Fenster nach vorn. Der Rückgabewert ist 0, 1 (fehlgeschlagen) oder 2 (Aufruf).
</translation>
    </message>
</context>
<context>
    <name>glimmerpane::MainViewModel</name>
    <message>
        <source>The width and the height of the area must be finite numbers.</source>
        <translation>Breite und Höhe des Bereichs müssen endliche Zahlen sein.</translation>
    </message>
    <message>
        <source>The position of the area must be two numbers.</source>
        <translation>Die Position des Bereichs muss aus zwei Zahlen bestehen.</translation>
    </message>
    <message>
        <source>The area is empty. Its width and its height must be at least 1.</source>
        <translation>Der Bereich ist leer. Breite und Höhe müssen mindestens 1 sein.</translation>
    </message>
    <message numerus="yes">
        <source>The area is too large. A side can have at most %n pixels.</source>
        <translation>
            <numerusform>Der Bereich ist zu groß. Eine Seite darf höchstens %n Pixel haben.</numerusform>
            <numerusform>Der Bereich ist zu groß. Eine Seite darf höchstens %n Pixel haben.</numerusform>
        </translation>
    </message>
    <message>
        <source>Screen Capture</source>
        <translation>Bildschirmaufnahme</translation>
    </message>
    <message>
        <source>Failed to start capture: %1</source>
        <translation>Die Aufnahme konnte nicht gestartet werden: %1</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Screen Recording Permission Required</source>
        <translation>Berechtigung zur Bildschirmaufnahme erforderlich</translation>
    </message>
    <message>
        <source>Please grant Screen Recording permission in System Settings &gt; Privacy &amp; Security &gt; Screen Recording</source>
        <translation>Bitte erlauben Sie die Bildschirmaufnahme unter Systemeinstellungen &gt; Datenschutz &amp; Sicherheit &gt; Bildschirmaufnahme</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <translation>Systemeinstellungen öffnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Unable to get device serial number for update check</source>
        <translation>Die Seriennummer des Geräts für die Suche nach Updates ist nicht zu ermitteln</translation>
    </message>
    <message>
        <source>Update check failed: %1</source>
        <translation>Die Suche nach Updates ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation>Update verfügbar</translation>
    </message>
    <message>
        <source>Current version: %1
New version: %2</source>
        <translation>Aktuelle Version: %1
Neue Version: %2</translation>
    </message>
    <message>
        <source>Download New Version</source>
        <translation>Neue Version herunterladen</translation>
    </message>
</context>
<context>
    <name>glimmerpane::MainWindow</name>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>glimmerpane::ScreenCaptureService</name>
    <message>
        <source>The operation couldn&apos;t be completed. (CaptureError error %1.)</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden. (CaptureError-Fehler %1.)</translation>
    </message>
</context>
<context>
    <name>glimmerpane::UpdateFailure</name>
    <message>
        <source>The answer cannot be read: %1.</source>
        <translation>Die Antwort ist nicht lesbar: %1.</translation>
    </message>
    <message>
        <source>it is no JSON object</source>
        <translation>sie ist kein JSON-Objekt</translation>
    </message>
    <message>
        <source>&quot;lastAppVersion&quot; is no text</source>
        <translation>„lastAppVersion“ ist kein Text</translation>
    </message>
    <message>
        <source>&quot;downloadUrl&quot; is no text</source>
        <translation>„downloadUrl“ ist kein Text</translation>
    </message>
    <message>
        <source>&quot;canUpdate&quot; is neither true nor false</source>
        <translation>„canUpdate“ ist weder wahr noch falsch</translation>
    </message>
    <message>
        <source>HTTP error: %1</source>
        <translation>HTTP-Fehler: %1</translation>
    </message>
    <message>
        <source>Invalid API URL</source>
        <translation>Ungültige API-URL</translation>
    </message>
    <message>
        <source>Invalid response from server</source>
        <translation>Ungültige Antwort vom Server</translation>
    </message>
</context>
</TS>
