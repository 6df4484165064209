<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>Un gestor de cursores moderno para macOS</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>Acerca de Pintle</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>Añadir una app a las exclusiones</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>Tamaño ajustable</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Todos</translation>
    </message>
    <message>
        <source>Animated cursors</source>
        <translation>Cursores animados</translation>
    </message>
    <message>
        <source>App name (e.g., Safari)</source>
        <translation>Nombre de la app (p. ej., Safari)</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>La app se ha restablecido. Pintle se cerrará ahora. Ábralo otra vez para empezar de nuevo.</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>Las aplicaciones ya abiertas pueden conservar su puntero hasta que se reinicien.</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>Aplicado</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>Aplicar el último cursor</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>Aplicando…</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>Apps donde NO se aplica el tema</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>Flecha: %1 píxeles</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>Se aplica al iniciar</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>Comportamiento</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Buscar actualizaciones…</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>Compruebe su conexión e inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>Haga clic en su icono para elegir un tema de cursores.</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>Clic: descargar</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Conectando…</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Contactar con soporte</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>No se han podido buscar actualizaciones</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>Tamaño del cursor</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>Volver al tamaño 100 %</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>Temas de cursores</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>Borrar el tema descargado</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Descargar</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>Descargado</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>Descarga %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>Error: reintentar</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>Exclusiones</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>Extrayendo…</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Funciones</translation>
    </message>
    <message>
        <source>For the left hand</source>
        <translation>Para la mano izquierda</translation>
    </message>
    <message>
        <source>For the right hand</source>
        <translation>Para la mano derecha</translation>
    </message>
    <message>
        <source>Glass Opacity</source>
        <translation>Opacidad del cristal</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>Apariencia</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>Sigue funcionando sin icono. Inicie Pintle otra vez para abrirlo.</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>Mantiene el cursor en pantalla completa</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Más tarde</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Iniciar con la sesión</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Izquierda</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>En la barra de menús</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>Sin exclusiones</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Pintle</source>
        <translation>Pintle</translation>
    </message>
    <message>
        <source>Pintle %1 is available</source>
        <translation>Pintle %1 está disponible</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>Pintle no puede cambiar el puntero en este tipo de sesión.</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>Pintle no ha encontrado ninguna bandeja</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>Pintle está al día</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>Pintle está en la bandeja</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>Salir de Pintle</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>Los demás ven el cursor real (recomendado)</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Quitar %1</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Restablecer</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>Restablecer y salir</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>Restablecer la app</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>¿Restablecer la app?</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>Restablecido</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>Borra temas y ajustes y devuelve el cursor del sistema</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>Vuelve al original al cerrar</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>Cursor del sistema al salir</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>Recupera su tema al iniciar</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Derecha</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Ajustes…</translation>
    </message>
    <message>
        <source>Show system cursor (e.g., iBeam for text) when theme doesn&apos;t have it</source>
        <translation>Muestra el del sistema (p. ej., para texto) si falta en el tema</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>Mostrar temas</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>Abrir Pintle al iniciar la sesión</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>Iniciando…</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>Cursor del sistema al compartir pantalla</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>Sistema</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>El archivo no contiene cursores</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>El archivo comprimido está dañado</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>El archivo es demasiado grande para un tema</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>La conexión se ha cortado</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>Los cursores del escritorio están en uso</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>El disco está lleno</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>El cristal necesita un compositor y no hay ninguno</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>No se puede llegar al servidor</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>El servidor tiene un problema; inténtelo más tarde</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>El servidor no tiene ese archivo</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>El servidor no entrega el archivo</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>No se ha probado la identidad del servidor</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>La dirección del tema no es válida</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>No se puede escribir en la carpeta de temas</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>Temas</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>No hay red</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>Este tipo de sesión no lo permite</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>Se borrarán todos los temas descargados, se restablecerán los ajustes y volverá el cursor del sistema. Después Pintle se cerrará.</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>Modo cristal</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>Transparencia difuminada moderna (macOS 2026)</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>Ambas</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>Completar con los del sistema</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>Cursor del tema a pantalla completa</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>Usar los cursores del escritorio</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>Tiene la última versión.</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>Tiene la versión %1. Descargue la nueva y sustituya Pintle en Aplicaciones.</translation>
    </message>
    <message>
        <source>new</source>
        <translation>nuevo</translation>
    </message>
</context>
</TS>
