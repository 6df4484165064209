#include "platform/mac/mac_application.h"

#include <utility>

#include "platform/mac/appkit_application.h"
#include "platform/mac/appkit_workspace.h"

namespace pintle {
namespace {

class MacApplication : public Application {
  public:
    explicit MacApplication(const std::function<Subscription(std::function<void()>)>& observeQuit)
        : nativeEnd_(observeNotification(NotificationSource::application,
                                         "NSApplicationWillTerminateNotification",
                                         [this](const std::optional<RunningApplication>&) { end(); })),
          toolkitEnd_(observeQuit([this] { end(); })) {}

    void setActivationPolicy(ActivationPolicy policy) override { setNativeActivationPolicy(policy); }
    void activateIgnoringOtherApps() override { activateNatively(); }
    void openUrl(const std::string& url) override { openNatively(url); }
    void notify(const std::string& title, const std::string& text) override { notifyNatively(title, text); }
    void terminate() override { terminateNatively(); }
    void setWillTerminate(std::function<void()> handler) override { willTerminate_ = std::move(handler); }

  private:
    /// Of the two ends whichever comes first.
    void end() {
        if (const auto handler = std::exchange(willTerminate_, nullptr)) handler();
    }

    std::function<void()> willTerminate_;
    Subscription nativeEnd_;
    Subscription toolkitEnd_;
};

}  // namespace

std::unique_ptr<Application> makeMacApplication(
    const std::function<Subscription(std::function<void()>)>& observeQuit) {
    return std::make_unique<MacApplication>(observeQuit);
}

}  // namespace pintle
