#include "tests/mac/fake/fake_windows.h"

#include <algorithm>
#include <list>

#include "platform/mac/appkit_overlay.h"
#include "platform/mac/appkit_popover.h"
#include "platform/mac/appkit_window.h"
#include "tests/mac/fake/fake_object.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle {
namespace mac_fake {
namespace {

struct Live {
    FakeWindow window;
    std::function<void()> closed;
    bool transient = false;
    /// Closings that are being played.
    int closing = 0;
};

std::list<Live*>& live() {
    static auto* const it = new std::list<Live*>;
    return *it;
}

Live& liveOf(const FakeWindow& window) {
    for (Live* each : live())
        if (&each->window == &window) return *each;
    misuse("a window that is gone");
}

/// A window in the list as long as it lives.
class Entry : public Live {
  public:
    explicit Entry(FakeWindow::Kind kind) {
        window.kind = kind;
        live().push_back(this);
    }
    ~Entry() { live().remove(this); }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
};

void takeOff(Live& it) {
    if (!it.window.ordered) return;
    it.window.ordered = false;
    it.window.hasKeys = false;
    if (it.window.kind == FakeWindow::Kind::popover)
        ++it.closing;
    else if (it.closed)
        it.closed();
}

/// A window of a program that is not active takes no keys from the one that is.
void takeKeys(Live& it) {
    if (!it.window.isVisible()) misuse("makeKeyWindow: a window that is not on the screen");
    for (Live* each : live()) each->window.hasKeys = false;
    it.window.hasKeys = world().programIsActive;
}

void say(const std::string& what) { world().windowCalls.push_back(what); }

class Layers {
  public:
    explicit Layers(FakeWindow& window) : window_(window) {}
    void addMaterial(NativeMaterial material) {
        window_.layers.push_back("material " + std::to_string(static_cast<int>(material)));
    }
    void addView(NativeView view) {
        if (!view) misuse("addSubview: no view");
        window_.layers.emplace_back("view");
    }
    void setOpacity(double opacity) { window_.materialOpacity = opacity; }

  private:
    FakeWindow& window_;
};

class FakeNativeWindow : public NativeWindow {
  public:
    FakeNativeWindow(const WindowSpec& spec, std::function<void()> willClose)
        : entry_(FakeWindow::Kind::window) {
        entry_.window.frame = {{0, 0}, spec.contentSize};
        entry_.closed = std::move(willClose);
    }
    ~FakeNativeWindow() override { entry_.closed = nullptr; }
    void clip() override { entry_.window.clips = true; }
    void addMaterial(NativeMaterial material) override { layers_.addMaterial(material); }
    void addView(NativeView view) override { layers_.addView(view); }
    void setMaterialOpacity(double opacity) override { layers_.setOpacity(opacity); }
    bool isVisible() const override { return entry_.window.isVisible(); }
    bool isKey() const override { return entry_.window.hasKeys; }
    Rect frame() const override { return entry_.window.frame; }
    void setFrame(const Rect& frame) override { entry_.window.frame = frame; }
    double titleStrip() const override { return world().titleBarHeight; }
    void orderFrontRegardless() override {
        say("order front");
        entry_.window.ordered = true;
    }
    void makeKey() override {
        say("make key");
        takeKeys(entry_);
    }
    void focus(NativeView view) override {
        say("focus");
        entry_.window.focused = view;
    }
    void close() override { takeOff(entry_); }

  private:
    Entry entry_;
    Layers layers_{entry_.window};
};

class FakeNativePopover : public NativePopover {
  public:
    FakeNativePopover(const PopoverSpec& spec, std::function<void()> didClose)
        : entry_(FakeWindow::Kind::popover) {
        entry_.transient = spec.transient;
        entry_.closed = std::move(didClose);
    }
    ~FakeNativePopover() override { entry_.closed = nullptr; }
    void clip() override { entry_.window.clips = true; }
    void addMaterial(NativeMaterial material) override { layers_.addMaterial(material); }
    void addView(NativeView view) override { layers_.addView(view); }
    void setMaterialOpacity(double opacity) override { layers_.setOpacity(opacity); }
    bool isShown() const override { return entry_.window.ordered; }
    bool canShow(const StatusItem& item) const override {
        return item.hasButton() && world().statusItemStandsInAWindow;
    }
    void show(const StatusItem& item) override {
        if (!canShow(item)) misuse("showRelativeToRect: a view in no window");
        if (entry_.window.layers.empty()) misuse("showRelativeToRect: no content");
        say("show popover");
        entry_.window.ordered = !world().popoverRefuses;
    }
    void makeKey(NativeView view) override {
        say("make key");
        takeKeys(entry_);
        entry_.window.focused = view;
    }
    void close() override { takeOff(entry_); }

  private:
    Entry entry_;
    Layers layers_{entry_.window};
};

class FakeNativeOverlay : public NativeOverlayWindow {
  public:
    explicit FakeNativeOverlay(const NativeOverlaySpec& spec) : entry_(FakeWindow::Kind::overlay) {
        FakeWindow& window = entry_.window;
        window.frame = {{0, 0}, spec.size};
        window.level = spec.level;
        window.collectionBehavior = spec.collectionBehavior;
        window.canHide = spec.canHide;
        window.alpha = 0;
    }
    bool isVisible() const override { return entry_.window.isVisible(); }
    void setSize(Size size) override { entry_.window.frame.size = size; }
    void setOrigin(Point origin) override { entry_.window.frame.origin = origin; }
    void setAlpha(double alpha) override { entry_.window.alpha = alpha; }
    void setImage(CGImageRef image, Size size) override {
        entry_.window.image = image ? pixelsOf(image) : std::nullopt;
        if (image && size != entry_.window.image->size()) misuse("initWithCGImage: not a point a pixel");
    }
    void orderFrontRegardless() override { entry_.window.ordered = true; }

  private:
    Entry entry_;
};

}  // namespace

bool FakeWindow::isVisible() const { return ordered && !takenAway && !(canHide && world().programIsHidden); }

std::vector<FakeWindow*> fakeWindows() {
    std::vector<FakeWindow*> all;
    for (Live* each : live()) all.push_back(&each->window);
    return all;
}
FakeWindow& theWindow(FakeWindow::Kind kind) {
    const auto all = fakeWindows();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const FakeWindow* each) { return each->kind == kind; });
    if (found == all.end()) misuse("no such window");
    return **found;
}

void hideProgram() { world().programIsHidden = true; }
void showProgram() { world().programIsHidden = false; }

void programBecameActive() {
    if (std::exchange(world().programIsActive, true)) return;
    for (Live* each : live())
        if (each->transient) takeOff(*each);
}

void closeByUser(FakeWindow& window) { takeOff(liveOf(window)); }

void finishClosings() {
    for (Live* each : live())
        while (each->closing > 0) {
            --each->closing;
            if (each->closed) each->closed();
        }
}

std::size_t liveWindows() { return live().size(); }

}  // namespace mac_fake

using namespace mac_fake;

std::unique_ptr<NativeWindow> makeNativeWindow(const WindowSpec& spec, std::function<void()> willClose) {
    return std::make_unique<FakeNativeWindow>(spec, std::move(willClose));
}
std::unique_ptr<NativePopover> makeNativePopover(const PopoverSpec& spec, std::function<void()> didClose) {
    return std::make_unique<FakeNativePopover>(spec, std::move(didClose));
}
std::unique_ptr<NativeOverlayWindow> makeNativeOverlayWindow(const NativeOverlaySpec& spec) {
    return std::make_unique<FakeNativeOverlay>(spec);
}

}  // namespace pintle
