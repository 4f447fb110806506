<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
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
        <translation>&amp;Largeur</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>&amp;Hauteur</translation>
    </message>
</context>
<context>
    <name>glimmerpane::ButtonContainerView</name>
    <message>
        <source>Confirm</source>
        <translation>Confirmer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>glimmerpane::Commands</name>
    <message>
        <source>Glimmerpane is already running with the other kind of output window. Quit it first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glimmerpane is showing a message. Answer it first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The area is being selected. Confirm or cancel the selection first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The area cannot be selected while it is being shared. Stop sharing first.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glimmerpane::ContentView</name>
    <message>
        <source>Glimmerpane share</source>
        <translation>Partage Glimmerpane</translation>
    </message>
    <message>
        <source>&amp;Start sharing</source>
        <translation>&amp;Démarrer le partage</translation>
    </message>
    <message>
        <source>Set &amp;area</source>
        <translation>Définir la &amp;zone</translation>
    </message>
    <message>
        <source>&amp;Reset area</source>
        <translation>&amp;Réinitialiser la zone</translation>
    </message>
    <message>
        <source>Sto&amp;p sharing</source>
        <translation>&amp;Arrêter le partage</translation>
    </message>
    <message>
        <source>Version: %1 | Device: %2</source>
        <translation>Version&#xa0;: %1 | Appareil&#xa0;: %2</translation>
    </message>
</context>
<context>
    <name>glimmerpane::Error</name>
    <message>
        <source>The X server refused a request (%1).</source>
        <translation>Le serveur X a refusé une requête (%1).</translation>
    </message>
    <message>
        <source>The window manager keeps &quot;Glimmerpane - Output&quot; on the screen, and without a compositor it cannot be hidden there. Keep it outside the area.</source>
        <translation>Le gestionnaire de fenêtres garde «&#xa0;Glimmerpane - Output&#xa0;» à l’écran, et sans compositeur elle ne peut pas y être masquée. Gardez-la hors de la zone.</translation>
    </message>
    <message>
        <source>The X server does not let this program read the screen. Over SSH, connect with ssh -Y.</source>
        <translation>Le serveur X ne laisse pas ce programme lire l’écran. Par SSH, connectez-vous avec ssh -Y.</translation>
    </message>
    <message>
        <source>The area is not on any display. Set one that is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The connection to the X server was lost.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The system has no file descriptors left.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot connect to an X server (DISPLAY is &quot;%1&quot;). Start Glimmerpane in an X11 session.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The X server lacks the %1 extension, or does not let this program use it. Enable it in the server&apos;s configuration; over SSH, connect with ssh -Y.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no window manager here keeps a list of windows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 tiles every window that it lists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 will not be listed: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The X server cannot draw pictures in the screen&apos;s format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is a Wayland session, in which X11 programs cannot read the screen. Log in to an X11 session instead.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glimmerpane::InstanceBus</name>
    <message>
        <source>Glimmerpane runs but does not answer: %1</source>
        <translation>Glimmerpane est lancé mais ne répond pas&#xa0;: %1</translation>
    </message>
    <message>
        <source>Glimmerpane runs but does not answer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glimmerpane runs on display %1, not on this one.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glimmerpane::LaunchOptions</name>
    <message>
        <source>Glimmerpane is not running.</source>
        <translation>Glimmerpane n’est pas lancé.</translation>
    </message>
    <message>
        <source>The running Glimmerpane has just ended.</source>
        <translation>Le Glimmerpane déjà lancé vient de se terminer.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Argument inattendu «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>Only one of --share, --stop and --select can be used at a time.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an area. An area is four numbers: X,Y,WIDTHxHEIGHT.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a kind of output window. Use managed or unlisted.</source>
        <translation type="unfinished"></translation>
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
  --select                 Open the area selector.
  --status                 Print the area, whether it is being shared, the
                           frames shown in the last second and the frames
                           dropped, as JSON.
  --output-window=managed  Let the window manager list the output window, for
                           programs that offer only what it lists.
  -h, --help               Print this and exit.
  -v, --version            Print the version and exit.

If Glimmerpane is already running, it does what is asked; without options its
window comes to the front. The exit code is 0, 1 (failed) or 2 (usage).
</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glimmerpane::MainViewModel</name>
    <message>
        <source>The width and the height of the area must be finite numbers.</source>
        <translation>La largeur et la hauteur de la zone doivent être des nombres finis.</translation>
    </message>
    <message>
        <source>The area is empty. Its width and its height must be at least 1.</source>
        <translation>La zone est vide. Sa largeur et sa hauteur doivent valoir au moins 1.</translation>
    </message>
    <message numerus="yes">
        <source>The area is too large. A side can have at most %n pixels.</source>
        <translation>
            <numerusform>La zone est trop grande. Un côté peut avoir au plus %n pixel.</numerusform>
            <numerusform>La zone est trop grande. Un côté peut avoir au plus %n pixels.</numerusform>
        </translation>
    </message>
    <message>
        <source>Screen Capture</source>
        <translation>Capture d’écran</translation>
    </message>
    <message>
        <source>Failed to start capture: %1</source>
        <translation>Impossible de démarrer la capture&#xa0;: %1</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Screen Recording Permission Required</source>
        <translation>Autorisation d’enregistrer l’écran requise</translation>
    </message>
    <message>
        <source>Please grant Screen Recording permission in System Settings &gt; Privacy &amp; Security &gt; Screen Recording</source>
        <translation>Veuillez autoriser l’enregistrement de l’écran dans Paramètres système &gt; Confidentialité et sécurité &gt; Enregistrement de l’écran</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <translation>Ouvrir les paramètres système</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation>Mise à jour disponible</translation>
    </message>
    <message>
        <source>Current version: %1
New version: %2</source>
        <translation>Version actuelle&#xa0;: %1
Nouvelle version&#xa0;: %2</translation>
    </message>
    <message>
        <source>Download New Version</source>
        <translation>Télécharger la nouvelle version</translation>
    </message>
    <message>
        <source>The position of the area must be numbers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The area is not on any display. Set one that is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set Area</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sharing was stopped before it had begun.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen Recording</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glimmerpane knows no settings program for this desktop.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop Sharing and Quit?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The others in your call will no longer see the shared area.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep Sharing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sharing Has Ended</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The call no longer sees the area. %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glimmerpane::MainWindow</name>
    <message>
        <source>Minimize</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>glimmerpane::ScreenCaptureService</name>
    <message>
        <source>The operation couldn&apos;t be completed. (CaptureError error %1.)</source>
        <translation>L’opération n’a pas pu être effectuée. (Erreur CaptureError %1.)</translation>
    </message>
</context>
<context>
    <name>glimmerpane::SettingsFile</name>
    <message>
        <source>Settings are neither read from %1 nor saved there: it is too large, or no file.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glimmerpane::UpdateFailure</name>
    <message>
        <source>HTTP error: %1</source>
        <translation>Erreur HTTP&#xa0;: %1</translation>
    </message>
    <message>
        <source>Invalid API URL</source>
        <translation>URL d’API non valide</translation>
    </message>
    <message>
        <source>Invalid response from server</source>
        <translation>Réponse non valide du serveur</translation>
    </message>
</context>
</TS>
