// What the keeper decides, as functions of what the server shows: which name a shown cursor stands for,
// whether it has to be replaced, and when to stop trying. Pure.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/x11/cursors/core_glyphs.h"
#include "platform/x11/cursors/cursor_picture.h"

namespace pintle::x11 {

/// The pointer as the server shows it at this moment.
struct ShownCursor {
    std::uint32_t serial = 0;
    /// Empty: the cursor has no name.
    std::string name;
    /// Absent when the server does not let the image be read, for instance because its maker is gone.
    std::optional<Fingerprint> fingerprint;
    /// No pixel of it can be seen.
    bool isBlank = false;
    /// Of a cursor without a name that may be a glyph of the core font.
    std::optional<TwoColorShape> shape = std::nullopt;
};

enum class KeeperVerdict {
    /// A theme picture of ours, or nothing that the theme covers.
    leave,
    /// Stands for a name of the theme and shows something else.
    replace,
};

struct KeeperFinding {
    KeeperVerdict verdict = KeeperVerdict::leave;
    /// The table's name for the cursor; with `replace` always set.
    std::string_view name;
};

/// `themePicture` answers what the theme gives a name, `desktopName` the name whose picture in the desktop's
/// own theme, or whose glyph of the core font, a cursor without a name shows (empty for none); its image is
/// known.
KeeperFinding judge(const ShownCursor& shown,
                    const std::function<PicturePtr(std::string_view name)>& themePicture,
                    const std::function<std::string_view(const ShownCursor&)>& desktopName);

/// Gives up against a program that answers each replacement with a new cursor: only so many replacements
/// are allowed in a row while the pointer rests.
class FixLimit {
  public:
    static constexpr int kMostInARow = 5;
    static constexpr std::chrono::seconds kQuiet{2};

    bool allow(int pointerX, int pointerY, std::chrono::nanoseconds now);
    void reset() { inARow_ = 0; }

  private:
    int x_ = 0;
    int y_ = 0;
    int inARow_ = 0;
    std::chrono::nanoseconds last_{0};
};

}  // namespace pintle::x11
