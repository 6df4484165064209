// The root of the program on this desktop: makes every backend, hands them to the composition and owns both.
// Made after the toolkit's application object, destroyed before it. Main thread only.
#pragma once

#include <memory>

#include "app/composition.h"
#include "platform/main_queue.h"

namespace pintle {

class Root {
  public:
    Root();
    ~Root();
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    /// Brings the program up to the point where it waits for events. False when another copy runs: then
    /// nothing was touched and the program ends.
    [[nodiscard]] bool start();

    MainQueue& mainQueue();
    Composition& composition();

  private:
    struct Early;
    struct Desktop;
    std::unique_ptr<Early> early_;
    std::unique_ptr<Desktop> desktop_;
    std::unique_ptr<Composition> composition_;
};

}  // namespace pintle
