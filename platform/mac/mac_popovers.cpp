#include "platform/mac/mac_popovers.h"

#include "platform/mac/appkit_application.h"
#include "platform/mac/appkit_popover.h"

namespace pintle {
namespace {

class MacPopover : public Popover {
  public:
    MacPopover(const PopoverSpec& spec, NativeViews& views)
        : views_(views),
          animates_(spec.animates),
          popover_(makeNativePopover(spec, [this] { didClose(); })) {}

    bool isShown() const override { return popover_->isShown(); }
    void show(const StatusItem& item, const Rect&) override {
        if (!popover_->canShow(item) || !takeIn()) return;
        popover_->setMaterialOpacity(views_.popoverMaterial());
        views_.willShow(view_, animates_);
        // Before the popover is there: one that is transient goes away when its program becomes active behind
        // it or another window takes the keys.
        activateNatively();
        popover_->show(item);
        if (!popover_->isShown()) return;
        views_.didShow(view_);
        popover_->makeKey(view_);
    }
    void close() override { popover_->close(); }

  private:
    /// At the first showing, because the view costs too much before. False where it cannot be made.
    bool takeIn() {
        if (view_) return true;
        view_ = views_.popover();
        if (!view_) return false;
        popover_->clip();
        popover_->addMaterial(NativeMaterial::popover);
        popover_->addView(view_);
        views_.setClose(view_, [this] { close(); });
        return true;
    }
    /// Comes when the closing was played; a popover that was shown again meanwhile keeps its view.
    void didClose() {
        if (view_ && !popover_->isShown()) views_.didHide(view_);
    }

    NativeViews& views_;
    const bool animates_;
    NativeView view_ = nullptr;
    const std::unique_ptr<NativePopover> popover_;
};

class MacPopovers : public Popovers {
  public:
    explicit MacPopovers(NativeViews& views) : views_(views) {}
    std::unique_ptr<Popover> makePopover(const PopoverSpec& spec) override {
        return std::make_unique<MacPopover>(spec, views_);
    }

  private:
    NativeViews& views_;
};

}  // namespace

std::unique_ptr<Popovers> makeMacPopovers(NativeViews& views) { return std::make_unique<MacPopovers>(views); }

}  // namespace pintle
