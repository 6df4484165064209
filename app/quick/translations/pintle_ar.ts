<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>Pintle</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>A modern cursor manager for macOS</source>
        <translation>مدير مؤشرات حديث لنظام macOS</translation>
    </message>
    <message>
        <source>About Pintle</source>
        <translation>حول Pintle</translation>
    </message>
    <message>
        <source>Add app to exclusion list</source>
        <translation>إضافة تطبيق إلى قائمة الاستثناءات</translation>
    </message>
    <message>
        <source>Adjustable cursor size</source>
        <translation>حجم قابل للضبط</translation>
    </message>
    <message>
        <source>All</source>
        <translation>الكل</translation>
    </message>
    <message>
        <source>Animated cursors</source>
        <translation>مؤشرات متحركة</translation>
    </message>
    <message>
        <source>App name (e.g., Safari)</source>
        <translation>اسم التطبيق (مثل Safari)</translation>
    </message>
    <message>
        <source>Application has been reset. Pintle will now quit. Launch it again to start fresh.</source>
        <translation>أُعيد ضبط التطبيق. سيُغلق Pintle الآن. شغّله مرة أخرى للبدء من جديد.</translation>
    </message>
    <message>
        <source>Applications that are running already may keep their pointer until they are restarted.</source>
        <translation>قد تحتفظ التطبيقات المفتوحة بمؤشرها حتى يُعاد تشغيلها.</translation>
    </message>
    <message>
        <source>Applied</source>
        <translation>تم التطبيق</translation>
    </message>
    <message>
        <source>Apply Last Cursor on Launch</source>
        <translation>تطبيق آخر مؤشر عند البدء</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>يطبّق…</translation>
    </message>
    <message>
        <source>Apps where themed cursor will NOT be applied</source>
        <translation>تطبيقات لا يُطبَّق فيها مؤشر السمة</translation>
    </message>
    <message>
        <source>Arrow: %1 pixels</source>
        <translation>السهم: %1 بكسل</translation>
    </message>
    <message>
        <source>Auto-apply on launch</source>
        <translation>تطبيق تلقائي عند البدء</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>السلوك</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>البحث عن تحديثات…</translation>
    </message>
    <message>
        <source>Check your internet connection and try again.</source>
        <translation>تحقق من اتصالك بالإنترنت وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Click its icon to choose a cursor theme.</source>
        <translation>انقر أيقونته لاختيار سمة للمؤشر.</translation>
    </message>
    <message>
        <source>Click to download</source>
        <translation>انقر للتنزيل</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>يتصل…</translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation>اتصل بالدعم</translation>
    </message>
    <message>
        <source>Could not check for updates</source>
        <translation>تعذّر البحث عن تحديثات</translation>
    </message>
    <message>
        <source>Cursor Size</source>
        <translation>حجم المؤشر</translation>
    </message>
    <message>
        <source>Cursor size back to 100%</source>
        <translation>إعادة حجم المؤشر إلى 100%</translation>
    </message>
    <message>
        <source>Custom cursor themes</source>
        <translation>سمات مؤشرات مخصصة</translation>
    </message>
    <message>
        <source>Delete downloaded theme</source>
        <translation>حذف السمة المنزّلة</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>تنزيل</translation>
    </message>
    <message>
        <source>Downloaded</source>
        <translation>تم التنزيل</translation>
    </message>
    <message>
        <source>Downloading %1</source>
        <translation>ينزّل %1</translation>
    </message>
    <message>
        <source>Error - Tap to retry</source>
        <translation>خطأ - انقر للإعادة</translation>
    </message>
    <message>
        <source>Exclusions</source>
        <translation>الاستثناءات</translation>
    </message>
    <message>
        <source>Extracting...</source>
        <translation>يستخرج…</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>الميزات</translation>
    </message>
    <message>
        <source>For the left hand</source>
        <translation>لليد اليسرى</translation>
    </message>
    <message>
        <source>For the right hand</source>
        <translation>لليد اليمنى</translation>
    </message>
    <message>
        <source>Glass Opacity</source>
        <translation>عتامة الزجاج</translation>
    </message>
    <message>
        <source>Interface Style</source>
        <translation>نمط الواجهة</translation>
    </message>
    <message>
        <source>It goes on running without an icon. Start Pintle again to open it.</source>
        <translation>سيستمر في العمل دون أيقونة. شغّل Pintle مرة أخرى لفتحه.</translation>
    </message>
    <message>
        <source>Keep custom cursor in fullscreen apps</source>
        <translation>إبقاء المؤشر المخصص في تطبيقات ملء الشاشة</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>لاحقًا</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>التشغيل عند تسجيل الدخول</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>يسرى</translation>
    </message>
    <message>
        <source>Menu bar integration</source>
        <translation>في شريط القوائم</translation>
    </message>
    <message>
        <source>No exclusions added</source>
        <translation>لا توجد استثناءات</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>موافق</translation>
    </message>
    <message>
        <source>Pintle</source>
        <translation>Pintle</translation>
    </message>
    <message>
        <source>Pintle %1 is available</source>
        <translation>يتوفر Pintle %1</translation>
    </message>
    <message>
        <source>Pintle cannot change the pointer in this kind of session.</source>
        <translation>لا يستطيع Pintle تغيير المؤشر في هذا النوع من الجلسات.</translation>
    </message>
    <message>
        <source>Pintle found no tray</source>
        <translation>لم يجد Pintle شريط الأيقونات</translation>
    </message>
    <message>
        <source>Pintle is up to date</source>
        <translation>Pintle محدَّث</translation>
    </message>
    <message>
        <source>Pintle lives in the tray</source>
        <translation>Pintle موجود في شريط الأيقونات</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>إنهاء</translation>
    </message>
    <message>
        <source>Quit Pintle</source>
        <translation>إنهاء Pintle</translation>
    </message>
    <message>
        <source>Remote viewers see the real cursor (recommended)</source>
        <translation>يرى المشاهدون المؤشر الحقيقي (مستحسن)</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>إزالة %1</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>إعادة ضبط</translation>
    </message>
    <message>
        <source>Reset &amp; Quit</source>
        <translation>إعادة الضبط والإنهاء</translation>
    </message>
    <message>
        <source>Reset Application</source>
        <translation>إعادة ضبط التطبيق</translation>
    </message>
    <message>
        <source>Reset Application?</source>
        <translation>أتريد إعادة ضبط التطبيق؟</translation>
    </message>
    <message>
        <source>Reset Complete</source>
        <translation>اكتملت إعادة الضبط</translation>
    </message>
    <message>
        <source>Reset all downloaded themes, settings, and restore system cursor</source>
        <translation>يمحو السمات والإعدادات ويستعيد مؤشر النظام</translation>
    </message>
    <message>
        <source>Reset to default when closing app</source>
        <translation>العودة إلى الافتراضي عند إغلاق التطبيق</translation>
    </message>
    <message>
        <source>Restore System Cursor on Quit</source>
        <translation>استعادة مؤشر النظام عند الإنهاء</translation>
    </message>
    <message>
        <source>Restore your cursor theme at startup</source>
        <translation>استعادة سمة المؤشر عند البدء</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>إعادة المحاولة</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>يمنى</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>الإعدادات</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>الإعدادات…</translation>
    </message>
    <message>
        <source>Show system cursor (e.g., iBeam for text) when theme doesn&apos;t have it</source>
        <translation>يعرض مؤشر النظام (مثل مؤشر النص) إن لم يوجد في السمة</translation>
    </message>
    <message>
        <source>Show themes</source>
        <translation>عرض السمات</translation>
    </message>
    <message>
        <source>Start Pintle when you log in</source>
        <translation>بدء Pintle عند تسجيل دخولك</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>يبدأ…</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>بدء التشغيل</translation>
    </message>
    <message>
        <source>System Cursor During Screen Sharing</source>
        <translation>مؤشر النظام أثناء مشاركة الشاشة</translation>
    </message>
    <message>
        <source>System Default</source>
        <translation>مؤشر النظام</translation>
    </message>
    <message>
        <source>The archive holds no cursors</source>
        <translation>لا يحتوي الأرشيف على مؤشرات</translation>
    </message>
    <message>
        <source>The archive is damaged</source>
        <translation>الأرشيف تالف</translation>
    </message>
    <message>
        <source>The archive is larger than a theme can be</source>
        <translation>الأرشيف أكبر مما تكون عليه سمة</translation>
    </message>
    <message>
        <source>The connection broke off</source>
        <translation>انقطع الاتصال</translation>
    </message>
    <message>
        <source>The desktop&apos;s own cursors are in use</source>
        <translation>مؤشرات سطح المكتب قيد الاستخدام</translation>
    </message>
    <message>
        <source>The disk is full</source>
        <translation>القرص ممتلئ</translation>
    </message>
    <message>
        <source>The glass look needs a compositor, and none is running</source>
        <translation>يحتاج الزجاج إلى مركّب نوافذ، ولا يعمل أي مركّب</translation>
    </message>
    <message>
        <source>The server could not be reached</source>
        <translation>تعذّر الوصول إلى الخادم</translation>
    </message>
    <message>
        <source>The server has a problem; try again later</source>
        <translation>في الخادم مشكلة؛ حاول لاحقًا</translation>
    </message>
    <message>
        <source>The server has no such file</source>
        <translation>لا يوجد هذا الملف على الخادم</translation>
    </message>
    <message>
        <source>The server refuses to give the file</source>
        <translation>يرفض الخادم إعطاء الملف</translation>
    </message>
    <message>
        <source>The server&apos;s identity could not be proved</source>
        <translation>تعذّر إثبات هوية الخادم</translation>
    </message>
    <message>
        <source>The theme&apos;s address is not valid</source>
        <translation>عنوان السمة غير صالح</translation>
    </message>
    <message>
        <source>The themes folder cannot be written</source>
        <translation>تتعذّر الكتابة في مجلد السمات</translation>
    </message>
    <message>
        <source>Themes</source>
        <translation>السمات</translation>
    </message>
    <message>
        <source>There is no network</source>
        <translation>لا توجد شبكة</translation>
    </message>
    <message>
        <source>This kind of session does not allow it</source>
        <translation>هذا النوع من الجلسات لا يسمح بذلك</translation>
    </message>
    <message>
        <source>This will delete all downloaded themes, reset all settings to defaults, and restore the system cursor. Pintle will quit after reset.</source>
        <translation>ستُحذف كل السمات المنزّلة، وتعود كل الإعدادات إلى قيمها الافتراضية، ويعود مؤشر النظام. سيُغلق Pintle بعد ذلك.</translation>
    </message>
    <message>
        <source>Total Glass Mode</source>
        <translation>وضع الزجاج</translation>
    </message>
    <message>
        <source>Ultra-modern blurred transparency (macOS 2026)</source>
        <translation>شفافية ضبابية حديثة (macOS 2026)</translation>
    </message>
    <message>
        <source>Universal</source>
        <translation>لليدين</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>غير معروف</translation>
    </message>
    <message>
        <source>Update %1</source>
        <translation>تحديث %1</translation>
    </message>
    <message>
        <source>Use System Cursor for Missing Types</source>
        <translation>مؤشر النظام للأنواع الناقصة</translation>
    </message>
    <message>
        <source>Use Themed Cursor in Fullscreen</source>
        <translation>مؤشر السمة في ملء الشاشة</translation>
    </message>
    <message>
        <source>Use the desktop&apos;s own cursors</source>
        <translation>استخدام مؤشرات سطح المكتب</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>الإصدار %1</translation>
    </message>
    <message>
        <source>You have the latest version.</source>
        <translation>لديك أحدث إصدار.</translation>
    </message>
    <message>
        <source>You have version %1. Download the new version and replace Pintle in Applications.</source>
        <translation>لديك الإصدار %1. نزّل الإصدار الجديد واستبدل Pintle في مجلد التطبيقات.</translation>
    </message>
    <message>
        <source>new</source>
        <translation>جديد</translation>
    </message>
</context>
</TS>
