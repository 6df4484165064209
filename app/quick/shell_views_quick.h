// The user interface: the views of the shell as scenes of Qt Quick, in one engine that is loaded with the
// first of them. Made by the root after the toolkit's application object and destroyed before it. Main thread
// only.
#pragma once

#include <functional>
#include <memory>

#include "app/popover_model.h"
#include "app/quick/view_look.h"
#include "base/signal.h"
#include "platform/appearance.h"
#include "platform/qt/shell/shell_views.h"
#include "settings/cursor_settings.h"

QT_BEGIN_NAMESPACE
class QQmlEngine;
QT_END_NAMESPACE

namespace pintle {

class ShellViewsQuick : public ShellViews {
  public:
    struct Dependencies {
        /// Called once, when the popover is first asked for. The answer must outlive the views.
        std::function<PopoverModel&()> popover;
        Appearance& appearance;
        CursorSettings& settings;
        /// Makes the view of a window; called once for each. Null when it cannot be made.
        std::function<std::unique_ptr<QWindow>(QQmlEngine& engine, WindowContent content)> makeWindow;
        /// As ShellViews::alert; what it answers stays its own. Null when it cannot be made.
        std::function<QWindow*(QQmlEngine& engine, const Alert& alert, std::function<void(int)> chosen)>
            makeAlert;
    };

    explicit ShellViewsQuick(Dependencies dependencies);
    ~ShellViewsQuick() override;

    void setComposited(bool composited) override;
    void setNativelyHosted() override;
    double popoverMaterial() const override;
    void setTitleStrip(WindowContent content, double height) override;
    QWindow* popover() override;
    PopoverShape popoverShape() const override;
    bool isGlass() const override { return look_.glass(); }
    Subscription observeGlass(const std::function<void()>& changed) override {
        return glassChanged_.observe(changed);
    }
    void setPopoverShadow(const QMargins& shadow) override;
    void popoverWillShow(bool animates) override;
    void popoverDidHide() override;
    QWindow* window(WindowContent content) override;
    QWindow* alert(const Alert& alert, std::function<void(int button)> chosen) override;

  private:
    struct Scenes;

    Scenes& scenes();
    void followLook();

    const Dependencies deps_;
    bool composited_ = false;
    bool nativelyHosted_ = false;
    ViewLook look_;
    Signal<> glassChanged_;
    /// Null until a view is asked for.
    std::unique_ptr<Scenes> scenes_;
    Subscription appearanceChanged_;
    Subscription settingsChanged_;
};

}  // namespace pintle
