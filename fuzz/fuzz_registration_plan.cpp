// The input describes a set of cursors with any names, sizes and frames. What is registered follows the table
// of identifiers, whatever the set.
#include <array>
#include <vector>

#include "apply/cursor_identifiers.h"
#include "apply/registration_plan.h"
#include "fuzz/choices.h"
#include "tests/support/cursor_sets.h"

namespace pintle {
namespace {

std::string nameFrom(Choices& choices) {
    constexpr std::array<std::string_view, 3> kArrows = {"left_ptr", "default", "arrow"};
    const auto kind = choices.byte();
    if (kind % 8 == 0) return choices.text();
    if (kind % 8 == 1) return std::string(kArrows[choices.below(kArrows.size())]);
    const auto rows = cursorIdentifiers();
    const auto candidates = rows[choices.below(rows.size())].candidates();
    return candidates.empty() ? std::string() : std::string(candidates[choices.below(candidates.size())]);
}

PreloadedCursor cursorFrom(Choices& choices) {
    const auto side = [&] { return static_cast<int>(1 + choices.below(5)); };
    const int width = side();
    const int height = side();
    PreloadedCursor cursor{nameFrom(choices), plainBitmap(width, height, choices.byte()), {1, 2}, {}, 0};
    const auto frames = choices.below(64);
    const bool sameSize = choices.flag();
    for (std::size_t i = 0; i < frames; ++i) {
        const bool usual = sameSize || i == 0;
        const int frameWidth = usual ? width : side();
        const int frameHeight = usual ? height : side();
        cursor.frames.push_back(plainBitmap(frameWidth, frameHeight, static_cast<std::uint8_t>(i)));
    }
    cursor.frameDuration = static_cast<double>(choices.byte()) / 1000;
    return cursor;
}

/// The last one of a name counts.
const PreloadedCursor* find(const std::vector<PreloadedCursor>& cursors, std::string_view name) {
    for (auto each = cursors.rbegin(); each != cursors.rend(); ++each)
        if (each->name == name) return &*each;
    return nullptr;
}

void check(const RegisteredImage& image, const PreloadedCursor& cursor) {
    require(image.size == cursor.image.size() && image.hotspot == cursor.hotspot);
    require(image.image.width() == cursor.image.width());
    if (cursor.frames.size() <= 1) {
        require(image.frameCount == 1 && image.duration == 0 && image.image == cursor.image);
        return;
    }
    const auto sent = std::min<std::size_t>(cursor.frames.size(), 24);
    require(image.frameCount == sent);
    require(image.image.height() == cursor.image.height() * static_cast<int>(sent));
    require(image.duration == std::max(cursor.frameDuration, 0.02));
    // Frame i of the strip is the animation's frame at that part of the whole.
    for (std::size_t i = 0; i < sent; ++i) {
        const auto& frame = cursor.frames[i * cursor.frames.size() / sent];
        if (frame.size() != cursor.image.size()) continue;
        const auto strip = image.image.bytes().subspan(i * frame.bytes().size(), frame.bytes().size());
        require(std::ranges::equal(strip, frame.bytes()));
    }
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    Choices choices({bytes, count});
    std::vector<PreloadedCursor> cursors;
    while (!choices.isEmpty() && cursors.size() < 48) cursors.push_back(cursorFrom(choices));

    const auto plan = planRegistration(cursors);
    const PreloadedCursor* arrow = nullptr;
    for (const auto name : {"left_ptr", "default", "arrow"})
        if (!arrow) arrow = find(cursors, name);
    require(plan.has_value() == (arrow != nullptr));
    if (!plan) return 0;
    require(plan->arrowSize == arrow->image.size());

    auto next = plan->images.begin();
    for (const auto& row : cursorIdentifiers()) {
        const PreloadedCursor* cursor = nullptr;
        for (const auto name : row.candidates())
            if (!cursor) cursor = find(cursors, name);
        if (!cursor) continue;
        require(next != plan->images.end() && next->identifier == row.identifier);
        check(*next++, *cursor);
    }
    require(next == plan->images.end());
    return 0;
}
