#include "app/quick/shell_views_quick.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include <array>
#include <map>

#include "app/quick/announcement.h"
#include "app/quick/panel_edge.h"
#include "app/quick/panel_shadow.h"
#include "app/quick/popover_facade.h"
#include "app/quick/preview_images.h"
#include "app/quick/refused_network.h"
#include "app/quick/theme_drawings.h"
#include "app/quick/visible_focus.h"
#include "platform/qt/shell/interface_font.h"

namespace pintle {
namespace {

constexpr int panelRadius = 12;

QColor clearColour(const ViewLook& look) {
    if (look.look().blendsWindows) return Qt::transparent;
    return look.dark() ? QColor(0x1B, 0x1E, 0x1F) : QColor(0xF7, 0xF8, 0xF8);
}

/// The window keeps its alpha channel whatever the colour: a compositor may come later, and a window that was
/// made without one stays opaque for it.
void clearWith(QQuickView& view, const QColor& colour) {
    view.setColor(colour);
    auto format = view.requestedFormat();
    format.setAlphaBufferSize(8);
    view.setFormat(format);
}

/// As the view takes it.
QVariantMap room(const QMargins& margins) {
    return {{"left", margins.left()},
            {"top", margins.top()},
            {"right", margins.right()},
            {"bottom", margins.bottom()}};
}

}  // namespace

struct ShellViewsQuick::Scenes {
    RefusedNetwork network;
    QQmlEngine engine;
    PreviewImages previews;
    PopoverModel* popoverModel = nullptr;
    std::unique_ptr<PopoverFacade> popoverFacade;
    std::unique_ptr<QQuickView> popover;
    std::map<WindowContent, std::unique_ptr<QWindow>> windows;
};

ShellViewsQuick::ShellViewsQuick(Dependencies dependencies) : deps_(std::move(dependencies)) {
    // The renderer that runs everywhere and keeps no graphics driver in memory. Before the first window.
    if (QQuickWindow::graphicsApi() != QSGRendererInterface::Software)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setDefaultAlphaBuffer(true);
    appearanceChanged_ = deps_.appearance.observe([this] { followLook(); });
    settingsChanged_ = deps_.settings.changed.observe([this] { followLook(); });
    followLook();
}

ShellViewsQuick::~ShellViewsQuick() {
    if (!scenes_) return;
    scenes_->windows.clear();
    scenes_->popover.reset();
    // Rows end later than their view, and must not outlive the engine.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ShellViewsQuick::followLook() {
    const auto& desktop = deps_.appearance.look();
    const auto glass = glassBackground(deps_.settings);
    const bool wasGlass = look_.glass();
    look_.setLook({.dark = desktop.dark,
                   .glassMode = glass.isOn,
                   .glassOpacity = glass.opacity,
                   .blendsWindows = composited_,
                   .nativelyHosted = nativelyHosted_,
                   .reducedMotion = desktop.reducedMotion,
                   .highContrast = desktop.highContrast,
                   .textScale = desktop.textScale,
                   // Fonts are looked through when there is something to draw with them.
                   .fontFamily = scenes_ ? shell::interfaceFont() : QString()});
    if (scenes_ && scenes_->popover) clearWith(*scenes_->popover, clearColour(look_));
    if (look_.glass() != wasGlass) glassChanged_.emit();
}

void ShellViewsQuick::setComposited(bool composited) {
    composited_ = composited;
    followLook();
}

void ShellViewsQuick::setNativelyHosted() {
    nativelyHosted_ = true;
    followLook();
}

double ShellViewsQuick::popoverMaterial() const {
    return nativelyHosted_ && look_.glass() ? look_.glassOpacity() : 0;
}

void ShellViewsQuick::setTitleStrip(WindowContent content, double height) {
    if (auto* const view = qobject_cast<QQuickView*>(window(content)))
        view->rootObject()->setProperty("titleStrip", height);
}

ShellViewsQuick::Scenes& ShellViewsQuick::scenes() {
    if (!scenes_) {
        offerToViews(look_);
        scenes_ = std::make_unique<Scenes>();
        scenes_->engine.setNetworkAccessManagerFactory(&scenes_->network);
        followLook();
        const double scale = qGuiApp->devicePixelRatio();
        scenes_->engine.addImageProvider(PreviewImages::providerName,
                                         scenes_->previews.makeProvider().release());
        scenes_->engine.addImageProvider(ThemeDrawings::providerName,
                                         ThemeDrawings::makeProvider().release());
        scenes_->engine.addImageProvider("shadow", PanelShadow::makeProvider(scale, panelRadius).release());
        scenes_->engine.addImageProvider("edge", PanelEdge::makeProvider(scale, panelRadius).release());
    }
    return *scenes_;
}

QWindow* ShellViewsQuick::popover() {
    auto& made = scenes();
    if (made.popover) return made.popover.get();
    if (!made.popoverModel) {
        made.popoverModel = &deps_.popover();
        made.popoverFacade = std::make_unique<PopoverFacade>(*made.popoverModel, made.previews);
        made.engine.addImageProvider(StripImages::providerName,
                                     made.popoverFacade->strips()->makeProvider().release());
    }
    auto view = std::make_unique<QQuickView>(&made.engine, nullptr);
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    clearWith(*view, clearColour(look_));
    view->setTitle(made.popoverFacade->title());
    view->setInitialProperties({{"popover", QVariant::fromValue<QObject*>(made.popoverFacade.get())},
                                {"shadow", room(popoverShape().shadow)}});
    view->setSource(QUrl("qrc:/qt-project.org/imports/Pintle/Popover.qml"));
    if (view->status() != QQuickView::Ready) return nullptr;
    new VisibleFocus(*view);
    QObject::connect(made.popoverFacade.get(), &PopoverFacade::announced, view.get(),
                     [window = view.get(), facade = made.popoverFacade.get()] {
                         if (!facade->announcement().isEmpty()) announce(*window, facade->announcement());
                     });
    made.popover = std::move(view);
    return made.popover.get();
}

PopoverShape ShellViewsQuick::popoverShape() const {
    const int margin = composited_ && !nativelyHosted_ ? PanelShadow::margin : 0;
    return {QMargins(margin, margin, margin, margin), nativelyHosted_ ? 0 : panelRadius};
}

void ShellViewsQuick::setPopoverShadow(const QMargins& shadow) {
    if (popover()) scenes_->popover->rootObject()->setProperty("shadow", room(shadow));
}

void ShellViewsQuick::popoverWillShow(bool animates) {
    if (!popover()) return;
    scenes_->popoverModel->onAppear();
    QMetaObject::invokeMethod(scenes_->popover->rootObject(), "willShow", Q_ARG(bool, animates));
}

void ShellViewsQuick::popoverDidHide() {
    // What is not seen keeps no pixels.
    if (!scenes_ || !scenes_->popover) return;
    scenes_->popoverModel->onDisappear();
    scenes_->popoverFacade->strips()->clear();
    scenes_->popoverFacade->silence();
    scenes_->popover->releaseResources();
}

QWindow* ShellViewsQuick::window(WindowContent content) {
    auto& made = scenes();
    const auto known = made.windows.find(content);
    if (known != made.windows.end()) return known->second.get();
    auto view = deps_.makeWindow ? deps_.makeWindow(made.engine, content) : nullptr;
    if (!view) return nullptr;
    return made.windows.emplace(content, std::move(view)).first->second.get();
}

QWindow* ShellViewsQuick::alert(const Alert& alert, std::function<void(int button)> chosen) {
    return deps_.makeAlert ? deps_.makeAlert(scenes().engine, alert, std::move(chosen)) : nullptr;
}

}  // namespace pintle
