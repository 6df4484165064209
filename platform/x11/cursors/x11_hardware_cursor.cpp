#include "platform/x11/cursors/x11_hardware_cursor.h"

#include <map>
#include <utility>

namespace pintle {
namespace {

struct ThemedObject : DesktopCursor::Object {
    ThemedObject(Bitmap picture, Point point) : image(std::move(picture)), hotspot(point) {}
    Bitmap image;
    Point hotspot;
};

struct StandardObject : DesktopCursor::Object {
    explicit StandardObject(StandardCursor cursor) : which(cursor) {}
    StandardCursor which;
};

class X11HardwareCursor : public HardwareCursor {
  public:
    DesktopCursor makeCursor(const Bitmap& image, Point hotspot) override {
        return DesktopCursor(std::make_shared<ThemedObject>(image, hotspot));
    }
    DesktopCursor standardCursor(StandardCursor which) override {
        auto found = standard_.find(which);
        if (found == standard_.end())
            found = standard_.emplace(which, DesktopCursor(std::make_shared<StandardObject>(which))).first;
        return found->second;
    }
    void set(const DesktopCursor& cursor) override {
        if (replacement_)
            replacement_(cursor);
        else
            setOriginal(cursor);
    }
    void setOriginal(const DesktopCursor&) override {}
    bool exchangeSet(SetOperation replacement) override {
        replacement_ = std::move(replacement);
        return true;
    }

  private:
    std::map<StandardCursor, DesktopCursor> standard_;
    SetOperation replacement_;
};

}  // namespace

std::unique_ptr<HardwareCursor> makeHardwareCursor() { return std::make_unique<X11HardwareCursor>(); }

}  // namespace pintle
