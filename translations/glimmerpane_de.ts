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
    <name>glimmerpane::AreaOptions</name>
    <message>
        <source>&apos;%1&apos; is not a size. Use WIDTHxHEIGHT in pixels, or a ratio such as 16:9.</source>
        <translation>„%1“ ist keine Größe. Verwenden Sie BREITExHÖHE in Pixeln oder ein Verhältnis wie 16:9.</translation>
    </message>
    <message>
        <source>Only one of --area and --use can be used at a time.</source>
        <translation>--area und --use können nicht zusammen verwendet werden.</translation>
    </message>
    <message>
        <source>Only one of --areas and --status can be used at a time.</source>
        <translation>--areas und --status können nicht zusammen verwendet werden.</translation>
    </message>
    <message>
        <source>--json needs --areas.</source>
        <translation>--json braucht --areas.</translation>
    </message>
    <message>
        <source>Left out because they cannot be read: %1</source>
        <translation>Ausgelassen, weil nicht lesbar: %1</translation>
    </message>
    <message>
        <source>No area is stored yet. Set one first, for example with --area.</source>
        <translation>Noch ist kein Bereich gespeichert. Legen Sie zuerst einen fest, zum Beispiel mit --area.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::AreaSize</name>
    <message>
        <source>There is no display.</source>
        <translation>Es gibt keinen Bildschirm.</translation>
    </message>
    <message>
        <source>The area is not on any display. Move it onto one.</source>
        <translation>Der Bereich liegt auf keinem Bildschirm. Verschieben Sie ihn auf einen.</translation>
    </message>
    <message>
        <source>The area is empty, so it has no ratio of width to height.</source>
        <translation>Der Bereich ist leer und hat deshalb kein Seitenverhältnis.</translation>
    </message>
    <message>
        <source>An area of this size does not fit on its display, which has %1 x %2 pixels.</source>
        <translation>Ein Bereich dieser Größe passt nicht auf seinen Bildschirm, der %1 x %2 Pixel hat.</translation>
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
        <source>Glimmerpane is already running with the other kind of output window. Quit it first.</source>
        <translation>Glimmerpane läuft bereits mit der anderen Art von Ausgabefenster. Beenden Sie es zuerst.</translation>
    </message>
    <message>
        <source>Glimmerpane is showing a message. Answer it first.</source>
        <translation>Glimmerpane zeigt gerade eine Meldung an. Beantworten Sie diese zuerst.</translation>
    </message>
    <message>
        <source>The area is being selected. Confirm or cancel the selection first.</source>
        <translation>Der Bereich wird gerade ausgewählt. Bestätigen Sie die Auswahl zuerst oder brechen Sie sie ab.</translation>
    </message>
    <message>
        <source>The area cannot be selected while it is being shared. Stop sharing first.</source>
        <translation>Der Bereich kann nicht ausgewählt werden, solange er freigegeben ist. Beenden Sie zuerst die Freigabe.</translation>
    </message>
    <message>
        <source>Glimmerpane is already running with another back end. Quit it first.</source>
        <translation>Glimmerpane läuft bereits mit einem anderen Zugriff auf den Bildschirm. Beenden Sie es zuerst.</translation>
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
        <source>The X server refused a request (%1).</source>
        <translation>Der X-Server hat eine Anfrage abgelehnt (%1).</translation>
    </message>
    <message>
        <source>The window manager keeps &quot;Glimmerpane - Output&quot; on the screen, and without a compositor it cannot be hidden there. Keep it outside the area.</source>
        <translation>Der Fensterverwalter behält „Glimmerpane - Output“ auf dem Bildschirm, und ohne Compositor kann es dort nicht verborgen werden. Lassen Sie es außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>The X server does not let this program read the screen. Over SSH, connect with ssh -Y.</source>
        <translation>Der X-Server lässt dieses Programm den Bildschirm nicht lesen. Verbinden Sie sich über SSH mit ssh -Y.</translation>
    </message>
    <message>
        <source>The connection to the X server was lost.</source>
        <translation>Die Verbindung zum X-Server ist abgebrochen.</translation>
    </message>
    <message>
        <source>The system has no file descriptors left.</source>
        <translation>Das System hat keine freien Dateideskriptoren mehr.</translation>
    </message>
    <message>
        <source>Cannot connect to an X server (DISPLAY is &quot;%1&quot;). Start Glimmerpane in an X11 session.</source>
        <translation>Es kann keine Verbindung zu einem X-Server hergestellt werden (DISPLAY ist „%1“). Starten Sie Glimmerpane in einer X11-Sitzung.</translation>
    </message>
    <message>
        <source>The X server lacks the %1 extension, or does not let this program use it. Enable it in the server&apos;s configuration; over SSH, connect with ssh -Y.</source>
        <translation>Dem X-Server fehlt die Erweiterung %1, oder er lässt dieses Programm sie nicht benutzen. Schalten Sie sie in der Konfiguration des Servers ein; verbinden Sie sich über SSH mit ssh -Y.</translation>
    </message>
    <message>
        <source>no window manager here keeps a list of windows</source>
        <translation>hier führt kein Fensterverwalter eine Liste der Fenster</translation>
    </message>
    <message>
        <source>%1 tiles every window that it lists</source>
        <translation>%1 ordnet alle aufgelisteten Fenster als Kacheln an</translation>
    </message>
    <message>
        <source>%1 will not be listed: %2.</source>
        <translation>„%1“ wird nicht aufgelistet: %2.</translation>
    </message>
    <message>
        <source>The X server cannot draw pictures in the screen&apos;s format.</source>
        <translation>Der X-Server kann keine Bilder im Format des Bildschirms zeichnen.</translation>
    </message>
    <message>
        <source>This is a Wayland session, in which X11 programs cannot read the screen. Log in to an X11 session instead.</source>
        <translation>Dies ist eine Wayland-Sitzung, in der X11-Programme den Bildschirm nicht lesen können. Melden Sie sich stattdessen in einer X11-Sitzung an.</translation>
    </message>
    <message>
        <source>The area is not on any display. Move it onto one.</source>
        <translation>Der Bereich liegt auf keinem Bildschirm. Verschieben Sie ihn auf einen.</translation>
    </message>
    <message>
        <source>There is no back end &apos;%1&apos;. Use one of: %2.</source>
        <translation>Den Zugriff „%1“ gibt es nicht. Möglich sind: %2.</translation>
    </message>
    <message>
        <source>The desktop does not record the screen: %1</source>
        <translation>Die Arbeitsumgebung zeichnet den Bildschirm nicht auf: %1</translation>
    </message>
    <message>
        <source>The desktop has not delivered a picture of the screen.</source>
        <translation>Die Arbeitsumgebung hat kein Bild des Bildschirms geliefert.</translation>
    </message>
    <message>
        <source>GNOME&apos;s screen-cast service is not running.</source>
        <translation>Der Dienst von GNOME für Bildschirmaufnahmen läuft nicht.</translation>
    </message>
    <message>
        <source>GNOME&apos;s screen-cast service has ended.</source>
        <translation>Der Dienst von GNOME für Bildschirmaufnahmen wurde beendet.</translation>
    </message>
    <message>
        <source>Sharing was stopped.</source>
        <translation>Die Freigabe wurde beendet.</translation>
    </message>
    <message>
        <source>PipeWire cannot be reached. It delivers the picture of the screen.</source>
        <translation>PipeWire, das das Bild des Bildschirms liefert, ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The desktop delivers the picture of the screen in a form that Glimmerpane cannot read.</source>
        <translation>Die Arbeitsumgebung liefert das Bild des Bildschirms in einer Form, die Glimmerpane nicht lesen kann.</translation>
    </message>
    <message>
        <source>The desktop no longer delivers the picture of the screen.</source>
        <translation>Die Arbeitsumgebung liefert kein Bild des Bildschirms mehr.</translation>
    </message>
    <message>
        <source>PipeWire has ended. It delivered the picture of the screen.</source>
        <translation>PipeWire, das das Bild des Bildschirms geliefert hat, wurde beendet.</translation>
    </message>
    <message>
        <source>The desktop could not start to record the screen.</source>
        <translation>Die Arbeitsumgebung konnte die Aufnahme des Bildschirms nicht beginnen.</translation>
    </message>
    <message>
        <source>Sharing was stopped before it started.</source>
        <translation>Die Freigabe wurde beendet, bevor sie begonnen hatte.</translation>
    </message>
    <message>
        <source>The recording of the screen was declined.</source>
        <translation>Die Aufnahme des Bildschirms wurde abgelehnt.</translation>
    </message>
    <message>
        <source>The desktop&apos;s portal has ended.</source>
        <translation>Das Portal der Arbeitsumgebung wurde beendet.</translation>
    </message>
    <message>
        <source>The area is on another display than the one that was chosen for recording. Choose the area&apos;s display, or move the area.</source>
        <translation>Der Bereich liegt auf einem anderen Bildschirm als dem, der für die Aufnahme gewählt wurde. Wählen Sie den Bildschirm des Bereichs, oder verschieben Sie den Bereich.</translation>
    </message>
    <message>
        <source>There is no memory to share with the X server.</source>
        <translation>Es gibt keinen Speicher, der mit dem X-Server geteilt werden kann.</translation>
    </message>
    <message>
        <source>The X server lacks the extension %1.</source>
        <translation>Dem X-Server fehlt die Erweiterung %1.</translation>
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
    <message>
        <source>%1 is only offered by programs that share X11 windows, because this compositor makes no output for it: %2</source>
        <translation>%1 wird nur von Programmen angeboten, die X11-Fenster teilen, denn dieser Compositor legt keine Ausgabe dafür an: %2</translation>
    </message>
    <message>
        <source>The connection to the Wayland compositor was lost.</source>
        <translation>Die Verbindung zum Wayland-Compositor ist abgebrochen.</translation>
    </message>
    <message>
        <source>The Wayland compositor no longer delivers pictures of the screen.</source>
        <translation>Der Wayland-Compositor liefert keine Bilder des Bildschirms mehr.</translation>
    </message>
    <message>
        <source>Sway does not answer.</source>
        <translation>Sway antwortet nicht.</translation>
    </message>
    <message>
        <source>SWAYSOCK names no socket of sway.</source>
        <translation>SWAYSOCK nennt keinen Socket von Sway.</translation>
    </message>
    <message>
        <source>Sway has made no output.</source>
        <translation>Sway hat keine Ausgabe angelegt.</translation>
    </message>
    <message>
        <source>Cannot write to the folder that XDG_RUNTIME_DIR names.</source>
        <translation>In den Ordner, den XDG_RUNTIME_DIR nennt, lässt sich nicht schreiben.</translation>
    </message>
    <message>
        <source>Sway does not give an output the size of the area.</source>
        <translation>Sway gibt einer Ausgabe nicht die Größe des Bereichs.</translation>
    </message>
    <message>
        <source>Cannot connect to the Wayland compositor (WAYLAND_DISPLAY is &quot;%1&quot;).</source>
        <translation>Keine Verbindung zum Wayland-Compositor (WAYLAND_DISPLAY ist „%1“).</translation>
    </message>
    <message>
        <source>This Wayland compositor does not let programs read the screen.</source>
        <translation>Dieser Wayland-Compositor lässt Programme den Bildschirm nicht lesen.</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Pausiert</translation>
    </message>
    <message>
        <source>The area&apos;s width and height must be finite numbers.</source>
        <translation>Breite und Höhe des Bereichs müssen endliche Zahlen sein.</translation>
    </message>
    <message>
        <source>The area&apos;s X and Y must be numbers.</source>
        <translation>Die Position des Bereichs muss aus Zahlen bestehen.</translation>
    </message>
    <message>
        <source>The area is empty. Its width and height must be at least 1.</source>
        <translation>Der Bereich ist leer. Breite und Höhe müssen mindestens 1 sein.</translation>
    </message>
    <message numerus="yes">
        <source>The area is too large. Each side can be at most %n pixels.</source>
        <translation>
            <numerusform>Der Bereich ist zu groß. Jede Seite darf höchstens %n Pixel lang sein.</numerusform>
            <numerusform>Der Bereich ist zu groß. Jede Seite darf höchstens %n Pixel lang sein.</numerusform>
        </translation>
    </message>
    <message>
        <source>Sharing was paused or stopped before it went on.</source>
        <translation>Die Freigabe wurde angehalten oder beendet, bevor sie weiterging.</translation>
    </message>
    <message>
        <source>Nothing is being shared.</source>
        <translation>Es wird nichts freigegeben.</translation>
    </message>
    <message>
        <source>This Wayland session offers none of the ways to record the screen: GNOME&apos;s screen-cast service, wlr-screencopy 3 (as in sway), KWin&apos;s screencast, or a desktop portal with ScreenCast. Install xdg-desktop-portal with the part for this desktop, or log in to GNOME, KDE Plasma, sway or an X11 session.</source>
        <translation>Diese Wayland-Sitzung bietet keinen der Wege, den Bildschirm aufzuzeichnen: GNOMEs Aufzeichnungsdienst, wlr-screencopy 3 (wie in sway), KWins Aufzeichnung oder ein Desktop-Portal mit ScreenCast. Installieren Sie xdg-desktop-portal mit dem Teil für diesen Desktop, oder melden Sie sich in GNOME, KDE Plasma, sway oder einer X11-Sitzung an.</translation>
    </message>
    <message>
        <source>KWin does not record the screen: %1</source>
        <translation>KWin zeichnet den Bildschirm nicht auf: %1</translation>
    </message>
    <message>
        <source>KWin does not let this program record the screen. It does so once Glimmerpane is installed; --backend=portal asks you instead.</source>
        <translation>KWin lässt dieses Programm den Bildschirm nicht aufzeichnen. Sobald Glimmerpane installiert ist, geht es; mit --backend=portal werden stattdessen Sie gefragt.</translation>
    </message>
    <message>
        <source>This desktop does not let programs set shortcuts. docs/shortcuts.md says how to set them in its own settings.</source>
        <translation>Hier können Programme keine Tastenkürzel festlegen. docs/shortcuts.md sagt, wie es in den Einstellungen des Desktops geht.</translation>
    </message>
    <message>
        <source>The shortcuts were turned off meanwhile.</source>
        <translation>Die Tastenkürzel wurden inzwischen abgeschaltet.</translation>
    </message>
    <message>
        <source>The shortcuts were declined.</source>
        <translation>Die Tastenkürzel wurden abgelehnt.</translation>
    </message>
    <message>
        <source>The desktop could not set up the shortcuts. docs/shortcuts.md says how to set them in its own settings.</source>
        <translation>Der Desktop konnte die Tastenkürzel nicht einrichten. docs/shortcuts.md sagt, wie es in seinen Einstellungen geht.</translation>
    </message>
    <message>
        <source>--output-window=managed has no effect under this compositor, which would show the window.</source>
        <translation>--output-window=managed hat unter diesem Compositor keine Wirkung, denn er würde das Fenster zeigen.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::InstanceBus</name>
    <message>
        <source>Glimmerpane is running but does not respond: %1</source>
        <translation>Glimmerpane läuft, antwortet aber nicht: %1</translation>
    </message>
    <message>
        <source>Glimmerpane is running but does not respond.</source>
        <translation>Glimmerpane läuft, antwortet aber nicht.</translation>
    </message>
    <message>
        <source>Glimmerpane is already running on display %1.</source>
        <translation>Glimmerpane läuft bereits auf dem Display %1.</translation>
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
        <source>&apos;%1&apos; is not an area. An area is four numbers: X,Y,WIDTHxHEIGHT.</source>
        <translation>„%1“ ist kein Bereich. Ein Bereich besteht aus vier Zahlen: X,Y,BREITExHÖHE.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a kind of output window. Use managed or unlisted.</source>
        <translation>„%1“ ist keine Art von Ausgabefenster. Geben Sie managed oder unlisted an.</translation>
    </message>
    <message>
        <source>Only one of --share, --stop, --select, --move, --pause, --blank, --resume and --toggle-pause can be used at a time.</source>
        <translation>Von --share, --stop, --select, --move, --pause, --blank, --resume und --toggle-pause kann nur eines angegeben werden.</translation>
    </message>
    <message>
        <source>--save needs --move.</source>
        <translation>--save braucht --move.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no place for the area. Use X,Y or X,Y,WIDTHxHEIGHT.</source>
        <translation>„%1“ ist kein Ort für den Bereich. Geben Sie X,Y oder X,Y,BREITExHÖHE an.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither on nor off, for --frame.</source>
        <translation>„%1“ ist weder „on“ noch „off“ für --frame.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither on nor off, for --shortcuts.</source>
        <translation>„%1“ ist weder „on“ noch „off“ für --shortcuts.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither on nor off, for --tray.</source>
        <translation>„%1“ ist weder „on“ noch „off“ für --tray.</translation>
    </message>
    <message>
        <source>Usage: glimmerpane [options]
Shares a part of the screen in a video call: share the window
&quot;Glimmerpane - Output&quot; there.

Options:
  --area X,Y,WIDTHxHEIGHT  Set and save the area, in points; X and Y are its
                           bottom-left corner, counted from the bottom-left
                           corner of the primary display.
  --size WIDTHxHEIGHT      Give the area this size in pixels, around its centre,
                           or a ratio of width to height, such as 16:9.
  --save-as NAME           Store the area under a name.
  --use NAME               Make the area of that name the current one.
  --forget NAME            Forget the area of that name.
  --areas [--json]         List the areas with names, one on each line, or as JSON.
  --share                  Start sharing at once.
  --stop                   Stop sharing.
  --select                 Open the area selector.
  --move X,Y[,WIDTHxHEIGHT]
                           Move the area while it is shared; with --save, also
                           store it.
  --pause, --resume, --toggle-pause
                           Keep the latest picture, or go on.
  --blank                  Pause with a picture that says so.
  --frame on|off           Show a frame around the area while it is shared, which
                           the others do not see, with a handle to drag the area
                           by; or show none. Remembered; off at first.
  --tray on|off            Show an icon in the desktop&apos;s tray, where there
                           is one, with a menu to share by; or show none.
                           Remembered; off at first.
  --shortcuts on|off       Have the desktop ask for keys that share or stop, pause
                           or go on, and show or hide the frame; or use none.
                           Remembered; off at first.
  --status                 Print the stored area, whether one is being shared,
                           which, whether it is paused and whether another
                           program reads it, the frames shown in the last
                           second and the frames dropped, the back end, and
                           whether clicks are shown, as JSON.
  --output-window=managed  Let the window manager list the output window, for
                           programs that offer only what it lists.
  --backend=NAME           Read the screen by gnome, wlroots, kwin, portal or
                           x11, instead of the first that works.
  -h, --help               Print this and exit.
  -v, --version            Print the version and exit.

If Glimmerpane is already running, it does what is asked; without options its
window comes to the front. The exit code is 0, 1 (failed) or 2 (usage).
</source>
        <translation>Aufruf: glimmerpane [Optionen]
Gibt einen Teil des Bildschirms in einem Videogespräch frei: Geben Sie dort das
Fenster „Glimmerpane - Output“ frei.

Optionen:
  --area X,Y,BREITExHÖHE   Den Bereich setzen und speichern, in Punkten; X und Y
                           sind seine linke untere Ecke, gezählt von der linken
                           unteren Ecke des Hauptbildschirms.
  --size BREITExHÖHE       Dem Bereich um seine Mitte diese Größe in Pixeln geben,
                           oder ein Seitenverhältnis wie 16:9.
  --save-as NAME           Den Bereich unter einem Namen speichern.
  --use NAME               Den Bereich dieses Namens zum aktuellen machen.
  --forget NAME            Den Bereich dieses Namens entfernen.
  --areas [--json]         Die Bereiche mit Namen auflisten, je Zeile einen, oder
                           als JSON.
  --share                  Die Freigabe sofort starten.
  --stop                   Die Freigabe beenden.
  --select                 Den Bereich auf dem Bildschirm auswählen.
  --move X,Y[,BREITExHÖHE]
                           Den Bereich verschieben, während er freigegeben ist;
                           mit --save wird das auch gespeichert.
  --pause, --resume, --toggle-pause
                           Das letzte Bild behalten oder weitermachen.
  --blank                  Pausieren, mit einem Bild, das dies sagt.
  --frame on|off           Beim Teilen einen Rahmen um den Bereich zeigen, den die
                           anderen nicht sehen, mit einem Griff zum Verschieben;
                           oder keinen. Wird gemerkt; anfangs keiner.
  --tray on|off            Ein Symbol im Infobereich der Arbeitsfläche
                           zeigen, wo es einen gibt, mit einem Menü zum
                           Teilen; oder keines. Wird gemerkt; anfangs keines.
  --shortcuts on|off       Den Desktop nach Tasten für Freigabe, Pause und
                           Rahmen fragen lassen; oder keine benutzen. Wird
                           gemerkt; anfangs keine.
  --status                 Als JSON ausgeben: den gespeicherten Bereich, ob einer
                           freigegeben ist, welcher, ob er pausiert und ob ein
                           anderes Programm ihn liest, die in der letzten
                           Sekunde gezeigten und die ausgelassenen Bilder, den
                           Zugriff auf den Bildschirm und ob Klicks gezeigt
                           werden.
  --output-window=managed  Den Fensterverwalter das Ausgabefenster auflisten
                           lassen, für Programme, die nur anbieten, was er
                           auflistet.
  --backend=NAME           Über gnome, wlroots, kwin, portal oder x11 auf den
                           Bildschirm zugreifen, statt über das Erste, das
                           möglich ist.
  -h, --help               Diese Hilfe ausgeben und beenden.
  -v, --version            Die Version ausgeben und beenden.

Läuft Glimmerpane bereits, führt es aus, was verlangt wird; ohne Optionen kommt
sein Fenster nach vorn. Der Rückgabewert ist 0, 1 (Fehler) oder 2 (Aufruf).
</translation>
    </message>
</context>
<context>
    <name>glimmerpane::MainViewModel</name>
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
    <message>
        <source>Set Area</source>
        <translation>Bereich festlegen</translation>
    </message>
    <message>
        <source>Screen Recording</source>
        <translation>Bildschirmaufnahme</translation>
    </message>
    <message>
        <source>Stop Sharing and Quit?</source>
        <translation>Freigabe beenden und Programm schließen?</translation>
    </message>
    <message>
        <source>Others in your call will no longer see the shared area.</source>
        <translation>Die anderen im Gespräch sehen den freigegebenen Bereich dann nicht mehr.</translation>
    </message>
    <message>
        <source>Keep Sharing</source>
        <translation>Weiter freigeben</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Beenden und schließen</translation>
    </message>
    <message>
        <source>Sharing Has Ended</source>
        <translation>Die Freigabe wurde beendet</translation>
    </message>
    <message>
        <source>Sharing was stopped before it started.</source>
        <translation>Die Freigabe wurde beendet, bevor sie begonnen hatte.</translation>
    </message>
    <message>
        <source>Glimmerpane does not know the settings program of this desktop.</source>
        <translation>Glimmerpane kennt das Einstellungsprogramm dieses Desktops nicht.</translation>
    </message>
    <message>
        <source>Others in your call no longer see the area. %1</source>
        <translation>Die anderen im Gespräch sehen den Bereich nicht mehr. %1</translation>
    </message>
    <message>
        <source>That Did Not Work</source>
        <translation>Das hat nicht geklappt</translation>
    </message>
    <message>
        <source>Screen Recording Is Not Possible Here</source>
        <translation>Die Bildschirmaufnahme ist hier nicht möglich</translation>
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
    <name>glimmerpane::NamedAreas</name>
    <message>
        <source>The area&apos;s name is empty.</source>
        <translation>Der Name des Bereichs ist leer.</translation>
    </message>
    <message numerus="yes">
        <source>The area&apos;s name is too long. It can have %n characters.</source>
        <translation>
            <numerusform>Der Name des Bereichs ist zu lang. Er kann %n Zeichen haben.</numerusform>
            <numerusform>Der Name des Bereichs ist zu lang. Er kann %n Zeichen haben.</numerusform>
        </translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be an area&apos;s name: it contains a control character or is not valid text.</source>
        <translation>„%1“ kann kein Name eines Bereichs sein: Er enthält ein Steuerzeichen oder ist kein gültiger Text.</translation>
    </message>
    <message>
        <source>The areas cannot be read from %1.</source>
        <translation>Die Bereiche können nicht aus %1 gelesen werden.</translation>
    </message>
    <message>
        <source>There is no area named &apos;%1&apos;.</source>
        <translation>Es gibt keinen Bereich namens „%1“.</translation>
    </message>
    <message>
        <source>The area cannot be stored: its numbers must be finite.</source>
        <translation>Der Bereich kann nicht gespeichert werden: Seine Zahlen müssen endlich sein.</translation>
    </message>
    <message numerus="yes">
        <source>There are already %n areas with names. Forget one first.</source>
        <translation>
            <numerusform>Es gibt schon %n Bereich mit einem Namen. Entfernen Sie ihn zuerst.</numerusform>
            <numerusform>Es gibt schon %n Bereiche mit Namen. Entfernen Sie zuerst einen.</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no room for another area in %1.</source>
        <translation>In %1 ist kein Platz für einen weiteren Bereich.</translation>
    </message>
    <message>
        <source>The area cannot be stored in %1.</source>
        <translation>Der Bereich kann nicht in %1 gespeichert werden.</translation>
    </message>
    <message>
        <source>The area named &apos;%1&apos; cannot be read from %2.</source>
        <translation>Der Bereich namens „%1“ kann nicht aus %2 gelesen werden.</translation>
    </message>
    <message>
        <source>The area cannot be removed from %1.</source>
        <translation>Der Bereich kann nicht aus %1 entfernt werden.</translation>
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
    <name>glimmerpane::SettingsFile</name>
    <message>
        <source>Settings are neither read from nor saved to %1: it is too large or not a regular file.</source>
        <translation>Einstellungen werden aus %1 weder gelesen noch dort gespeichert: zu groß oder keine reguläre Datei.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::Shortcuts</name>
    <message>
        <source>The shortcuts were turned on or off again meanwhile.</source>
        <translation>Die Tastenkürzel wurden inzwischen erneut an- oder abgeschaltet.</translation>
    </message>
    <message>
        <source>Start or stop sharing</source>
        <translation>Freigabe starten oder beenden</translation>
    </message>
    <message>
        <source>Pause sharing or go on</source>
        <translation>Freigabe pausieren oder fortsetzen</translation>
    </message>
    <message>
        <source>Show or hide the frame around the area</source>
        <translation>Rahmen um den Bereich zeigen oder verbergen</translation>
    </message>
</context>
<context>
    <name>glimmerpane::TrayIcon</name>
    <message>
        <source>Glimmerpane: sharing is starting</source>
        <translation>Glimmerpane: Die Freigabe wird gestartet</translation>
    </message>
    <message>
        <source>Glimmerpane: the area is shared</source>
        <translation>Glimmerpane: Der Bereich ist freigegeben</translation>
    </message>
    <message>
        <source>Glimmerpane: the area is shared, but nobody is watching yet</source>
        <translation>Glimmerpane: Der Bereich ist freigegeben, aber noch sieht niemand zu</translation>
    </message>
    <message>
        <source>Glimmerpane: sharing is paused</source>
        <translation>Glimmerpane: Die Freigabe pausiert</translation>
    </message>
    <message>
        <source>Glimmerpane: nothing is shared</source>
        <translation>Glimmerpane: Es wird nichts freigegeben</translation>
    </message>
</context>
<context>
    <name>glimmerpane::TrayMenu</name>
    <message>
        <source>Start sharing</source>
        <translation>Freigabe starten</translation>
    </message>
    <message>
        <source>Stop sharing</source>
        <translation>Freigabe beenden</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Weitermachen</translation>
    </message>
    <message>
        <source>Pause and hide the picture</source>
        <translation>Pause, ohne das Bild zu zeigen</translation>
    </message>
    <message>
        <source>Frame around the area</source>
        <translation>Rahmen um den Bereich</translation>
    </message>
    <message>
        <source>Select area</source>
        <translation>Bereich wählen</translation>
    </message>
    <message>
        <source>Size of the area</source>
        <translation>Größe des Bereichs</translation>
    </message>
    <message>
        <source>Named areas</source>
        <translation>Bereiche mit Namen</translation>
    </message>
    <message>
        <source>Show window</source>
        <translation>Fenster zeigen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
</TS>
