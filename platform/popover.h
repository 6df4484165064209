// The panel that hangs from the status item. Its content is the user interface's view, given to the backend
// by the root. Main thread only; points, y up.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/geometry.h"
#include "platform/status_item.h"

namespace pintle {

class Popover {
  public:
    virtual ~Popover() = default;
    virtual bool isShown() const = 0;
    /// Shows the panel on the lower edge of the item's button. Desktops that anchor panels themselves look at
    /// `item` only; the others put the panel's frame at `frame`.
    virtual void show(const StatusItem& item, const Rect& frame) = 0;
    /// Nothing when it is not shown.
    virtual void close() = 0;
};

struct PopoverSpec {
    Size contentSize;
    /// Closes when the user does something outside of it.
    bool transient = true;
    bool animates = true;
};

class Popovers {
  public:
    virtual ~Popovers() = default;
    /// Never null; costs little until it is shown.
    virtual std::unique_ptr<Popover> makePopover(const PopoverSpec& spec) = 0;
};

}  // namespace pintle
