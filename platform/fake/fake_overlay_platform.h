// The fakes behind the overlay: displays, surfaces, windows, the pointer and accessibility.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/accessibility.h"
#include "platform/displays.h"
#include "platform/overlay_surfaces.h"
#include "platform/pointer.h"
#include "platform/window_list.h"

namespace pintle {

class FakeDisplays : public Displays {
  public:
    const std::vector<Screen>& screens() override { return attached; }
    DisplayId mainDisplayID() override { return mainDisplay; }
    Point mouseLocation() override {
        if (const auto meanwhile = std::exchange(whileMouseIsAsked, nullptr)) meanwhile();
        return mouse;
    }

    std::vector<Screen> attached = {{{{0, 0}, {1280, 800}}, 1}};
    DisplayId mainDisplay = 1;
    Point mouse{100, 100};
    /// Called once, before the mouse is answered.
    std::function<void()> whileMouseIsAsked;
};

class FakeOverlaySurfaces : public OverlaySurfaces {
  public:
    /// What one surface shows, and how many calls set it; kept after the surface is closed.
    struct State {
        DisplayId display = 0;
        Size size;
        std::optional<Bitmap> image;
        Point origin;
        double alpha = 0;
        int alphaWrites = 0;
        int ordersFront = 0;
        bool open = true;
        /// The desktop took it off the screen.
        bool takenAway = false;
    };

    std::unique_ptr<OverlaySurface> create(DisplayId display, Size size) override {
        if (creationFails) return nullptr;
        auto state = std::make_shared<State>();
        state->display = display;
        state->size = size;
        made.push_back(state);
        return std::make_unique<Surface>(state);
    }

    /// The open surface of a display; null when it has none.
    std::shared_ptr<State> openOn(DisplayId display) const {
        const auto found = std::find_if(made.begin(), made.end(), [&](const auto& state) {
            return state->open && state->display == display;
        });
        return found == made.end() ? nullptr : *found;
    }
    int visible() const {
        return static_cast<int>(std::count_if(made.begin(), made.end(), [](const auto& state) {
            return state->open && !state->takenAway && state->alpha > 0;
        }));
    }

    bool creationFails = false;
    std::vector<std::shared_ptr<State>> made;

  private:
    class Surface : public OverlaySurface {
      public:
        explicit Surface(std::shared_ptr<State> state) : state_(std::move(state)) {}
        ~Surface() override { state_->open = false; }
        bool isVisible() const override { return state_->ordersFront > 0 && !state_->takenAway; }
        void setSize(Size size) override { state_->size = size; }
        void setImage(const std::optional<Bitmap>& image) override { state_->image = image; }
        void setOrigin(Point origin) override { state_->origin = origin; }
        void setAlpha(double alpha) override {
            state_->alpha = alpha;
            ++state_->alphaWrites;
        }
        void orderFront() override { ++state_->ordersFront; }

      private:
        std::shared_ptr<State> state_;
    };
};

class FakeWindowList : public WindowList {
  public:
    std::vector<WindowInfo> onScreenWindows() override {
        ++questions;
        return windows;
    }
    std::vector<WindowInfo> windows;
    int questions = 0;
};

class FakePointer : public Pointer {
  public:
    struct Call {
        bool show = false;
        DisplayId display = 0;
        friend bool operator==(const Call&, const Call&) = default;
    };

    void show(DisplayId display) override { calls.push_back({true, display}); }
    void hide(DisplayId display) override { calls.push_back({false, display}); }
    bool setsCursorInBackground() override {
        ++backgroundRequests;
        return !backgroundMissing;
    }
    std::optional<std::int64_t> currentCursorSeed() override { return seed; }
    std::optional<SystemCursor> currentSystemCursor() override {
        ++cursorQuestions;
        auto read = current;
        if (const auto meanwhile = std::exchange(whileCursorIsRead, nullptr)) meanwhile();
        return read;
    }
    std::vector<std::pair<std::string, Bitmap>> standardCursors() override { return standard; }
    std::optional<bool> isScreenWatcherPresent() override {
        ++watcherQuestions;
        return watched;
    }

    std::vector<Call> calls;
    int backgroundRequests = 0;
    bool backgroundMissing = false;
    std::optional<std::int64_t> seed = 1;
    std::optional<SystemCursor> current;
    /// Called once, when a reading has its picture.
    std::function<void()> whileCursorIsRead;
    int cursorQuestions = 0;
    std::vector<std::pair<std::string, Bitmap>> standard;
    std::optional<bool> watched = false;
    int watcherQuestions = 0;
};

class FakeAccessibility : public Accessibility {
  public:
    bool isProcessTrusted() override { return trusted; }
    std::optional<std::string> roleAt(TopLeftPoint point) override {
        asked.push_back(point);
        return role;
    }
    bool trusted = false;
    std::optional<std::string> role;
    std::vector<TopLeftPoint> asked;
};

}  // namespace pintle
