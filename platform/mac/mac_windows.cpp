#include "platform/mac/mac_windows.h"

#include "platform/mac/appkit_application.h"
#include "platform/mac/appkit_screens.h"
#include "platform/mac/appkit_window.h"

namespace pintle {
namespace {

class MacShellWindow : public ShellWindow {
  public:
    MacShellWindow(const WindowSpec& spec, NativeView view, NativeViews& views)
        : views_(views), view_(view), window_(makeNativeWindow(spec, [this] { views_.didHide(view_); })) {
        window_->clip();
        window_->addMaterial(NativeMaterial::underWindowBackground);
        window_->addView(view_);
        views_.setClose(view_, [this] { close(); });
    }

    bool isVisible() const override { return window_->isVisible(); }
    bool isKey() const override { return window_->isKey(); }
    Rect frame() const override { return window_->frame(); }
    void setFrame(const Rect& frame) override { window_->setFrame(frame); }
    void makeKeyAndOrderFront() override {
        views_.setTitleStrip(view_, window_->titleStrip());
        views_.willShow(view_, true);
        // A window of a program that is not active gets no keys, and an accessory is not made active by its
        // windows.
        activateNatively();
        window_->orderFrontRegardless();
        window_->makeKey();
        views_.didShow(view_);
        window_->focus(view_);
    }
    void close() override { window_->close(); }

  private:
    NativeViews& views_;
    const NativeView view_;
    const std::unique_ptr<NativeWindow> window_;
};

class MacWindows : public Windows {
  public:
    explicit MacWindows(NativeViews& views) : views_(views) {}
    std::unique_ptr<ShellWindow> makeWindow(const WindowSpec& spec) override {
        const NativeView view = views_.window(spec.content);
        if (!view) return nullptr;
        return std::make_unique<MacShellWindow>(spec, view, views_);
    }
    std::vector<ScreenArea> screens() const override {
        std::vector<ScreenArea> areas;
        for (const ScreenReading& screen : readScreens()) areas.push_back({screen.frame, screen.workArea});
        return areas;
    }
    Point mouseLocation() const override { return readMouseLocation(); }

  private:
    NativeViews& views_;
};

}  // namespace

std::unique_ptr<Windows> makeMacWindows(NativeViews& views) { return std::make_unique<MacWindows>(views); }

}  // namespace pintle
