<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>现代的 macOS 光标管理器</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>关于 Pintle</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>将应用添加到排除列表</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>光标大小可调</translation>
    </message>
    <message>
        <source>All</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>Animated cursors</source>
        <translation>动态光标</translation>
    </message>
    <message>
        <source>App name (e.g., Safari)</source>
        <translation>应用名称（例如 Safari）</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>应用已重置。Pintle 现在将退出。再次启动即可重新开始。</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>已在运行的应用可能要在重新启动后才会更改指针。</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>已应用</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>启动时应用上次的光标</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>正在应用…</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>不应用主题光标的应用</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>箭头：%1 像素</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>启动时自动应用</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>行为</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>检查更新…</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>请检查网络连接后重试。</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>点击其图标以选择光标主题。</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>点击下载</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>正在连接…</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>联系支持</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>无法检查更新</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>光标大小</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>光标大小恢复为 100%</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>自定义光标主题</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>删除已下载的主题</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>已下载</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>正在下载 %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>出错 - 点按重试</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>排除项</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>正在解压…</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>功能</translation>
    </message>
    <message>
        <source>For the left hand</source>
        <translation>左手用</translation>
    </message>
    <message>
        <source>For the right hand</source>
        <translation>右手用</translation>
    </message>
    <message>
        <source>Glass Opacity</source>
        <translation>玻璃不透明度</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>界面样式</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>它会在没有图标的情况下继续运行。再次启动 Pintle 即可打开。</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>在全屏应用中保留自定义光标</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>稍后</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>登录时启动</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>左手</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>菜单栏集成</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>未添加排除项</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>好</translation>
    </message>
    <message>
        <source>Pintle</source>
        <translation>Pintle</translation>
    </message>
    <message>
        <source>Pintle %1 is available</source>
        <translation>Pintle %1 已可用</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>Pintle 无法在此类会话中更改指针。</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>Pintle 未找到系统托盘</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>Pintle 已是最新版本</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>Pintle 位于系统托盘中</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>退出 Pintle</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>远程观看者会看到真实光标（推荐）</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>移除 %1</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>重置</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>重置并退出</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>重置应用</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>重置应用？</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>重置完成</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>清除所有下载的主题和设置，并恢复系统光标</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>关闭应用时恢复默认</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>退出时恢复系统光标</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>启动时恢复您的光标主题</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>右手</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>设置…</translation>
    </message>
    <message>
        <source>Show system cursor (e.g., iBeam for text) when theme doesn&apos;t have it</source>
        <translation>主题缺少时（例如文本光标）显示系统光标</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>显示主题</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>登录后启动 Pintle</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>正在开始…</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>启动</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>屏幕共享时使用系统光标</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>系统默认</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>压缩包中没有光标</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>压缩包已损坏</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>压缩包超过了主题的大小上限</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>连接已中断</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>正在使用桌面自带的光标</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>磁盘已满</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>玻璃效果需要合成器，但没有合成器在运行</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>无法连接到服务器</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>服务器出现问题；请稍后再试</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>服务器上没有此文件</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>服务器拒绝提供此文件</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>无法验证服务器的身份</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>主题的地址无效</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>无法写入主题文件夹</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>主题</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>没有网络</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>此类会话不支持此功能</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>这将删除所有已下载的主题，将所有设置恢复为默认值，并恢复系统光标。重置后 Pintle 将退出。</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>全玻璃模式</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>现代的模糊透明效果 (macOS 2026)</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>通用</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>更新 %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>缺少的类型使用系统光标</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>全屏时使用主题光标</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>使用桌面自带的光标</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>您使用的是最新版本。</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>您的版本为 %1。请下载新版本并替换“应用程序”中的 Pintle。</translation>
    </message>
    <message>
        <source>new</source>
        <translation>新</translation>
    </message>
</context>
</TS>
