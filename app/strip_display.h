// Which row of the popover shows its theme's cursors, and which ones: the row that the pointer or the
// keyboard has rested on, if its theme is on disk and the row says nothing else on its second line. Reads in
// the background. Main thread only.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "app/cursor_view_model.h"
#include "app/popover_model.h"
#include "app/theme_strip.h"
#include "base/lifetime.h"
#include "base/signal.h"
#include "base/subscription.h"
#include "platform/main_queue.h"

namespace pintle {

class StripDisplay {
  public:
    static constexpr std::chrono::milliseconds rest{300};

    /// All must outlive the display.
    StripDisplay(PopoverModel& popover, CursorViewModel& viewModel, MainQueue& mainQueue);
    StripDisplay(const StripDisplay&) = delete;
    StripDisplay& operator=(const StripDisplay&) = delete;

    /// The pointer or the focus has come to the row, or has left it. Of several rows the last one counts.
    void attend(const std::string& id);
    void leave(const std::string& id);
    /// The list is hidden.
    void clear();

    /// The row that shows the strip; empty for none.
    const std::string& id() const { return id_; }
    const std::vector<StripCursor>& strip() const { return strip_; }

    /// Another row, or none, shows its strip.
    Signal<> changed;

  private:
    bool canShow(const std::string& id) const;
    void follow();
    void read(const std::string& id);
    void drop();

    PopoverModel& popover_;
    CursorViewModel& viewModel_;
    MainQueue& mainQueue_;
    /// In the order in which they came.
    std::vector<std::string> attended_;
    /// What is waited or read for; empty for none.
    std::string wanted_;
    std::string id_;
    std::vector<StripCursor> strip_;
    Timer rested_;
    /// Of the reading under way; replaced to drop its answer.
    std::optional<Lifetime> reading_;
    Subscription rowsChanged_;
};

}  // namespace pintle
