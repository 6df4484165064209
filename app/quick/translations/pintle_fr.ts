<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>Un gestionnaire de pointeurs moderne pour macOS</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>À propos de Pintle</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>Ajouter une app aux exclusions</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>Taille réglable</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Tous</translation>
    </message>
    <message>
        <source>Animated cursors</source>
        <translation>Pointeurs animés</translation>
    </message>
    <message>
        <source>App name (e.g., Safari)</source>
        <translation>Nom de l’app (p. ex. Safari)</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>L’app a été réinitialisée. Pintle va quitter. Relancez-le pour repartir de zéro.</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>Les applications déjà ouvertes peuvent garder leur pointeur jusqu’à leur redémarrage.</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>Appliqué</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>Appliquer le dernier pointeur</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>Application…</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>Apps où le thème n’est PAS appliqué</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>Flèche : %1 pixels</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>Appliqué au démarrage</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>Comportement</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Rechercher des mises à jour…</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>Cliquez sur son icône pour choisir un thème de pointeurs.</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>Clic : télécharger</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Connexion…</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Contacter l’assistance</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>Impossible de chercher des mises à jour</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>Taille du pointeur</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>Revenir à la taille 100 %</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>Thèmes de pointeurs</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>Supprimer le thème téléchargé</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Télécharger</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>Téléchargé</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>Réception %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>Erreur – Réessayer</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>Exclusions</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>Extraction…</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Fonctions</translation>
    </message>
    <message>
        <source>For the left hand</source>
        <translation>Pour la main gauche</translation>
    </message>
    <message>
        <source>For the right hand</source>
        <translation>Pour la main droite</translation>
    </message>
    <message>
        <source>Glass Opacity</source>
        <translation>Opacité du verre</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>Il continue sans icône. Relancez Pintle pour l’ouvrir.</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>Garder ce pointeur en plein écran</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Lancer à la connexion</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Gauche</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>Dans la barre de menus</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>Aucune exclusion</translation>
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
        <translation>Pintle %1 est disponible</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>Pintle ne peut pas changer le pointeur dans ce type de session.</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>Pintle n’a trouvé aucune zone de notification</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>Pintle est à jour</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>Pintle se trouve dans la zone de notification</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>Quitter Pintle</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>Les autres voient le vrai pointeur (conseillé)</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Retirer %1</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>Réinitialiser et quitter</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>Réinitialiser l’app</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>Réinitialiser l’app ?</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>Réinitialisation terminée</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>Efface les thèmes et les réglages et rend le pointeur du système</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>Revenir au pointeur d’origine à la fermeture</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>Pointeur du système en quittant</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>Retrouver votre thème au démarrage</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Droite</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Réglages…</translation>
    </message>
    <message>
        <source>Show system cursor (e.g., iBeam for text) when theme doesn&apos;t have it</source>
        <translation>Affiche celui du système (p. ex. pour le texte) s’il manque au thème</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>Afficher les thèmes</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>Démarrer Pintle à l’ouverture de session</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>Démarrage…</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Démarrage</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>Pointeur du système en partage d’écran</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>Par défaut</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>L’archive ne contient aucun pointeur</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>L’archive est endommagée</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>L’archive est trop grande pour un thème</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>La connexion a été coupée</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>Les pointeurs du bureau sont utilisés</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>Le disque est plein</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>Le verre a besoin d’un compositeur, et aucun ne tourne</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>Le serveur est injoignable</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>Le serveur a un problème ; réessayez plus tard</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>Le serveur n’a pas ce fichier</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>Le serveur refuse de donner le fichier</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>L’identité du serveur n’est pas prouvée</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>L’adresse du thème n’est pas valable</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>Le dossier des thèmes n’est pas modifiable</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>Thèmes</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>Aucun réseau</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>Ce type de session ne le permet pas</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>Tous les thèmes téléchargés seront effacés, les réglages réinitialisés et le pointeur du système rétabli. Pintle quittera ensuite.</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>Mode verre</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>Transparence floutée moderne (macOS 2026)</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>Les deux</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>Compléter par ceux du système</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>Pointeur du thème en plein écran</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>Utiliser les pointeurs du bureau</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>Vous avez la dernière version.</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>Vous avez la version %1. Téléchargez la nouvelle et remplacez Pintle dans Applications.</translation>
    </message>
    <message>
        <source>new</source>
        <translation>nouveau</translation>
    </message>
</context>
</TS>
