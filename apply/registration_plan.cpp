#include "apply/registration_plan.h"

#include <array>
#include <cstddef>
#include <map>
#include <string_view>

#include "apply/cursor_identifiers.h"
#include "apply/cursor_strip.h"

namespace pintle {
namespace {

constexpr double kShortestFrame = 0.02;
constexpr std::array<std::string_view, 3> kArrowNames = {"left_ptr", "default", "arrow"};

using CursorsByName = std::map<std::string_view, const PreloadedCursor*>;

struct Picture {
    Bitmap image;
    std::uint64_t frameCount = 1;
    double duration = 0;
};

Picture pictureOf(const PreloadedCursor& cursor) {
    if (cursor.frames.size() <= 1) return {cursor.image};
    // Thinning keeps the seconds per frame: a long animation plays faster rather than being stretched.
    const auto frames = framesToSend(cursor.frames);
    return {composeStrip(frames).value_or(cursor.image), frames.size(), secondsToSend(cursor)};
}

CursorsByName namesOf(const std::vector<PreloadedCursor>& cursors) {
    CursorsByName byName;
    for (const auto& cursor : cursors) byName[cursor.name] = &cursor;
    return byName;
}

const PreloadedCursor* firstOf(const CursorsByName& cursors, std::span<const std::string_view> names) {
    for (const auto name : names)
        if (const auto found = cursors.find(name); found != cursors.end()) return found->second;
    return nullptr;
}

}  // namespace

RegisteredCursor RegisteredImage::toRegisteredCursor() const {
    return {identifier, {image}, size, hotspot, frameCount, duration, pixelsPerPoint};
}

std::vector<Bitmap> framesToSend(const FrameList& frames) {
    std::vector<Bitmap> kept;
    for (const auto i : sentFrames(frames.size())) kept.push_back(frames[i]);
    return kept;
}

double secondsToSend(const PreloadedCursor& cursor) {
    return cursor.frameDuration > kShortestFrame ? cursor.frameDuration : kShortestFrame;
}

const PreloadedCursor* arrowOf(const std::vector<PreloadedCursor>& cursors) {
    return firstOf(namesOf(cursors), kArrowNames);
}

std::optional<RegistrationPlan> planRegistration(const std::vector<PreloadedCursor>& cursors) {
    const auto byName = namesOf(cursors);
    const auto* arrow = firstOf(byName, kArrowNames);
    if (!arrow) return std::nullopt;

    RegistrationPlan plan{arrow->size(), {}};
    // One X11 cursor may feed several identifiers; its strip is composed once and shared.
    std::map<const PreloadedCursor*, Picture> pictures;
    for (const auto& row : cursorIdentifiers()) {
        const auto* cursor = firstOf(byName, row.candidates());
        if (!cursor) continue;
        auto picture = pictures.find(cursor);
        if (picture == pictures.end()) picture = pictures.emplace(cursor, pictureOf(*cursor)).first;
        const auto& [image, frameCount, duration] = picture->second;
        plan.images.push_back({std::string(row.identifier), image, cursor->size(), cursor->hotspot,
                               frameCount, duration, cursor->pixelsPerPoint});
    }
    return plan;
}

}  // namespace pintle
