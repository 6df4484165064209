// The root of the program: makes the desktop's backends and the views, hands them to the composition and owns
// all of them. Made after the toolkit's application object, destroyed before it. Main thread only.
#pragma once

#include <memory>

#include "app/app_delegate.h"
#include "app/composition.h"
#include "app/root/desktop_backend.h"

namespace pintle {

class Root {
  public:
    Root();
    ~Root();
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    /// Brings the program up to the point where it waits for events. False when another copy runs: that one
    /// was asked to show itself, nothing was touched, and the program ends.
    [[nodiscard]] bool start();

    MainQueue& mainQueue() { return *early_.queue; }
    Composition& composition() { return composition_; }

  private:
    struct Desktop;
    ShellPlatform makeDesktop();

    EarlyBackend early_;
    std::unique_ptr<Desktop> desktop_;
    Composition composition_;
    std::unique_ptr<AppDelegate> delegate_;
};

}  // namespace pintle
