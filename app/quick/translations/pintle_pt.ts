<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>Um gestor de cursores moderno para macOS</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>Sobre o Pintle</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>Adicionar uma app às exclusões</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>Tamanho ajustável</translation>
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
        <translation>Nome da app (p. ex., Safari)</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>A app foi reposta. O Pintle vai fechar agora. Abra-o de novo para recomeçar.</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>As aplicações já abertas podem manter o seu ponteiro até serem reiniciadas.</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>Aplicado</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>Aplicar o último cursor</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>A aplicar…</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>Apps onde o tema NÃO é aplicado</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>Seta: %1 píxeis</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>Aplicado ao iniciar</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>Comportamento</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Procurar atualizações…</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>Verifique a sua ligação e tente de novo.</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>Clique no ícone para escolher um tema de cursores.</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>Clique: obter</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>A ligar…</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>Contactar o suporte</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>Não foi possível procurar atualizações</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>Tamanho do cursor</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>Voltar ao tamanho 100 %</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>Temas de cursores</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>Apagar o tema transferido</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Transferir</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>Transferido</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>A receber %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>Erro: repetir</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>Exclusões</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>A extrair…</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Recursos</translation>
    </message>
    <message>
        <source>For the left hand</source>
        <translation>Para a mão esquerda</translation>
    </message>
    <message>
        <source>For the right hand</source>
        <translation>Para a mão direita</translation>
    </message>
    <message>
        <source>Glass Opacity</source>
        <translation>Opacidade do vidro</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>Aparência</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>Continua a funcionar sem ícone. Inicie o Pintle de novo para abri-lo.</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>Mantém o cursor em ecrã inteiro</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Mais tarde</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Iniciar com a sessão</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Esquerda</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>Na barra de menus</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>Sem exclusões</translation>
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
        <translation>O Pintle %1 está disponível</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>O Pintle não pode mudar o ponteiro neste tipo de sessão.</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>O Pintle não encontrou uma bandeja</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>O Pintle está atualizado</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>O Pintle fica na bandeja</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>Sair do Pintle</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>Os outros veem o cursor real (recomendado)</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Remover %1</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Repor</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>Repor e sair</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>Repor a app</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>Repor a app?</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>Reposição concluída</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>Apaga temas e ajustes e devolve o cursor do sistema</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>Volta ao original ao fechar</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>Cursor do sistema ao sair</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>Recupera o seu tema ao iniciar</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Repetir</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Direita</translation>
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
        <translation>Mostra o do sistema (p. ex., para texto) se faltar no tema</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>Mostrar temas</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>Abrir o Pintle ao iniciar a sessão</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>A iniciar…</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Arranque</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>Cursor do sistema ao partilhar o ecrã</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>Do sistema</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>O arquivo não contém cursores</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>O arquivo está danificado</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>O arquivo é grande demais para um tema</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>A ligação foi interrompida</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>Os cursores da área de trabalho estão em uso</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>O disco está cheio</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>O vidro precisa de um compositor e não há nenhum</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>Não foi possível chegar ao servidor</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>O servidor tem um problema; tente mais tarde</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>O servidor não tem esse ficheiro</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>O servidor recusa o ficheiro</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>A identidade do servidor não foi provada</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>O endereço do tema não é válido</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>Não é possível escrever na pasta dos temas</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>Temas</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>Não há rede</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>Este tipo de sessão não o permite</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>Todos os temas transferidos serão apagados, os ajustes repostos e o cursor do sistema devolvido. Depois o Pintle será fechado.</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>Modo vidro</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>Transparência desfocada moderna (macOS 2026)</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>Ambas</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconhecido</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>Versão %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>Completar com os do sistema</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>Cursor do tema em ecrã inteiro</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>Usar os cursores da área de trabalho</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versão %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>Tem a versão mais recente.</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>Tem a versão %1. Transfira a nova e substitua o Pintle em Aplicações.</translation>
    </message>
    <message>
        <source>new</source>
        <translation>novo</translation>
    </message>
</context>
</TS>
