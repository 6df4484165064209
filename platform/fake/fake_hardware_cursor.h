// A recording cursor class of the process, with a `set` that can be exchanged.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/hardware_cursor.h"

namespace pintle {

class FakeHardwareCursor : public HardwareCursor {
  public:
    struct FakeObject : DesktopCursor::Object {
        std::optional<StandardCursor> standard;
        std::optional<Bitmap> image;
        Point hotspot;
    };

    DesktopCursor makeCursor(const Bitmap& image, Point hotspot) override {
        auto object = std::make_shared<FakeObject>();
        object->image = image;
        object->hotspot = hotspot;
        ++cursorsMade;
        return DesktopCursor(object);
    }
    DesktopCursor standardCursor(StandardCursor which) override {
        auto found = standard_.find(which);
        if (found == standard_.end()) {
            auto object = std::make_shared<FakeObject>();
            object->standard = which;
            found = standard_.emplace(which, DesktopCursor(object)).first;
        }
        return found->second;
    }
    void set(const DesktopCursor& cursor) override {
        if (replacement_)
            replacement_(cursor);
        else
            setOriginal(cursor);
    }
    void setOriginal(const DesktopCursor& cursor) override { shown.push_back(cursor); }
    bool exchangeSet(SetOperation replacement) override {
        ++exchangeRequests;
        if (operationsMissing) return false;
        replacement_ = std::move(replacement);
        return true;
    }

    /// What is behind the cursor that is current now; null before the first one.
    const FakeObject* current() const {
        return shown.empty() ? nullptr : static_cast<const FakeObject*>(&shown.back().object());
    }

    bool operationsMissing = false;
    int exchangeRequests = 0;
    int cursorsMade = 0;
    /// Every cursor that the desktop's own `set` made current, in order.
    std::vector<DesktopCursor> shown;

  private:
    std::map<StandardCursor, DesktopCursor> standard_;
    SetOperation replacement_;
};

}  // namespace pintle
