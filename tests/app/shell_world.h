// The delegate with a whole composition on the fakes, and one transcript of what it asks of the desktop, of
// the overlay and of other copies, among its log lines.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_delegate.h"
#include "app/update_answers.h"
#include "platform/fake/fake_login_item_service.h"
#include "platform/fake/fake_shell.h"
#include "platform/fake/fake_workspace.h"
#include "settings/launch_agent_file.h"
#include "settings/notification_names.h"
#include "tests/support/fake_overlay.h"
#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {

class TranscriptOverlay : public FakeOverlay {
  public:
    explicit TranscriptOverlay(ShellTranscript& transcript) : transcript_(transcript) {}
    void deactivate() override {
        transcript_.emplace_back("overlay deactivate");
        FakeOverlay::deactivate();
    }
    void showSystemCursorGuaranteed() override {
        transcript_.emplace_back("overlay showSystemCursorGuaranteed");
        FakeOverlay::showSystemCursorGuaranteed();
    }
    void destroyWindows() override {
        transcript_.emplace_back("overlay destroyWindows");
        FakeOverlay::destroyWindows();
    }

  private:
    ShellTranscript& transcript_;
};

class TranscriptBus : public FakeInstanceBus {
  public:
    explicit TranscriptBus(ShellTranscript& transcript) : transcript_(transcript) {}
    bool anotherCopyRuns() override {
        transcript_.emplace_back("bus anotherCopyRuns");
        return FakeInstanceBus::anotherCopyRuns();
    }
    void post(const std::string& name) override {
        transcript_.push_back("bus post " + name);
        FakeInstanceBus::post(name);
    }
    Subscription observe(const std::string& name, std::function<void()> received) override {
        transcript_.push_back("bus observe " + name);
        return FakeInstanceBus::observe(name, std::move(received));
    }

  private:
    ShellTranscript& transcript_;
};

struct ShellWorld {
    static constexpr auto kIce = "bibata-modern-ice";
    static constexpr auto kArrow = "com.apple.coregraphics.Arrow";

    FakeShell shell;
    TestWorld world;
    TranscriptBus bus{shell.transcript};
    FakeWorkspace workspace;
    FakeLoginItemService loginItems;
    std::unique_ptr<LoginAgent> agent = makeLaunchAgentFile(world.directories.home, world.propertyLists);
    UpdateAnswers answers{shell.application, shell.alerts};
    Bundle bundle;
    PlacementPolicy policy = PlacementPolicy::asComputed;
    TranscriptOverlay* overlay = nullptr;
    std::unique_ptr<Composition> composition;
    std::unique_ptr<AppDelegate> delegate;

    ShellWorld() {
        bundle.shortVersion = "1.1.0";
        bundle.build = "11";
        shell.statusBar.frame = Rect{{1000, 1056}, {24, 24}};
    }

    EarlyPlatform early() { return {shell.log, world.store, bus}; }

    ShellPlatform makeDesktop() {
        shell.transcript.emplace_back("makeDesktop");
        auto made = std::make_unique<TranscriptOverlay>(shell.transcript);
        overlay = made.get();
        composition->build(Platform{.mainQueue = world.scheduler.mainQueue(),
                                    .background = world.scheduler.backgroundTasks(),
                                    .windowServer = world.windowServer,
                                    .hardwareCursor = world.hardwareCursor,
                                    .images = world.images,
                                    .propertyLists = world.propertyLists,
                                    .hints = world.hints,
                                    .workspace = workspace,
                                    .names = {},
                                    .http = world.http,
                                    .processes = world.processes,
                                    .directories = world.directories,
                                    .bundle = bundle,
                                    .updateAnswers = answers,
                                    .mirror = {}},
                           std::move(made));
        return {shell.statusBar, shell.popovers, shell.windows, shell.eventMonitors};
    }

    bool welcomes = false;

    /// The delegate before its start-up.
    AppDelegate& make() {
        composition = std::make_unique<Composition>(early());
        delegate = std::make_unique<AppDelegate>(AppDelegate::Dependencies{
            .composition = *composition,
            .early = early(),
            .application = shell.application,
            .mainQueue = world.scheduler.mainQueue(),
            .bundle = bundle,
            .login = {loginItems, *agent, LoginAgentRole::fallback, {"/opt/Pintle", "/opt/Pintle"}},
            .placement = policy,
            .welcomes = welcomes,
            .installSignalRecovery = [this] { shell.transcript.emplace_back("installSignalRecovery"); },
            .makeDesktop = [this] { return makeDesktop(); },
        });
        return *delegate;
    }
    /// The running program, with nothing of its start-up in the transcript any more.
    AppDelegate& start() {
        make().applicationDidFinishLaunching();
        world.scheduler.runUntilIdle();
        forget();
        return *delegate;
    }
    void forget() { shell.transcript.clear(); }

    void writeTheme() const {
        writeFile(world.themesDirectory() / kIce / "cursors" / "left_ptr",
                  XCursorBuilder().image({.size = 32}).bytes());
    }
    /// The running program with a theme registered.
    AppDelegate& startWithTheme() {
        writeTheme();
        world.store.set("currentThemeId", kIce);
        return start();
    }
    bool isThemed() const { return world.windowServer.registered.contains(kArrow); }

    void leftClick(std::optional<std::uint64_t> press = std::nullopt) {
        shell.statusBar.click(StatusItemEvent{StatusItemEventType::leftMouseUp, press});
    }
    void rightClick(std::optional<std::uint64_t> press = std::nullopt) {
        shell.statusBar.click(StatusItemEvent{StatusItemEventType::rightMouseUp, press});
    }
    /// A desktop that draws its own panel and reports no places in it.
    void hideFrame() {
        policy = PlacementPolicy::insideWorkArea;
        shell.statusBar.frame.reset();
    }

    std::vector<std::string> startingWith(const std::string& prefix) const {
        std::vector<std::string> lines;
        for (const auto& line : shell.transcript)
            if (line.starts_with(prefix)) lines.push_back(line);
        return lines;
    }
};

}  // namespace pintle
