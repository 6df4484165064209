#include "app/root/native_views_qt.h"

#include <QEvent>
#include <QObject>
#include <QWindow>
#include <map>
#include <utility>

namespace pintle {
namespace {

/// Notices when a view asks to be closed. The window that holds it is the one to close.
class CloseRequests : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Close) return QObject::eventFilter(watched, event);
        // Kept from the view, which would give up its native half, and yet accepted: a refusal stops the end
        // of the program.
        event->accept();
        if (const auto found = close_.find(watched); found != close_.end()) found->second();
        return true;
    }
    void set(QWindow* view, std::function<void()> close) {
        close_.insert_or_assign(view, std::move(close));
        view->installEventFilter(this);
    }

  private:
    std::map<QObject*, std::function<void()>> close_;
};

class QtNativeViews : public NativeViews {
  public:
    explicit QtNativeViews(ShellViews& views) : views_(views) {
        // The desktop always has a compositor.
        views_.setComposited(true);
        views_.setNativelyHosted();
    }

    NativeView popover() override {
        if (!popover_) popover_ = native(views_.popover());
        return popover_;
    }
    double popoverMaterial() override { return views_.popoverMaterial(); }
    NativeView window(WindowContent content) override {
        auto found = windows_.find(content);
        if (found == windows_.end()) found = windows_.emplace(content, native(views_.window(content))).first;
        return found->second;
    }

    void setTitleStrip(NativeView view, double height) override {
        for (const auto& [content, known] : windows_)
            if (known == view) views_.setTitleStrip(content, height);
    }

    void willShow(NativeView view, bool animates) override {
        if (view == popover_) views_.popoverWillShow(animates);
    }
    // Not before: a view that becomes visible outside of a foreign window is given one of the toolkit's.
    void didShow(NativeView view) override { toolkit_.at(view)->setVisible(true); }
    void didHide(NativeView view) override {
        toolkit_.at(view)->setVisible(false);
        if (view == popover_) views_.popoverDidHide();
    }
    void setClose(NativeView view, std::function<void()> close) override {
        requests_.set(toolkit_.at(view), std::move(close));
    }

  private:
    NativeView native(QWindow* view) {
        if (!view) return nullptr;
        // A view and no window of its own, which would only flash up and steal the keyboard.
        view->setFlags(Qt::SubWindow | Qt::FramelessWindowHint);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the toolkit hands the pointer out as a number.
        const auto handle = reinterpret_cast<NativeView>(view->winId());
        toolkit_.emplace(handle, view);
        return handle;
    }

    ShellViews& views_;
    std::map<NativeView, QWindow*> toolkit_;
    std::map<WindowContent, NativeView> windows_;
    NativeView popover_ = nullptr;
    CloseRequests requests_;
};

}  // namespace

std::unique_ptr<NativeViews> makeNativeViews(ShellViews& views) {
    return std::make_unique<QtNativeViews>(views);
}

}  // namespace pintle
