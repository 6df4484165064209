#include "platform/x11/overlay/overlay_desktop.h"

#include <cstdlib>

#include "platform/freedesktop/atspi_accessibility.h"
#include "platform/x11/overlay/overlay_connection.h"
#include "platform/x11/overlay/x11_displays.h"
#include "platform/x11/overlay/x11_overlay_surfaces.h"
#include "platform/x11/overlay/x11_pointer.h"
#include "platform/x11/windows/x11_window_list.h"

namespace pintle {
namespace {

std::optional<std::string> variable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    if (!value) return std::nullopt;
    return value;
}

class X11OverlayDesktop : public OverlayDesktop {
  public:
    X11OverlayDesktop(const OverlayDesktopOptions& options,
                      std::unique_ptr<overlay::OverlayConnection> connection, const std::string& display)
        : connection_(std::move(connection)),
          displays_(*connection_, [&workspace = options.workspace] { return workspace.pixelsPerPoint(); }),
          surfaces_(*connection_, displays_),
          pointer_(
              *connection_, display, variable,
              options.screenWatched ? options.screenWatched : [] { return false; },
              // A click in the toolkit is no turn of the queue.
              [&queue = options.queue] { queue.post([] {}); }),
          windowList_(*connection_, displays_),
          accessibility_(overlay::makeAtspiAccessibility([this](TopLeftPoint point) {
              const double density = displays_.pixelsPerPoint();
              return std::pair(displays_.originX() + static_cast<int>(point.x * density),
                               displays_.originTop() + static_cast<int>(point.y * density));
          })),
          screensChange_(
              options.workspace.observe(WorkspaceEvent::screenParametersDidChange,
                                        [this](const WorkspaceNotification&) { displays_.invalidate(); })),
          queue_(options.queue),
          log_(options.log),
          watchReadable_(options.watchReadable),
          endOfTurn_(options.queue.atEndOfTurn([this] { endTurn(); })) {
        waitForNews();
    }
    /// Nothing stays hidden behind a program that ends.
    ~X11OverlayDesktop() override { pointer_.flush(); }

    Displays& displays() override { return displays_; }
    OverlaySurfaces& surfaces() override { return surfaces_; }
    Pointer& pointer() override { return pointer_; }
    WindowList& windowList() override { return windowList_; }
    Accessibility& accessibility() override { return *accessibility_; }

  private:
    void waitForNews() {
        readable_ = watchReadable_(connection_->x().descriptor(), [this] {
            connection_->drain();
            if (connection_->isBroken()) reopenSoon();
        });
    }
    /// Not inside the report of the descriptor: a dead connection is readable for ever, so that one ends
    /// first.
    void reopenSoon() {
        readable_.end();
        later_ = queue_.after(std::chrono::nanoseconds(0), [this] {
            isFollowedWithoutBeingWoken_ = false;
            if (!connection_->reopen())
                return log_.system(
                    "[X11] The connection that draws the overlay was closed - overlay unavailable");
            log_.system("[X11] The connection that draws the overlay was closed - opened again");
            waitForNews();
        });
    }
    void endTurn() {
        pointer_.flush();
        // A mouse reports up to a thousand times a second, and each move of our window comes back as news:
        // whoever follows the pointer takes them in with its next question.
        if (!connection_->isFollowed() || isFollowedWithoutBeingWoken_) return;
        isFollowedWithoutBeingWoken_ = true;
        readable_.end();
        lookAfterAWhile();
    }
    void lookAfterAWhile() {
        later_ = queue_.after(std::chrono::milliseconds(100), [this] {
            connection_->drain();
            if (connection_->isBroken()) return reopenSoon();
            if (connection_->isFollowed()) return lookAfterAWhile();
            isFollowedWithoutBeingWoken_ = false;
            waitForNews();
        });
    }

    std::unique_ptr<overlay::OverlayConnection> connection_;
    overlay::X11Displays displays_;
    overlay::X11OverlaySurfaces surfaces_;
    overlay::X11Pointer pointer_;
    overlay::X11WindowList windowList_;
    std::unique_ptr<Accessibility> accessibility_;
    Subscription screensChange_;
    MainQueue& queue_;
    Log& log_;
    std::function<Subscription(int, std::function<void()>)> watchReadable_;
    bool isFollowedWithoutBeingWoken_ = false;
    Subscription readable_;
    Timer later_;
    Subscription endOfTurn_;
};

}  // namespace

std::unique_ptr<OverlayDesktop> makeOverlayDesktop(const OverlayDesktopOptions& options) {
    const std::string display = options.display.value_or(variable("DISPLAY").value_or(""));
    auto connection = overlay::OverlayConnection::open(display);
    if (!connection) return nullptr;
    return std::make_unique<X11OverlayDesktop>(options, std::move(connection), display);
}

}  // namespace pintle
