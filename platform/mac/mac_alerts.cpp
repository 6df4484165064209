#include "platform/mac/mac_alerts.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "base/lifetime.h"
#include "platform/mac/appkit_alert.h"

namespace pintle {
namespace {

constexpr long kFirstButtonReturn = 1000;

/// The number of the button; every response that is none, as when the alert is taken down by others, counts
/// as the last one.
int buttonOf(long response, std::size_t count) {
    const long last = std::max(static_cast<long>(count), 1L) - 1;
    const long button = response - kFirstButtonReturn;
    return static_cast<int>(button >= 0 && button <= last ? button : last);
}

class MacAlerts : public Alerts {
  public:
    explicit MacAlerts(MainQueue& queue) : queue_(queue) {}

    void runModal(const Alert& alert, std::function<void(int button)> answered) override {
        waiting_.push_back({alert, std::move(answered)});
        if (!shown_) showNext();
    }

  private:
    struct Waiting {
        Alert alert;
        std::function<void(int button)> answered;
    };

    /// From the main queue, because the alert waits in a loop of its own and runModal returns at once.
    void showNext() {
        shown_ = true;
        queue_.post(lifetime_.weakly([this] {
            const Waiting next = std::move(waiting_.front());
            waiting_.pop_front();
            const long response = runNativeAlert(next.alert);
            queue_.post([answered = next.answered, button = buttonOf(response, next.alert.buttons.size())] {
                answered(button);
            });
            shown_ = false;
            if (!waiting_.empty()) showNext();
        }));
    }

    MainQueue& queue_;
    std::deque<Waiting> waiting_;
    bool shown_ = false;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<Alerts> makeMacAlerts(MainQueue& queue) { return std::make_unique<MacAlerts>(queue); }

}  // namespace pintle
