// Draws the user interface into pictures: view_gallery SCENE PICTURE.png [WORD...]. The scenes "popover",
// "first" and "states" are the popover over a scripted program whose themes come from what is installed here;
// any other SCENE is a file of a view. Words: dark, glass, plain (no compositor), rtl, large, still,
// contrast, update, frames (prints what scrolling costs), unavailable, scale=1.15, filter=2, size=340x520,
// hover=X,Y, press=X,Y, keys=Tab,Down, scroll=ROW, wait=MS. QT_SCALE_FACTOR=2 draws at twice the size.
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QPainter>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickPaintedItem>
#include <QQuickView>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <utility>
#include <vector>

#include "app/quick/shell_views_quick.h"
#include "platform/fake/fake_appearance.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

struct Words {
    QStringList list;
    bool has(const char* word) const { return list.contains(QString::fromLatin1(word)); }
    QString value(const char* key) const {
        const auto start = QString::fromLatin1(key) + '=';
        for (const auto& word : list)
            if (word.startsWith(start)) return word.mid(start.size());
        return {};
    }
    QPoint point(const char* key) const {
        const auto parts = value(key).split(',');
        return parts.size() == 2 ? QPoint(parts[0].toInt(), parts[1].toInt()) : QPoint(-1, -1);
    }
};

struct Installed {
    const char* theme;
    const char* folder;
};

constexpr auto installed = std::to_array<Installed>({
    {"bibata-modern-classic", "Bibata-Modern-Classic"},
    {"bibata-modern-ice", "Bibata-Modern-Ice"},
    {"bibata-modern-amber", "Bibata-Modern-Amber"},
    {"bibata-original-classic", "Bibata-Original-Classic"},
    {"bibata-original-ice", "Bibata-Original-Ice"},
    {"bibata-original-amber", "Bibata-Original-Amber"},
    {"adwaita-cursors", "Adwaita"},
    {"oxygen-cursors", "DMZ-White"},
    {"breezex-dark", "DMZ-Black"},
});

void install(const ModelWorld& world, std::string_view only = {}) {
    for (const auto& entry : installed) {
        if (!only.empty() && only != entry.theme) continue;
        const auto from = std::filesystem::path("/usr/share/icons") / entry.folder / "cursors" / "left_ptr";
        const auto folder = world.themesDirectory() / entry.theme / "cursors";
        std::error_code failed;
        std::filesystem::create_directories(folder, failed);
        std::filesystem::copy_file(from, folder / "left_ptr", failed);
    }
}

void script(ModelWorld& world, const QString& scene, const Words& words) {
    if (scene == "popover" || scene == "states") install(world);
    world.start();
    if (words.has("update")) world.publishVersion("1.1.0");
    if (const auto scale = words.value("scale"); !scale.isEmpty())
        world.settings.setCursorScale(scale.toDouble());
    if (scene == "first") return;
    world.applyNow("bibata-modern-classic");
    for (const char* id : {"bibata-modern-classic", "bibata-modern-ice", "adwaita-cursors"})
        world.changeRow(id, [](auto& row) { row.isAnimated = true; });
    world.changeRow("bibata-modern-classic-right", [](auto& row) {
        row.isDownloading = true;
        row.downloadStatus = "Downloading 50%";
        row.downloadProgress = 0.5;
    });
    if (scene != "states") return;
    world.changeRow("bibata-modern-ice", [](auto& row) { row.isApplying = true; });
    world.changeRow("bibata-modern-ice-right", [](auto& row) { row.isDownloading = true; });
    world.changeRow("bibata-modern-amber-right", [](auto& row) {
        row.isDownloading = true;
        row.downloadStatus = "Extracting...";
        row.downloadProgress = 0.9;
    });
    world.changeRow("bibata-original-classic", [](auto& row) { row.previewImage = std::nullopt; });
    world.changeRow("bibata-original-ice", [](auto& row) { row.downloadError = "The archive is damaged."; });
    world.changeRow("bibata-original-classic-right",
                    [](auto& row) { row.downloadError = "The server answered 503 Service Unavailable."; });
}

/// What lies behind the popover in a picture. In the scene itself: a grabbed window has no transparency.
class Backdrop : public QQuickPaintedItem {
  public:
    Backdrop(QQuickItem* parent, bool glass, bool dark)
        : QQuickPaintedItem(parent), glass_(glass), dark_(dark) {
        setZ(-1);
    }
    void paint(QPainter* painter) override {
        const QRectF all = boundingRect();
        painter->fillRect(all, dark_ ? QColor(0x2A, 0x30, 0x30) : QColor(0xD8, 0xDE, 0xDD));
        if (glass_) paintWallpaper(*painter, all.size());
    }

  private:
    static void paintWallpaper(QPainter& painter, const QSizeF& size);
    bool glass_;
    bool dark_;
};

void Backdrop::paintWallpaper(QPainter& painter, const QSizeF& size) {
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, size.width(), size.height());
    sky.setColorAt(0, QColor(0x1F, 0x9C, 0x94));
    sky.setColorAt(0.55, QColor(0x6B, 0x4C, 0x9A));
    sky.setColorAt(1, QColor(0xE3, 0x7A, 0x4E));
    painter.fillRect(QRectF(QPointF(), size), sky);
    painter.setPen(Qt::NoPen);
    const double unit = size.width() / 10.0;
    painter.setBrush(QColor(0xF2, 0xB9, 0x4B));
    painter.drawEllipse(QPointF(unit * 8.2, unit * 3), unit * 2.2, unit * 2.2);
    painter.setBrush(QColor(0x0E, 0x3B, 0x43));
    painter.drawEllipse(QPointF(unit * 1.5, unit * 11), unit * 3.4, unit * 3.4);
    painter.setBrush(QColor(0xF4, 0xF7, 0xF6));
    painter.drawEllipse(QPointF(unit * 6, unit * 9.5), unit * 1.6, unit * 1.6);
}

void press(QWindow& window, const QString& name) {
    const auto named = QKeySequence::fromString(name)[0];
    QKeyEvent down(QEvent::KeyPress, named.key(), named.keyboardModifiers());
    QCoreApplication::sendEvent(&window, &down);
    QKeyEvent up(QEvent::KeyRelease, named.key(), named.keyboardModifiers());
    QCoreApplication::sendEvent(&window, &up);
}

void point(QWindow& window, const QPoint& at, QEvent::Type type) {
    const bool pressed = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, at, window.mapToGlobal(at), pressed ? Qt::LeftButton : Qt::NoButton,
                      pressed ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
}

void milliseconds(const char* what, const QElapsedTimer& since) {
    std::printf("%s %.1f ms\n", what, double(since.nsecsElapsed()) / 1e6);
}

/// Scrolls the list from end to end, half a row at a time, and prints how long each step kept the main
/// thread.
void scroll(QQuickView& view) {
    auto* list = view.rootObject()->findChild<QQuickItem*>("themeList");
    if (list == nullptr) return;
    std::vector<double> steps;
    const double end = list->property("contentHeight").toDouble() - list->height();
    for (double at = 0; at < end; at += 26) {
        QElapsedTimer step;
        step.start();
        list->setProperty("contentY", at);
        QEvent draw(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&view, &draw);
        QCoreApplication::processEvents();
        steps.push_back(double(step.nsecsElapsed()) / 1e6);
    }
    std::ranges::sort(steps);
    std::printf("scrolling %zu steps: median %.1f ms, longest %.1f ms\n", steps.size(),
                steps[steps.size() / 2], steps.back());
}

int drawPopover(const QString& scene, const QString& picture, const Words& words) {
    ModelWorld world;
    script(world, scene, words);
    FakeAppearance appearance;
    appearance.become({.dark = words.has("dark"),
                       .reducedMotion = words.has("still"),
                       .highContrast = words.has("contrast"),
                       .textScale = words.has("large") ? 2.0 : 1.0,
                       .blendsWindows = !words.has("plain")});
    world.settings.setGlassMode(words.has("glass"));
    world.settings.setGlassOpacity(0.85);
    const auto session = words.has("unavailable") ? PopoverModel::Session::pointerCannotChange
                                                  : PopoverModel::Session::pointerCanChange;
    PopoverModel model({*world.viewModel, world.updates, world.settings, world.notifications,
                        world.scheduler.mainQueue(), world.application, world.log},
                       session);
    ShellViewsQuick views({.popover = [&]() -> PopoverModel& { return model; },
                           .appearance = appearance,
                           .settings = world.settings,
                           .makeWindow = {},
                           .makeAlert = {}});
    views.setComposited(!words.has("plain"));
    QElapsedTimer sinceClick;
    sinceClick.start();
    auto* view = qobject_cast<QQuickView*>(views.popover());
    if (words.has("frames")) milliseconds("view made", sinceClick);
    if (view == nullptr) return 1;
    const auto asked = words.value("size").split('x');
    const QSize panel = asked.size() == 2 ? QSize(asked[0].toInt(), asked[1].toInt()) : QSize(340, 520);
    const auto margins = views.popoverShape().shadow;
    view->resize(panel.grownBy(margins));
    if (const auto filter = words.value("filter"); !filter.isEmpty())
        model.select(cursor_handedness::allCases[filter.toUInt() % 4]);
    model.onAppear();
    auto* behind = new Backdrop(view->contentItem(), words.has("glass"), words.has("dark"));
    behind->setSize(QSizeF(view->size()));
    views.popoverWillShow(false);
    if (words.has("frames"))
        QObject::connect(view, &QQuickWindow::frameSwapped, view, [&, shown = false]() mutable {
            if (!std::exchange(shown, true)) milliseconds("first frame", sinceClick);
        });
    view->show();
    view->requestActivate();
    QTimer::singleShot(400, view, [&] {
        if (!words.value("keys").isEmpty())
            for (const auto& key : words.value("keys").split(',')) press(*view, key);
        const QPoint panelAt(margins.left(), margins.top());
        if (const auto at = words.point("hover"); at.x() >= 0) point(*view, at + panelAt, QEvent::MouseMove);
        if (const auto at = words.point("press"); at.x() >= 0) {
            point(*view, at + panelAt, QEvent::MouseMove);
            point(*view, at + panelAt, QEvent::MouseButtonPress);
        }
    });
    if (words.has("frames")) QTimer::singleShot(600, view, [&] { scroll(*view); });
    const int wait = words.value("wait").isEmpty() ? 1500 : words.value("wait").toInt();
    QTimer::singleShot(wait, view, [&] { QCoreApplication::exit(view->grabWindow().save(picture) ? 0 : 1); });
    return QCoreApplication::exec();
}

int drawFile(const QString& file, const QString& picture, const Words& words) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setDefaultAlphaBuffer(true);
    ViewLook look;
    look.setLook({.dark = words.has("dark"),
                  .glassMode = words.has("glass"),
                  .glassOpacity = 0.85,
                  .blendsWindows = words.has("glass"),
                  .reducedMotion = words.has("still"),
                  .highContrast = words.has("contrast"),
                  .textScale = words.has("large") ? 2.0 : 1.0,
                  .fontFamily = QGuiApplication::font().family()});
    offerToViews(look);
    QQmlApplicationEngine engine;
    engine.load(QUrl::fromLocalFile(file));
    if (engine.rootObjects().isEmpty()) return 1;
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    if (window == nullptr) return 1;
    window->show();
    QTimer::singleShot(700, window,
                       [&] { QCoreApplication::exit(window->grabWindow().save(picture) ? 0 : 1); });
    return QCoreApplication::exec();
}

}  // namespace
}  // namespace pintle

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const auto arguments = QGuiApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: view_gallery popover|first|states|VIEW.qml PICTURE.png [WORD...]\n", stderr);
        return 2;
    }
    const pintle::Words words{arguments.mid(3)};
    QGuiApplication::setFont(QFont(words.value("font").isEmpty() ? "Inter" : words.value("font")));
    if (words.has("rtl")) QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    if (arguments[1].endsWith(".qml")) return pintle::drawFile(arguments[1], arguments[2], words);
    return pintle::drawPopover(arguments[1], arguments[2], words);
}
