<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>macOSのためのモダンなカーソル管理</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>Pintleについて</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>除外リストにアプリを追加</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>サイズを調整可能</translation>
    </message>
    <message>
        <source>All</source>
        <translation>すべて</translation>
    </message>
    <message>
        <source>Animated cursors</source>
        <translation>動くカーソル</translation>
    </message>
    <message>
        <source>App name (e.g., Safari)</source>
        <translation>アプリ名（例: Safari）</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>アプリをリセットしました。Pintle を終了します。もう一度起動すると最初から始められます。</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>起動中のアプリのポインターは、再起動するまで変わらないことがあります。</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>適用済み</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>起動時に前回のカーソルを適用</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>適用中…</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>テーマのカーソルを適用しないアプリ</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>矢印: %1 ピクセル</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>起動時に自動適用</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>動作</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>アップデートを確認…</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>インターネット接続を確かめて、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>アイコンをクリックしてカーソルテーマを選びます。</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>クリックで取得</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>接続中…</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>サポートに連絡</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>アップデートを確認できませんでした</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>カーソルのサイズ</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>カーソルのサイズを100%に戻す</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>カーソルテーマ</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>ダウンロードしたテーマを削除</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>ダウンロード</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>ダウンロード済み</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>取得中 %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>エラー・再試行</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>除外</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>展開中…</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>特長</translation>
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
        <translation>ガラスの不透明度</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>外観</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>アイコンなしで動作を続けます。開くには Pintle をもう一度起動してください。</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>フルスクリーンのアプリでもカーソルを保ちます</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>後で</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>ログイン時に起動</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>左手</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>メニューバーに常駐</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>除外はありません</translation>
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
        <translation>Pintle %1 が利用できます</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>この種類のセッションではポインターを変更できません。</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>トレイが見つかりません</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>Pintle は最新です</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>Pintle はトレイにあります</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>Pintle を終了</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>相手には本来のカーソルが見えます（推奨）</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 を削除</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>リセット</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>リセットして終了</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>アプリをリセット</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>アプリをリセットしますか？</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>リセットしました</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>テーマと設定をすべて消し、システムのカーソルに戻します</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>アプリを閉じると標準に戻します</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>終了時にシステムのカーソルへ戻す</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>起動時にカーソルテーマを復元します</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>右手</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>設定…</translation>
    </message>
    <message>
        <source>Show system cursor (e.g., iBeam for text) when theme doesn&apos;t have it</source>
        <translation>テーマにないもの（テキスト用など）はシステムのカーソルを表示します</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>表示するテーマ</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>ログインすると Pintle が起動します</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>開始中…</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>起動</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>画面共有中はシステムのカーソル</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>システム標準</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>アーカイブにカーソルがありません</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>アーカイブが壊れています</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>アーカイブがテーマとして大きすぎます</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>接続が切れました</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>デスクトップ本来のカーソルを使用中</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>ディスクに空きがありません</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>ガラスにはコンポジターが必要ですが、動いていません</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>サーバーに接続できません</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>サーバーに問題があります。後でお試しください</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>サーバーにそのファイルがありません</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>サーバーがファイルを拒否しました</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>サーバーの身元を確認できません</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>テーマのアドレスが正しくありません</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>テーマのフォルダーに書き込めません</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>テーマ</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>ネットワークがありません</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>この種類のセッションでは使えません</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>ダウンロードしたテーマをすべて削除し、設定を初期値に、カーソルをシステムのものに戻します。その後 Pintle は終了します。</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>ガラスモード</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>最新のぼかし付き半透明（macOS 2026）</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>両手</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>不明</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>更新 %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>ない種類はシステムのカーソルで補う</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>フルスクリーンでもテーマを使う</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>デスクトップ本来のカーソルを使う</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>最新のバージョンです。</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>お使いのバージョンは %1 です。新しいものをダウンロードし、「アプリケーション」の Pintle と置き換えてください。</translation>
    </message>
    <message>
        <source>new</source>
        <translation>新着</translation>
    </message>
</context>
</TS>
