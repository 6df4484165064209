// The root of the program on this desktop: makes every backend, hands them to the composition and owns both.
// Made after the toolkit's application object, destroyed before it. Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/app_delegate.h"
#include "app/composition.h"
#include "platform/main_queue.h"

namespace pintle {

/// Before the toolkit's application object: how it draws and what the program is called. A sentence for the
/// user when there is no desktop here to run on; then that object must not be made.
[[nodiscard]] std::optional<std::string> prepareToolkit();

class Root {
  public:
    Root();
    ~Root();
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    /// Brings the program up to the point where it waits for events. False when another copy runs: that one
    /// was told, nothing was touched, and the program ends.
    [[nodiscard]] bool start();

    MainQueue& mainQueue();
    Composition& composition();

  private:
    struct Early;
    struct Desktop;
    ShellPlatform makeDesktop();

    std::unique_ptr<Early> early_;
    std::unique_ptr<Desktop> desktop_;
    std::unique_ptr<Composition> composition_;
    std::unique_ptr<AppDelegate> delegate_;
};

}  // namespace pintle
