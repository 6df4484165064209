// The fakes around one overlay manager.
#pragma once

#include <memory>
#include <string>

#include "apply/cursor_overlay_manager.h"
#include "platform/fake/fake_overlay_platform.h"
#include "tests/support/cursor_sets.h"
#include "tests/support/test_world.h"

namespace pintle {

struct OverlayWorld : TestWorld {
    FakeDisplays displays;
    FakeOverlaySurfaces surfaces;
    FakeWindowList windowList;
    FakePointer pointer;
    FakeAccessibility accessibility;
    DesktopNames names;
    CursorSettings settings{store, notifications};
    std::unique_ptr<CursorOverlayManager> manager;

    CursorOverlayManager& make() {
        manager = std::make_unique<CursorOverlayManager>(CursorOverlayManager::Desktop{
            scheduler.mainQueue(), log, displays, surfaces, windowList, workspace, pointer, hardwareCursor,
            accessibility, settings, names});
        return *manager;
    }
    /// A running overlay with the given cursors of 32 × 32 points.
    CursorOverlayManager& run(std::vector<PreloadedCursor> cursors) {
        make();
        manager->loadCursorsFromPreloaded(cursors, 1.0);
        manager->start();
        return *manager;
    }
    void tick(int times = 1) {
        for (int i = 0; i < times; ++i) scheduler.advance(std::chrono::nanoseconds(8'333'333));
    }
    /// What the desktop would show now.
    void desktopShows(std::string name, std::uint8_t value = 50) {
        pointer.current = SystemCursor{plainBitmap(24, 24, value), {2, 2}, std::move(name)};
        pointer.seed = pointer.seed.value_or(0) + 1;
    }
    bool pointerIsHidden() const {
        int level = 0;
        for (const auto& call : pointer.calls) level = call.show ? std::max(0, level - 1) : level + 1;
        return level > 0;
    }
    const FakeHardwareCursor::FakeObject* inProcess() const { return hardwareCursor.current(); }
};

}  // namespace pintle
