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
    <name>glimmerpane::AreaOptions</name>
    <message>
        <source>&apos;%1&apos; is not a size. Use WIDTHxHEIGHT in pixels, or a ratio such as 16:9.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas une taille. Utilisez LARGEURxHAUTEUR en pixels, ou un rapport tel que 16:9.</translation>
    </message>
    <message>
        <source>Only one of --area and --use can be used at a time.</source>
        <translation>--area et --use ne peuvent pas être utilisées ensemble.</translation>
    </message>
    <message>
        <source>Only one of --areas and --status can be used at a time.</source>
        <translation>--areas et --status ne peuvent pas être utilisées ensemble.</translation>
    </message>
    <message>
        <source>--json needs --areas.</source>
        <translation>--json nécessite --areas.</translation>
    </message>
    <message>
        <source>Left out because they cannot be read: %1</source>
        <translation>Omises, car illisibles&#xa0;: %1</translation>
    </message>
    <message>
        <source>No area is stored yet. Set one first, for example with --area.</source>
        <translation>Aucune zone n’est encore enregistrée. Définissez-en d’abord une, par exemple avec --area.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::AreaSize</name>
    <message>
        <source>There is no display.</source>
        <translation>Il n’y a aucun écran.</translation>
    </message>
    <message>
        <source>The area is not on any display. Move it onto one.</source>
        <translation>La zone ne se trouve sur aucun écran. Placez-la sur un écran.</translation>
    </message>
    <message>
        <source>The area is empty, so it has no ratio of width to height.</source>
        <translation>La zone est vide, elle n’a donc pas de rapport entre largeur et hauteur.</translation>
    </message>
    <message>
        <source>An area of this size does not fit on its display, which has %1 x %2 pixels.</source>
        <translation>Une zone de cette taille ne tient pas sur son écran, qui a %1 x %2 pixels.</translation>
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
        <translation>Glimmerpane est déjà lancé avec l’autre type de fenêtre de sortie. Quittez-le d’abord.</translation>
    </message>
    <message>
        <source>Glimmerpane is showing a message. Answer it first.</source>
        <translation>Glimmerpane affiche un message. Répondez-y d’abord.</translation>
    </message>
    <message>
        <source>The area is being selected. Confirm or cancel the selection first.</source>
        <translation>La zone est en cours de sélection. Confirmez ou annulez d’abord la sélection.</translation>
    </message>
    <message>
        <source>The area cannot be selected while it is being shared. Stop sharing first.</source>
        <translation>La zone ne peut pas être sélectionnée pendant qu’elle est partagée. Arrêtez d’abord le partage.</translation>
    </message>
    <message>
        <source>Glimmerpane is already running with another back end. Quit it first.</source>
        <translation>Glimmerpane est déjà lancé avec un autre accès à l’écran. Quittez-le d’abord.</translation>
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
        <source>The connection to the X server was lost.</source>
        <translation>La connexion au serveur X a été perdue.</translation>
    </message>
    <message>
        <source>The system has no file descriptors left.</source>
        <translation>Le système n’a plus de descripteur de fichier disponible.</translation>
    </message>
    <message>
        <source>Cannot connect to an X server (DISPLAY is &quot;%1&quot;). Start Glimmerpane in an X11 session.</source>
        <translation>Impossible de se connecter à un serveur X (DISPLAY vaut «&#xa0;%1&#xa0;»). Lancez Glimmerpane dans une session X11.</translation>
    </message>
    <message>
        <source>The X server lacks the %1 extension, or does not let this program use it. Enable it in the server&apos;s configuration; over SSH, connect with ssh -Y.</source>
        <translation>L’extension %1 manque au serveur X, ou il ne laisse pas ce programme l’utiliser. Activez-la dans la configuration du serveur&#x202f;; par SSH, connectez-vous avec ssh -Y.</translation>
    </message>
    <message>
        <source>no window manager here keeps a list of windows</source>
        <translation>aucun gestionnaire de fenêtres ne tient ici la liste des fenêtres</translation>
    </message>
    <message>
        <source>%1 tiles every window that it lists</source>
        <translation>%1 dispose en mosaïque toutes les fenêtres de sa liste</translation>
    </message>
    <message>
        <source>%1 will not be listed: %2.</source>
        <translation>«&#xa0;%1&#xa0;» ne sera pas dans la liste&#xa0;: %2.</translation>
    </message>
    <message>
        <source>The X server cannot draw pictures in the screen&apos;s format.</source>
        <translation>Le serveur X ne peut pas dessiner d’images au format de l’écran.</translation>
    </message>
    <message>
        <source>This is a Wayland session, in which X11 programs cannot read the screen. Log in to an X11 session instead.</source>
        <translation>Ceci est une session Wayland, dans laquelle les programmes X11 ne peuvent pas lire l’écran. Ouvrez plutôt une session X11.</translation>
    </message>
    <message>
        <source>The area is not on any display. Move it onto one.</source>
        <translation>La zone ne se trouve sur aucun écran. Placez-la sur un écran.</translation>
    </message>
    <message>
        <source>There is no back end &apos;%1&apos;. Use one of: %2.</source>
        <translation>L’accès «&#xa0;%1&#xa0;» n’existe pas. Indiquez l’un de&#xa0;: %2.</translation>
    </message>
    <message>
        <source>The desktop does not record the screen: %1</source>
        <translation>Le bureau n’enregistre pas l’écran&#xa0;: %1</translation>
    </message>
    <message>
        <source>The desktop has not delivered a picture of the screen.</source>
        <translation>Le bureau n’a fourni aucune image de l’écran.</translation>
    </message>
    <message>
        <source>GNOME&apos;s screen-cast service is not running.</source>
        <translation>Le service d’enregistrement d’écran de GNOME n’est pas lancé.</translation>
    </message>
    <message>
        <source>GNOME&apos;s screen-cast service has ended.</source>
        <translation>Le service d’enregistrement d’écran de GNOME s’est arrêté.</translation>
    </message>
    <message>
        <source>Sharing was stopped.</source>
        <translation>Le partage a été arrêté.</translation>
    </message>
    <message>
        <source>PipeWire cannot be reached. It delivers the picture of the screen.</source>
        <translation>PipeWire, qui fournit l’image de l’écran, est injoignable.</translation>
    </message>
    <message>
        <source>The desktop delivers the picture of the screen in a form that Glimmerpane cannot read.</source>
        <translation>Le bureau fournit l’image de l’écran sous une forme que Glimmerpane ne sait pas lire.</translation>
    </message>
    <message>
        <source>The desktop no longer delivers the picture of the screen.</source>
        <translation>Le bureau ne fournit plus l’image de l’écran.</translation>
    </message>
    <message>
        <source>PipeWire has ended. It delivered the picture of the screen.</source>
        <translation>PipeWire, qui fournissait l’image de l’écran, s’est arrêté.</translation>
    </message>
    <message>
        <source>The desktop could not start to record the screen.</source>
        <translation>Le bureau n’a pas pu commencer à enregistrer l’écran.</translation>
    </message>
    <message>
        <source>Sharing was stopped before it started.</source>
        <translation>Le partage a été arrêté avant d’avoir commencé.</translation>
    </message>
    <message>
        <source>The recording of the screen was declined.</source>
        <translation>L’enregistrement de l’écran a été refusé.</translation>
    </message>
    <message>
        <source>The desktop&apos;s portal has ended.</source>
        <translation>Le portail du bureau s’est arrêté.</translation>
    </message>
    <message>
        <source>The area is on another display than the one that was chosen for recording. Choose the area&apos;s display, or move the area.</source>
        <translation>La zone se trouve sur un autre écran que celui qui a été choisi pour l’enregistrement. Choisissez l’écran de la zone, ou déplacez la zone.</translation>
    </message>
    <message>
        <source>There is no memory to share with the X server.</source>
        <translation>Il n’y a pas de mémoire à partager avec le serveur X.</translation>
    </message>
    <message>
        <source>The X server lacks the extension %1.</source>
        <translation>Il manque au serveur X l’extension %1.</translation>
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
    <message>
        <source>%1 is only offered by programs that share X11 windows, because this compositor makes no output for it: %2</source>
        <translation>%1 n’est proposé que par les programmes qui partagent des fenêtres X11, car ce compositeur ne crée pas de sortie pour cela : %2</translation>
    </message>
    <message>
        <source>The connection to the Wayland compositor was lost.</source>
        <translation>La connexion au compositeur Wayland a été perdue.</translation>
    </message>
    <message>
        <source>The Wayland compositor no longer delivers pictures of the screen.</source>
        <translation>Le compositeur Wayland ne fournit plus d’images de l’écran.</translation>
    </message>
    <message>
        <source>Sway does not answer.</source>
        <translation>Sway ne répond pas.</translation>
    </message>
    <message>
        <source>SWAYSOCK names no socket of sway.</source>
        <translation>SWAYSOCK n’indique aucun socket de Sway.</translation>
    </message>
    <message>
        <source>Sway has made no output.</source>
        <translation>Sway n’a créé aucune sortie.</translation>
    </message>
    <message>
        <source>Cannot write to the folder that XDG_RUNTIME_DIR names.</source>
        <translation>Impossible d’écrire dans le dossier indiqué par XDG_RUNTIME_DIR.</translation>
    </message>
    <message>
        <source>Sway does not give an output the size of the area.</source>
        <translation>Sway ne donne pas à une sortie la taille de la zone.</translation>
    </message>
    <message>
        <source>Cannot connect to the Wayland compositor (WAYLAND_DISPLAY is &quot;%1&quot;).</source>
        <translation>Connexion impossible au compositeur Wayland (WAYLAND_DISPLAY vaut « %1 »).</translation>
    </message>
    <message>
        <source>This Wayland compositor does not let programs read the screen.</source>
        <translation>Ce compositeur Wayland ne permet pas aux programmes de lire l’écran.</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>The area&apos;s width and height must be finite numbers.</source>
        <translation>La largeur et la hauteur de la zone doivent être des nombres finis.</translation>
    </message>
    <message>
        <source>The area&apos;s X and Y must be numbers.</source>
        <translation>La position de la zone doit être donnée par des nombres.</translation>
    </message>
    <message>
        <source>The area is empty. Its width and height must be at least 1.</source>
        <translation>La zone est vide. Sa largeur et sa hauteur doivent valoir au moins 1.</translation>
    </message>
    <message numerus="yes">
        <source>The area is too large. Each side can be at most %n pixels.</source>
        <translation>
            <numerusform>La zone est trop grande. Chaque côté peut avoir au plus %n pixel.</numerusform>
            <numerusform>La zone est trop grande. Chaque côté peut avoir au plus %n pixels.</numerusform>
        </translation>
    </message>
    <message>
        <source>Sharing was paused or stopped before it went on.</source>
        <translation>Le partage a été suspendu ou arrêté avant d’avoir repris.</translation>
    </message>
    <message>
        <source>Nothing is being shared.</source>
        <translation>Rien n’est partagé.</translation>
    </message>
    <message>
        <source>This Wayland session offers none of the ways to record the screen: GNOME&apos;s screen-cast service, wlr-screencopy 3 (as in sway), KWin&apos;s screencast, or a desktop portal with ScreenCast. Install xdg-desktop-portal with the part for this desktop, or log in to GNOME, KDE Plasma, sway or an X11 session.</source>
        <translation>Cette session Wayland n’offre aucun moyen d’enregistrer l’écran&#xa0;: service d’enregistrement de GNOME, wlr-screencopy 3 (comme dans sway), enregistrement de KWin ou portail de bureau avec ScreenCast. Installez xdg-desktop-portal avec la partie propre à ce bureau, ou connectez-vous à GNOME, KDE Plasma, sway ou à une session X11.</translation>
    </message>
    <message>
        <source>KWin does not record the screen: %1</source>
        <translation>KWin n’enregistre pas l’écran&#xa0;: %1</translation>
    </message>
    <message>
        <source>KWin does not let this program record the screen. It does so once Glimmerpane is installed; --backend=portal asks you instead.</source>
        <translation>KWin ne laisse pas ce programme enregistrer l’écran. Il le fait dès que Glimmerpane est installé&#x202f;; avec --backend=portal, la question vous est posée.</translation>
    </message>
    <message>
        <source>This desktop does not let programs set shortcuts. docs/shortcuts.md says how to set them in its own settings.</source>
        <translation>Ici, les programmes ne peuvent pas définir de raccourcis. docs/shortcuts.md dit comment les définir dans les réglages du bureau.</translation>
    </message>
    <message>
        <source>The shortcuts were turned off meanwhile.</source>
        <translation>Les raccourcis ont été désactivés entre-temps.</translation>
    </message>
    <message>
        <source>The shortcuts were declined.</source>
        <translation>Les raccourcis ont été refusés.</translation>
    </message>
    <message>
        <source>The desktop could not set up the shortcuts. docs/shortcuts.md says how to set them in its own settings.</source>
        <translation>Le bureau n’a pas pu définir les raccourcis. docs/shortcuts.md dit comment les définir dans ses réglages.</translation>
    </message>
    <message>
        <source>--output-window=managed has no effect under this compositor, which would show the window.</source>
        <translation>--output-window=managed n’a pas d’effet avec ce compositeur, qui montrerait la fenêtre.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::InstanceBus</name>
    <message>
        <source>Glimmerpane is running but does not respond: %1</source>
        <translation>Glimmerpane est lancé mais ne répond pas&#xa0;: %1</translation>
    </message>
    <message>
        <source>Glimmerpane is running but does not respond.</source>
        <translation>Glimmerpane est lancé mais ne répond pas.</translation>
    </message>
    <message>
        <source>Glimmerpane is already running on display %1.</source>
        <translation>Glimmerpane est déjà lancé sur l’affichage %1.</translation>
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
        <source>&apos;%1&apos; is not an area. An area is four numbers: X,Y,WIDTHxHEIGHT.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas une zone. Une zone se compose de quatre nombres&#xa0;: X,Y,LARGEURxHAUTEUR.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a kind of output window. Use managed or unlisted.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas un type de fenêtre de sortie. Indiquez managed ou unlisted.</translation>
    </message>
    <message>
        <source>Only one of --share, --stop, --select, --move, --pause, --blank, --resume and --toggle-pause can be used at a time.</source>
        <translation>Une seule des options --share, --stop, --select, --move, --pause, --blank, --resume et --toggle-pause peut être utilisée à la fois.</translation>
    </message>
    <message>
        <source>--save needs --move.</source>
        <translation>--save ne va qu’avec --move.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no place for the area. Use X,Y or X,Y,WIDTHxHEIGHT.</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas un emplacement pour la zone. Indiquez X,Y ou X,Y,LARGEURxHAUTEUR.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither on nor off, for --frame.</source>
        <translation>«&#xa0;%1&#xa0;» n’est ni «&#xa0;on&#xa0;» ni «&#xa0;off&#xa0;», pour --frame.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither on nor off, for --shortcuts.</source>
        <translation>«&#xa0;%1&#xa0;» n’est ni «&#xa0;on&#xa0;» ni «&#xa0;off&#xa0;», pour --shortcuts.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither on nor off, for --tray.</source>
        <translation>«&#xa0;%1&#xa0;» n’est ni «&#xa0;on&#xa0;» ni «&#xa0;off&#xa0;», pour --tray.</translation>
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
        <translation>Utilisation&#xa0;: glimmerpane [options]
Partage une partie de l’écran dans un appel vidéo&#xa0;: partagez-y la fenêtre
«&#xa0;Glimmerpane - Output&#xa0;».

Options&#xa0;:
  --area X,Y,LARGEURxHAUTEUR
                           Définir et enregistrer la zone, en points&#x202f;; X et Y
                           sont son coin inférieur gauche, compté depuis le coin
                           inférieur gauche de l’écran principal.
  --size LARGEURxHAUTEUR   Donner à la zone cette taille en pixels autour de son
                           centre, ou un rapport tel que 16:9.
  --save-as NOM            Enregistrer la zone sous un nom.
  --use NOM                Faire de la zone de ce nom la zone actuelle.
  --forget NOM             Oublier la zone de ce nom.
  --areas [--json]         Lister les zones nommées, une par ligne, ou en JSON.
  --share                  Démarrer le partage aussitôt.
  --stop                   Arrêter le partage.
  --select                 Sélectionner la zone à l’écran.
  --move X,Y[,LARGEURxHAUTEUR]
                           Déplacer la zone pendant qu’elle est partagée&#x202f;;
                           avec --save, l’enregistrer aussi.
  --pause, --resume, --toggle-pause
                           Garder la dernière image, ou reprendre.
  --blank                  Suspendre, avec une image qui le dit.
  --frame on|off           Montrer pendant le partage un cadre autour de la zone,
                           que les autres ne voient pas, avec une poignée pour la
                           déplacer, ou aucun. Mémorisé, aucun au début.
  --tray on|off            Montrer une icône dans la zone de notification
                           du bureau, s’il en a une, avec un menu pour
                           partager, ou aucune. Mémorisé, aucune au début.
  --shortcuts on|off       Faire demander par le bureau des touches pour partager,
                           mettre en pause et montrer le cadre, ou n’en utiliser
                           aucune. Mémorisé, aucune au début.
  --status                 Afficher en JSON la zone enregistrée, si une zone est
                           partagée, laquelle, si elle est en pause et si un
                           autre programme la lit, le nombre d’images montrées
                           dans la dernière seconde, celui des images perdues,
                           l’accès à l’écran et si les clics sont montrés.
  --output-window=managed  Laisser le gestionnaire de fenêtres lister la fenêtre
                           de sortie, pour les programmes qui ne proposent que
                           ce qu’il liste.
  --backend=NAME           Accéder à l’écran par gnome, wlroots, kwin, portal ou
                           x11, au lieu du premier qui fonctionne.
  -h, --help               Afficher cette aide et quitter.
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
        <source>Set Area</source>
        <translation>Définir la zone</translation>
    </message>
    <message>
        <source>Screen Recording</source>
        <translation>Enregistrement de l’écran</translation>
    </message>
    <message>
        <source>Stop Sharing and Quit?</source>
        <translation>Arrêter le partage et quitter&#x202f;?</translation>
    </message>
    <message>
        <source>Others in your call will no longer see the shared area.</source>
        <translation>Les autres participants à l’appel ne verront plus la zone partagée.</translation>
    </message>
    <message>
        <source>Keep Sharing</source>
        <translation>Continuer le partage</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Arrêter et quitter</translation>
    </message>
    <message>
        <source>Sharing Has Ended</source>
        <translation>Le partage est terminé</translation>
    </message>
    <message>
        <source>Sharing was stopped before it started.</source>
        <translation>Le partage a été arrêté avant d’avoir commencé.</translation>
    </message>
    <message>
        <source>Glimmerpane does not know the settings program of this desktop.</source>
        <translation>Glimmerpane ne connaît pas le programme de paramètres de ce bureau.</translation>
    </message>
    <message>
        <source>Others in your call no longer see the area. %1</source>
        <translation>Les autres participants à l’appel ne voient plus la zone. %1</translation>
    </message>
    <message>
        <source>That Did Not Work</source>
        <translation>Cela n’a pas fonctionné</translation>
    </message>
    <message>
        <source>Screen Recording Is Not Possible Here</source>
        <translation>L’enregistrement de l’écran n’est pas possible ici</translation>
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
    <name>glimmerpane::NamedAreas</name>
    <message>
        <source>The area&apos;s name is empty.</source>
        <translation>Le nom de la zone est vide.</translation>
    </message>
    <message numerus="yes">
        <source>The area&apos;s name is too long. It can have %n characters.</source>
        <translation>
            <numerusform>Le nom de la zone est trop long. Il peut avoir %n caractère.</numerusform>
            <numerusform>Le nom de la zone est trop long. Il peut avoir %n caractères.</numerusform>
        </translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be an area&apos;s name: it contains a control character or is not valid text.</source>
        <translation>«&#xa0;%1&#xa0;» ne peut pas être le nom d’une zone&#xa0;: il contient un caractère de contrôle ou n’est pas un texte valide.</translation>
    </message>
    <message>
        <source>The areas cannot be read from %1.</source>
        <translation>Les zones ne peuvent pas être lues dans %1.</translation>
    </message>
    <message>
        <source>There is no area named &apos;%1&apos;.</source>
        <translation>Il n’y a pas de zone nommée «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>The area cannot be stored: its numbers must be finite.</source>
        <translation>La zone ne peut pas être enregistrée&#xa0;: ses nombres doivent être finis.</translation>
    </message>
    <message numerus="yes">
        <source>There are already %n areas with names. Forget one first.</source>
        <translation>
            <numerusform>Il y a déjà %n zone nommée. Oubliez-la d’abord.</numerusform>
            <numerusform>Il y a déjà %n zones nommées. Oubliez-en d’abord une.</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no room for another area in %1.</source>
        <translation>Il n’y a plus de place pour une autre zone dans %1.</translation>
    </message>
    <message>
        <source>The area cannot be stored in %1.</source>
        <translation>La zone ne peut pas être enregistrée dans %1.</translation>
    </message>
    <message>
        <source>The area named &apos;%1&apos; cannot be read from %2.</source>
        <translation>La zone nommée «&#xa0;%1&#xa0;» ne peut pas être lue dans %2.</translation>
    </message>
    <message>
        <source>The area cannot be removed from %1.</source>
        <translation>La zone ne peut pas être supprimée de %1.</translation>
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
        <source>Settings are neither read from nor saved to %1: it is too large or not a regular file.</source>
        <translation>Les paramètres ne sont ni lus dans %1 ni enregistrés&#xa0;: il est trop volumineux ou n’est pas un fichier ordinaire.</translation>
    </message>
</context>
<context>
    <name>glimmerpane::Shortcuts</name>
    <message>
        <source>The shortcuts were turned on or off again meanwhile.</source>
        <translation>Les raccourcis ont été de nouveau activés ou désactivés entre-temps.</translation>
    </message>
    <message>
        <source>Start or stop sharing</source>
        <translation>Démarrer ou arrêter le partage</translation>
    </message>
    <message>
        <source>Pause sharing or go on</source>
        <translation>Mettre le partage en pause ou le reprendre</translation>
    </message>
    <message>
        <source>Show or hide the frame around the area</source>
        <translation>Montrer ou cacher le cadre autour de la zone</translation>
    </message>
</context>
<context>
    <name>glimmerpane::TrayIcon</name>
    <message>
        <source>Glimmerpane: sharing is starting</source>
        <translation>Glimmerpane&#xa0;: le partage démarre</translation>
    </message>
    <message>
        <source>Glimmerpane: the area is shared</source>
        <translation>Glimmerpane&#xa0;: la zone est partagée</translation>
    </message>
    <message>
        <source>Glimmerpane: the area is shared, but nobody is watching yet</source>
        <translation>Glimmerpane&#xa0;: la zone est partagée, mais personne ne regarde encore</translation>
    </message>
    <message>
        <source>Glimmerpane: sharing is paused</source>
        <translation>Glimmerpane&#xa0;: le partage est en pause</translation>
    </message>
    <message>
        <source>Glimmerpane: nothing is shared</source>
        <translation>Glimmerpane&#xa0;: rien n’est partagé</translation>
    </message>
</context>
<context>
    <name>glimmerpane::TrayMenu</name>
    <message>
        <source>Start sharing</source>
        <translation>Démarrer le partage</translation>
    </message>
    <message>
        <source>Stop sharing</source>
        <translation>Arrêter le partage</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reprendre</translation>
    </message>
    <message>
        <source>Pause and hide the picture</source>
        <translation>Pause, sans montrer l’image</translation>
    </message>
    <message>
        <source>Frame around the area</source>
        <translation>Cadre autour de la zone</translation>
    </message>
    <message>
        <source>Select area</source>
        <translation>Sélectionner la zone</translation>
    </message>
    <message>
        <source>Size of the area</source>
        <translation>Taille de la zone</translation>
    </message>
    <message>
        <source>Named areas</source>
        <translation>Zones nommées</translation>
    </message>
    <message>
        <source>Show window</source>
        <translation>Afficher la fenêtre</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
</context>
</TS>
