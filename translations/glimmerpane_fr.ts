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
        <source>Glimmerpane runs with another output window. Quit it to choose the window&apos;s kind.</source>
        <translation>Glimmerpane est lancé avec un autre type de fenêtre de sortie. Quittez-le pour en choisir un.</translation>
    </message>
    <message>
        <source>A message waits for its answer.</source>
        <translation>Un message attend une réponse.</translation>
    </message>
    <message>
        <source>The area is just being selected.</source>
        <translation>La zone est en cours de sélection.</translation>
    </message>
    <message>
        <source>The area cannot be selected while it is shared.</source>
        <translation>La zone ne peut pas être sélectionnée pendant son partage.</translation>
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
        <source>The captured display is gone or has changed.</source>
        <translation>L’écran capturé a disparu ou a changé.</translation>
    </message>
    <message>
        <source>The connection to the X server broke.</source>
        <translation>La connexion au serveur X a été rompue.</translation>
    </message>
    <message>
        <source>The system has no file descriptor left.</source>
        <translation>Le système n’a plus de descripteur de fichier disponible.</translation>
    </message>
    <message>
        <source>There is no X display here (DISPLAY is &quot;%1&quot;). Start Glimmerpane in an X11 session.</source>
        <translation>Il n’y a pas d’affichage X ici (DISPLAY vaut «&#xa0;%1&#xa0;»). Lancez Glimmerpane dans une session X11.</translation>
    </message>
    <message>
        <source>The X server refused a request (%1).</source>
        <translation>Le serveur X a refusé une requête (%1).</translation>
    </message>
    <message>
        <source>The X server lacks the extension %1, or does not let this program use it. Enable it in the server&apos;s configuration; over SSH, connect with ssh -Y.</source>
        <translation>Il manque au serveur X l’extension %1, ou il ne laisse pas ce programme s’en servir. Activez-la dans la configuration du serveur&#x202f;; par SSH, connectez-vous avec ssh -Y.</translation>
    </message>
    <message>
        <source>no window manager lists windows here</source>
        <translation>aucun gestionnaire de fenêtres ne tient ici la liste des fenêtres</translation>
    </message>
    <message>
        <source>%1 tiles the windows that it lists</source>
        <translation>%1 dispose en mosaïque les fenêtres de sa liste</translation>
    </message>
    <message>
        <source>%1 stays an unlisted window: %2.</source>
        <translation>«&#xa0;%1&#xa0;» reste une fenêtre hors liste&#xa0;: %2.</translation>
    </message>
    <message>
        <source>The window manager keeps &quot;Glimmerpane - Output&quot; on the screen, and without a compositor it cannot be hidden there. Keep it outside the area.</source>
        <translation>Le gestionnaire de fenêtres garde «&#xa0;Glimmerpane - Output&#xa0;» à l’écran, et sans compositeur elle ne peut pas y être masquée. Gardez-la hors de la zone.</translation>
    </message>
    <message>
        <source>The X server cannot draw pictures of the screen&apos;s kind.</source>
        <translation>Le serveur X ne peut pas dessiner d’images au format de l’écran.</translation>
    </message>
    <message>
        <source>The X server does not let this program read the screen. Over SSH, connect with ssh -Y.</source>
        <translation>Le serveur X ne laisse pas ce programme lire l’écran. Par SSH, connectez-vous avec ssh -Y.</translation>
    </message>
    <message>
        <source>This is a Wayland session, whose screen X programs cannot read. Log in to an X11 session instead.</source>
        <translation>Ceci est une session Wayland, dont les programmes X ne peuvent pas lire l’écran. Ouvrez plutôt une session X11.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::HttpsPost</name>
    <message>
        <source>The answer is too long.</source>
        <translation>La réponse est trop longue.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>La requête a expiré.</translation>
    </message>
    <message>
        <source>The request was cancelled.</source>
        <translation>La requête a été annulée.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::InstanceBus</name>
    <message>
        <source>Glimmerpane runs but does not answer: %1</source>
        <translation>Glimmerpane est lancé mais ne répond pas&#xa0;: %1</translation>
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
        <source>Only one of --share, --stop and --select can be asked for at once.</source>
        <translation>--share, --stop et --select s’excluent mutuellement.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an area. It must be X,Y,WIDTHxHEIGHT, four numbers.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas une zone. Elle s’écrit X,Y,LARGEURxHAUTEUR, avec quatre nombres.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no kind of output window. It must be managed or unlisted.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas un type de fenêtre de sortie. Ce doit être managed ou unlisted.</translation>
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
        <translation>Utilisation&#xa0;: glimmerpane [options]
Partage une partie de l’écran dans un appel vidéo&#xa0;: partagez-y la fenêtre
«&#xa0;Glimmerpane - Output&#xa0;».

Options&#xa0;:
  --area X,Y,LARGEURxHAUTEUR
                           Définir et enregistrer la zone, en points&#x202f;; X et Y
                           sont son coin inférieur gauche, compté depuis le coin
                           inférieur gauche de l’écran principal.
  --share                  Démarrer le partage aussitôt.
  --stop                   Arrêter le partage.
  --select                 Choisir la zone à l’écran.
  --status                 Afficher en JSON la zone, si elle est partagée, les
                           images de la dernière seconde et celles perdues.
  --output-window=managed  Laisser le gestionnaire de fenêtres lister la fenêtre
                           de sortie, pour les programmes qui ne proposent que
                           ce qu’il liste.
  -h, --help               Afficher ceci et quitter.
  -v, --version            Afficher la version et quitter.

Si Glimmerpane est déjà lancé, c’est lui qui fait ce qui est demandé&#x202f;; sans
option, sa fenêtre passe au premier plan. Le code de sortie est 0, 1 (échec) ou
2 (usage).
</translation>
    </message>
</context>
<context>
    <name>glimmerpane::MainViewModel</name>
    <message>
        <source>The width and the height of the area must be finite numbers.</source>
        <translation>La largeur et la hauteur de la zone doivent être des nombres finis.</translation>
    </message>
    <message>
        <source>The position of the area must be two numbers.</source>
        <translation>La position de la zone doit se composer de deux nombres.</translation>
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
        <source>Unable to get device serial number for update check</source>
        <translation>Impossible d’obtenir le numéro de série de l’appareil pour la recherche de mises à jour</translation>
    </message>
    <message>
        <source>Update check failed: %1</source>
        <translation>La recherche de mises à jour a échoué&#xa0;: %1</translation>
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
    <name>glimmerpane::UpdateFailure</name>
    <message>
        <source>The answer cannot be read: %1.</source>
        <translation>La réponse est illisible&#xa0;: %1.</translation>
    </message>
    <message>
        <source>it is no JSON object</source>
        <translation>ce n’est pas un objet JSON</translation>
    </message>
    <message>
        <source>&quot;lastAppVersion&quot; is no text</source>
        <translation>«&#xa0;lastAppVersion&#xa0;» n’est pas un texte</translation>
    </message>
    <message>
        <source>&quot;downloadUrl&quot; is no text</source>
        <translation>«&#xa0;downloadUrl&#xa0;» n’est pas un texte</translation>
    </message>
    <message>
        <source>&quot;canUpdate&quot; is neither true nor false</source>
        <translation>«&#xa0;canUpdate&#xa0;» n’est ni vrai ni faux</translation>
    </message>
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
