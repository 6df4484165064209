// The desktop's part of the shell, recording: status bar, popover, windows, alerts, monitors and application
// write what they are asked into one transcript, in order. A test plays the user through the fakes.
#pragma once

#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/signal.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/event_monitors.h"
#include "platform/fake/fake_log.h"
#include "platform/popover.h"
#include "platform/status_item.h"
#include "platform/windows.h"

namespace pintle {

/// One line for each call, in the order of the calls: "object operation arguments".
using ShellTranscript = std::vector<std::string>;

inline std::string inWords(const Rect& rect) {
    return fmt::format("{},{} {}x{}", rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

/// A log that writes into the transcript too: "log: line" and "out: line".
class TranscriptLog : public FakeLog {
  public:
    explicit TranscriptLog(ShellTranscript& transcript) : transcript_(transcript) {}
    void system(std::string_view line) override {
        FakeLog::system(line);
        transcript_.push_back(fmt::format("log: {}", line));
    }
    void standardOutput(std::string_view line) override {
        FakeLog::standardOutput(line);
        transcript_.push_back(fmt::format("out: {}", line));
    }

  private:
    ShellTranscript& transcript_;
};

class FakeStatusBar : public StatusBar {
  public:
    explicit FakeStatusBar(ShellTranscript& transcript) : transcript_(transcript) {}

    std::unique_ptr<StatusItem> makeStatusItem(double length) override {
        transcript_.push_back(fmt::format("statusBar makeStatusItem {}", length));
        return std::make_unique<Item>(*this);
    }
    bool isAvailable() const override { return available; }

    /// The user clicks the item: its menu opens when one is attached, else the action runs.
    void click(std::optional<StatusItemEvent> event) {
        if (attached) {
            openMenu();
            return;
        }
        if (action) action(event);
    }
    void activate() {
        if (activation) activation();
    }

    bool available = true;
    bool button = true;
    std::optional<Rect> frame;
    /// The menus that were opened by a click, by program or not.
    std::vector<Menu> opened;
    /// What the item holds now.
    std::optional<StatusItemImage> image;
    StatusItem::Action action;
    std::function<void()> activation;
    std::function<Menu()> hostMenu;
    std::optional<Menu> attached;
    int items = 0;

  private:
    class Item : public StatusItem {
      public:
        explicit Item(FakeStatusBar& bar) : bar_(bar) { ++bar_.items; }
        ~Item() override {
            bar_.action = nullptr;
            bar_.activation = nullptr;
            bar_.hostMenu = nullptr;
            --bar_.items;
        }
        std::string description() const override { return "<StatusItem: fake>"; }
        bool hasButton() const override { return bar_.button; }
        void setImage(const StatusItemImage& given) override {
            bar_.say(fmt::format("setImage {} \"{}\" template={}", given.symbol,
                                 given.accessibilityDescription, given.isTemplate));
            bar_.image = given;
        }
        void setAction(Action given) override {
            bar_.say("setAction");
            bar_.action = std::move(given);
        }
        void setActivation(std::function<void()> activated) override {
            bar_.say("setActivation");
            bar_.activation = std::move(activated);
        }
        std::optional<Rect> buttonFrame() const override { return bar_.frame; }
        void attachMenu(const Menu& menu) override {
            bar_.say("attachMenu");
            bar_.attached = menu;
        }
        void performClick() override {
            bar_.say("performClick");
            bar_.click(std::nullopt);
        }
        void detachMenu() override {
            bar_.say("detachMenu");
            bar_.attached.reset();
        }
        void setHostMenu(std::function<Menu()> build) override {
            bar_.say("setHostMenu");
            bar_.hostMenu = std::move(build);
        }

      private:
        FakeStatusBar& bar_;
    };
    void say(const std::string& line) { transcript_.push_back("statusItem " + line); }
    void openMenu() { opened.push_back(*attached); }

    ShellTranscript& transcript_;
};

class FakePopovers : public Popovers {
  public:
    explicit FakePopovers(ShellTranscript& transcript) : transcript_(transcript) {}

    std::unique_ptr<Popover> makePopover(const PopoverSpec& spec) override {
        transcript_.push_back(fmt::format("popovers makePopover {}x{} transient={} animates={}",
                                          spec.contentSize.width, spec.contentSize.height, spec.transient,
                                          spec.animates));
        return std::make_unique<Panel>(*this);
    }

    bool shown = false;
    /// The frame of the last show().
    std::optional<Rect> frame;

  private:
    class Panel : public Popover {
      public:
        explicit Panel(FakePopovers& popovers) : popovers_(popovers) {}
        ~Panel() override { popovers_.shown = false; }
        bool isShown() const override { return popovers_.shown; }
        void show(const StatusItem&, const Rect& where) override {
            popovers_.transcript_.push_back("popover show " + inWords(where));
            popovers_.shown = true;
            popovers_.frame = where;
        }
        void close() override {
            popovers_.transcript_.emplace_back("popover close");
            popovers_.shown = false;
        }

      private:
        FakePopovers& popovers_;
    };
    ShellTranscript& transcript_;
};

class FakeWindows : public Windows {
  public:
    struct State {
        WindowSpec spec;
        Rect frame;
        bool visible = false;
    };

    explicit FakeWindows(ShellTranscript& transcript) : transcript_(transcript) {}

    std::unique_ptr<ShellWindow> makeWindow(const WindowSpec& spec) override {
        transcript_.push_back(fmt::format("windows makeWindow \"{}\"", spec.title));
        if (fails) return nullptr;
        made.push_back(std::make_shared<State>(State{spec, {{}, spec.contentSize}, false}));
        return std::make_unique<Window>(*this, made.back());
    }
    std::vector<ScreenArea> screens() const override { return areas; }
    Point mouseLocation() const override { return mouse; }

    /// Windows cannot be made.
    bool fails = false;
    std::vector<ScreenArea> areas{{{{0, 0}, {1920, 1080}}, {{0, 0}, {1920, 1050}}}};
    Point mouse;
    /// Every window that was made, in order; they stay here after their end.
    std::vector<std::shared_ptr<State>> made;
    /// The one with the keyboard; null for none of them.
    std::shared_ptr<State> key;

  private:
    class Window : public ShellWindow {
      public:
        Window(FakeWindows& windows, std::shared_ptr<State> state)
            : windows_(windows), state_(std::move(state)) {}
        bool isVisible() const override { return state_->visible; }
        bool isKey() const override { return windows_.key == state_; }
        Rect frame() const override { return state_->frame; }
        void setFrame(const Rect& frame) override {
            say("setFrame " + inWords(frame));
            state_->frame = frame;
        }
        void makeKeyAndOrderFront() override {
            say("makeKeyAndOrderFront");
            state_->visible = true;
            windows_.key = state_;
        }
        void close() override {
            say("close");
            state_->visible = false;
            if (windows_.key == state_) windows_.key = nullptr;
        }

      private:
        void say(const std::string& line) {
            windows_.transcript_.push_back(fmt::format("window \"{}\" {}", state_->spec.title, line));
        }
        FakeWindows& windows_;
        std::shared_ptr<State> state_;
    };
    ShellTranscript& transcript_;
};

class FakeAlerts : public Alerts {
  public:
    explicit FakeAlerts(ShellTranscript& transcript) : transcript_(transcript) {}

    void runModal(const Alert& alert, std::function<void(int button)> answered) override {
        transcript_.push_back(fmt::format("alerts runModal \"{}\"", alert.message));
        shown.push_back(alert);
        answers_.push_back(std::move(answered));
    }
    /// The user picks a button of an alert, both counted from 0.
    void answer(std::size_t alert, int button) {
        if (const auto answered = std::exchange(answers_.at(alert), nullptr)) answered(button);
    }

    std::vector<Alert> shown;

  private:
    std::vector<std::function<void(int)>> answers_;
    ShellTranscript& transcript_;
};

class FakeEventMonitors : public EventMonitors {
  public:
    explicit FakeEventMonitors(ShellTranscript& transcript) : transcript_(transcript) {}

    Subscription addGlobalMonitor(EventMask mask,
                                  std::function<void(const GlobalMouseDown&)> handler) override {
        transcript_.push_back(fmt::format("eventMonitors addGlobalMonitor {}", mask));
        return kept("global", presses_.observe([mask, handler = std::move(handler)](const auto& press) {
            const bool left = press.button == GlobalMouseDown::Button::left;
            if (mask & (left ? kLeftMouseDownMask : kRightMouseDownMask)) handler(press);
        }));
    }
    Subscription addLocalMonitor(EventMask mask, std::function<bool(const LocalKeyDown&)> handler) override {
        transcript_.push_back(fmt::format("eventMonitors addLocalMonitor {}", mask));
        return kept("local",
                    keys_.observe([mask, handler = std::move(handler)](const auto& key, bool& taken) {
                        if (!taken && (mask & kKeyDownMask)) taken = handler(key);
                    }));
    }

    /// A press outside of the program's own panels; its number.
    std::uint64_t press(GlobalMouseDown::Button button = GlobalMouseDown::Button::left) {
        presses_.emit({button, ++count_});
        return count_;
    }
    /// A key in a window of the program; whether it was swallowed.
    bool key(const std::string& characters, bool commandModifier) {
        bool taken = false;
        keys_.emit({commandModifier, characters}, taken);
        return taken;
    }

  private:
    Subscription kept(const char* which, Subscription observer) {
        return Subscription([this, which, held = std::make_shared<Subscription>(std::move(observer))] {
            held->end();
            transcript_.push_back(fmt::format("eventMonitors remove {}", which));
        });
    }
    Signal<const GlobalMouseDown&> presses_;
    Signal<const LocalKeyDown&, bool&> keys_;
    std::uint64_t count_ = 0;
    ShellTranscript& transcript_;
};

class FakeApplication : public Application {
  public:
    explicit FakeApplication(ShellTranscript& transcript) : transcript_(transcript) {}

    void setActivationPolicy(ActivationPolicy policy) override {
        static constexpr const char* kNames[] = {"regular", "accessory", "prohibited"};
        transcript_.push_back(
            fmt::format("application setActivationPolicy {}", kNames[static_cast<int>(policy)]));
    }
    void activateIgnoringOtherApps() override {
        transcript_.emplace_back("application activateIgnoringOtherApps");
    }
    void openUrl(const std::string& url) override { transcript_.push_back("application openUrl " + url); }
    void notify(const std::string& title, const std::string& text) override {
        transcript_.push_back("application notify");
        notes.emplace_back(title, text);
    }
    void terminate() override {
        transcript_.emplace_back("application terminate");
        ++terminations;
    }
    void setWillTerminate(std::function<void()> handler) override { willTerminate_ = std::move(handler); }

    /// The orderly end, asked for by terminate() or by the desktop session.
    void end() {
        if (const auto handler = std::exchange(willTerminate_, nullptr)) handler();
    }

    int terminations = 0;
    /// Title and text.
    std::vector<std::pair<std::string, std::string>> notes;

  private:
    std::function<void()> willTerminate_;
    ShellTranscript& transcript_;
};

/// All of them on one transcript.
struct FakeShell {
    ShellTranscript transcript;
    TranscriptLog log{transcript};
    FakeStatusBar statusBar{transcript};
    FakePopovers popovers{transcript};
    FakeWindows windows{transcript};
    FakeAlerts alerts{transcript};
    FakeEventMonitors eventMonitors{transcript};
    FakeApplication application{transcript};
};

}  // namespace pintle
