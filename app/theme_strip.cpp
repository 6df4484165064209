#include "app/theme_strip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "apply/cursor_identifiers.h"
#include "apply/registration_plan.h"
#include "apply/theme_loading.h"
#include "base/resample.h"
#include "cursor/cursor_folder.h"
#include "cursor/preloaded_cursor.h"

namespace pintle {
namespace {

constexpr std::array<std::string_view, 6> shown = {kArrowIdentifier,      "com.apple.coregraphics.IBeam",
                                                   "com.apple.cursor.13", "com.apple.coregraphics.Wait",
                                                   "com.apple.cursor.28", "com.apple.cursor.3"};
constexpr double scale = 1;

std::span<const std::string_view> namesOf(std::string_view identifier) {
    const auto rows = cursorIdentifiers();
    const auto row = std::ranges::find(rows, identifier, &CursorIdentifierRow::identifier);
    return row == rows.end() ? std::span<const std::string_view>() : row->candidates();
}

std::optional<Bitmap> bounded(Resampler& resampler, const Bitmap& frame) {
    const int longest = std::max(frame.width(), frame.height());
    if (longest <= kLongestStripSide) return frame;
    const auto side = [longest](int whole) {
        return std::max(1, static_cast<int>(std::lround(double(whole) * kLongestStripSide / longest)));
    };
    const int width = side(frame.width());
    const int height = side(frame.height());
    return Bitmap::create(width, height, [&](std::span<std::uint8_t> target) {
        resampler.draw(frame.bytes(), frame.width(), frame.height(), target, width, height);
    });
}

std::optional<StripCursor> cursorOf(CursorFolder& folder, std::span<const std::string_view> names) {
    for (const auto name : names) {
        const auto images = folder.read(std::string(name), kMaxNominalSize);
        if (!images) continue;
        const auto cursor = makePreloaded(std::string(name), images->images, scale);
        if (!cursor) continue;
        StripCursor strip;
        Resampler resampler;
        const bool moves = cursor->frames.size() > 1;
        for (const auto& frame : moves ? framesToSend(cursor->frames) : std::vector{cursor->image})
            if (auto drawn = bounded(resampler, frame)) strip.frames.push_back(*std::move(drawn));
        if (strip.frames.empty()) continue;
        if (strip.frames.size() > 1) strip.frameDuration = secondsToSend(*cursor);
        return strip;
    }
    return std::nullopt;
}

}  // namespace

std::vector<StripCursor> readThemeStrip(const std::filesystem::path& cursorsFolder) {
    CursorFolder folder(cursorsFolder);
    std::vector<StripCursor> strip;
    for (const auto identifier : shown)
        if (auto cursor = cursorOf(folder, namesOf(identifier))) strip.push_back(*std::move(cursor));
    return strip;
}

}  // namespace pintle
