#include "platform/mac/mac_pointer.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cmath>
#include <optional>
#include <utility>

#include "platform/mac/appkit_cursor.h"
#include "platform/mac/cg_image.h"
#include "platform/mac/private_functions.h"

namespace pintle {
namespace {

using MainConnectionId = std::uint32_t();
using SetConnectionProperty = CGError(std::uint32_t connection, std::uint32_t target, CFStringRef key,
                                      CFTypeRef value);
using CurrentCursorSeed = int();
using IsScreenWatcherPresent = bool();

/// One pixel a point, as all images of this program are, whatever the picture's own resolution.
std::optional<Bitmap> drawn(const CursorReading& cursor) {
    if (!cursor.image) return std::nullopt;
    return fromCgImage(cursor.image.get(), static_cast<std::size_t>(std::ceil(cursor.size.width)),
                       static_cast<std::size_t>(std::ceil(cursor.size.height)));
}

class MacPointer : public Pointer {
  public:
    void show(DisplayId display) override { CGDisplayShowCursor(display); }
    void hide(DisplayId display) override { CGDisplayHideCursor(display); }

    bool setsCursorInBackground() override {
        static auto* const set = privateFunction<SetConnectionProperty>("CGSSetConnectionProperty");
        static auto* const main = privateFunction<MainConnectionId>("CGSMainConnectionID");
        if (!set || !main) return false;
        const auto connection = main();
        set(connection, connection, cfString("SetsCursorInBackground").get(), kCFBooleanTrue);
        return true;
    }

    std::optional<std::int64_t> currentCursorSeed() override {
        static auto* const seed = privateFunction<CurrentCursorSeed>("CGSCurrentCursorSeed");
        return seed ? std::optional<std::int64_t>(seed()) : std::nullopt;
    }

    std::optional<SystemCursor> currentSystemCursor() override {
        const auto seed = currentCursorSeed();
        if (seed && seed == lastSeed_) return last_;
        // Drawing a picture costs more than the rest of a tick; the same seed means the same picture.
        last_ = readNow();
        lastSeed_ = last_ ? seed : std::nullopt;
        return last_;
    }

    std::vector<std::pair<std::string, Bitmap>> standardCursors() override {
        std::vector<std::pair<std::string, Bitmap>> cursors;
        for (const auto& [name, reading] : readStandardCursors())
            if (auto image = drawn(reading)) cursors.emplace_back(name, std::move(*image));
        return cursors;
    }

    std::optional<bool> isScreenWatcherPresent() override {
        static auto* const present = privateFunction<IsScreenWatcherPresent>("CGSIsScreenWatcherPresent");
        return present ? std::optional(present()) : std::nullopt;
    }

  private:
    static std::optional<SystemCursor> readNow() {
        const auto reading = readCurrentSystemCursor();
        if (!reading) return std::nullopt;
        auto image = drawn(*reading);
        if (!image) return std::nullopt;
        return SystemCursor{std::move(*image), reading->hotspot, std::nullopt};
    }

    std::optional<std::int64_t> lastSeed_;
    std::optional<SystemCursor> last_;
};

}  // namespace

std::unique_ptr<Pointer> makeMacPointer() { return std::make_unique<MacPointer>(); }

void showPointerOnMainDisplay() { CGDisplayShowCursor(CGMainDisplayID()); }

}  // namespace pintle
