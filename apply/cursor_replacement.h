// The in-process replacement of the desktop cursor class's `set`: once enabled, a standard cursor that any
// code of this process makes current is shown as the theme's cursor for its role. Owned by the root, driven
// by the applier. Main thread only.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/hardware_cursor.h"
#include "platform/log.h"

namespace pintle {

/// By the raw value of a cursor role.
using RoleCursors = std::map<std::string, DesktopCursor>;

class CursorReplacement {
  public:
    CursorReplacement(HardwareCursor& hardware, Log& log);

    /// The role map; empty at start.
    RoleCursors& customCursors() { return state_->customCursors; }
    /// Whether `set` has been exchanged; never goes back to false.
    bool isSwizzled() const { return isSwizzled_; }

    /// Exchanges `set` unless that is done already; silently nothing where the operations do not exist.
    void enable();

  private:
    struct State {
        RoleCursors customCursors;
    };
    static void swizzledSet(HardwareCursor& hardware, const RoleCursors& customCursors,
                            const DesktopCursor& cursor);

    HardwareCursor& hardware_;
    Log& log_;
    bool isSwizzled_ = false;
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace pintle
