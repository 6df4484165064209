// An overlay that records what it was asked, in order, and keeps the active mark as a real one does.
#pragma once

#include <string>
#include <vector>

#include "apply/cursor_overlay.h"

namespace pintle {

class FakeOverlay : public CursorOverlay {
  public:
    bool isActive() const override { return active; }
    void start() override {
        calls.emplace_back("start");
        active = true;
    }
    void loadCursorsFromPreloaded(const std::vector<PreloadedCursor>& cursors, double atScale) override {
        calls.emplace_back("loadCursorsFromPreloaded");
        loaded = cursors;
        scale = atScale;
    }
    void updateOverlayWindows() override { calls.emplace_back("updateOverlayWindows"); }
    void deactivate() override {
        calls.emplace_back("deactivate");
        active = false;
    }
    void showSystemCursorGuaranteed() override {
        calls.emplace_back("showSystemCursorGuaranteed");
        active = false;
    }
    void destroyWindows() override { calls.emplace_back("destroyWindows"); }

    bool active = false;
    std::vector<std::string> calls;
    std::vector<PreloadedCursor> loaded;
    double scale = 0;
};

}  // namespace pintle
