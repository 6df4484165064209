#include "platform/mac/mac_hardware_cursor.h"

#include <map>
#include <utility>

#include "platform/mac/appkit_cursor.h"
#include "platform/mac/cg_image.h"

namespace pintle {
namespace {

struct MacCursor : DesktopCursor::Object {
    explicit MacCursor(CursorObject cursor) : object(std::move(cursor)) {}
    CursorObject object;
};

const CursorObject& objectOf(const DesktopCursor& cursor) {
    return static_cast<const MacCursor&>(cursor.object()).object;
}

class MacHardwareCursor : public HardwareCursor {
  public:
    ~MacHardwareCursor() override { *replacement_ = nullptr; }

    DesktopCursor makeCursor(const Bitmap& image, Point hotspot) override {
        CursorObject object = makeCursorObject(toCgImage(image).get(), image.size(), hotspot);
        const void* const native = object.get();
        const auto cursor = std::make_shared<MacCursor>(std::move(object));
        std::erase_if(made_, [](const auto& entry) { return entry.second.expired(); });
        made_[native] = cursor;
        return DesktopCursor(cursor);
    }
    DesktopCursor standardCursor(StandardCursor which) override {
        auto found = standard_.find(which);
        if (found == standard_.end())
            found = standard_.emplace(which, wrap(standardCursorObject(which))).first;
        return found->second;
    }
    void set(const DesktopCursor& cursor) override { sendSet(objectOf(cursor)); }
    void setOriginal(const DesktopCursor& cursor) override { sendOriginalSet(objectOf(cursor)); }

    bool exchangeSet(SetOperation replacement) override {
        // Every object that may be met is known before the first one is.
        for (const StandardCursor which : kStandardCursors) standardCursor(which);
        const bool exchanged = exchangeCursorSet([this, shared = replacement_](const CursorObject& receiver) {
            if (*shared)
                (*shared)(known(receiver));
            else
                sendOriginalSet(receiver);
        });
        if (exchanged) *replacement_ = std::move(replacement);
        return exchanged;
    }

  private:
    static DesktopCursor wrap(CursorObject object) {
        return DesktopCursor(std::make_shared<MacCursor>(std::move(object)));
    }
    /// The wrapper that the object was given here, as a standard cursor or as one that was made; any other
    /// object gets a new one.
    DesktopCursor known(const CursorObject& object) {
        for (const StandardCursor which : kStandardCursors)
            if (objectOf(standardCursor(which)).get() == object.get()) return standardCursor(which);
        if (const auto found = made_.find(object.get()); found != made_.end())
            if (const auto alive = found->second.lock()) return DesktopCursor(alive);
        return wrap(object);
    }

    std::map<StandardCursor, DesktopCursor> standard_;
    std::map<const void*, std::weak_ptr<const DesktopCursor::Object>> made_;
    /// Outlives this object: the exchange cannot be undone.
    std::shared_ptr<SetOperation> replacement_ = std::make_shared<SetOperation>();
};

}  // namespace

std::unique_ptr<HardwareCursor> makeMacHardwareCursor() { return std::make_unique<MacHardwareCursor>(); }

}  // namespace pintle
