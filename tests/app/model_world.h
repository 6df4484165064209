// The world with the view model, a recording shell and the update checker, for tests of the models.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/cursor_view_model.h"
#include "platform/fake/fake_shell.h"
#include "settings/update_checker.h"
#include "tests/support/cursor_world.h"

namespace pintle {

struct ModelWorld : CursorWorld {
    static constexpr auto ice = "bibata-modern-ice";
    static constexpr auto banana = "banana";

    struct Shell : UpdateChecker::Mediator {
        void activateIgnoringOtherApps() override {}
        void runAlert(const UpdateAlert&, std::function<void(int)>) override {}
        void openUrl(const std::string&) override {}
    };

    ShellTranscript transcript;
    FakeAlerts alerts{transcript};
    FakeApplication application{transcript};
    Shell updateShell;
    UpdateChecker updates{http, scheduler.mainQueue(), updateShell, Bundle{},
                          UpdateEndpoint{"https://updates.test/version.json", "https://updates.test/get"}};
    FullReset fullReset{{settings, store, themeStore, work, pipeline, applier, changer, log}};
    std::unique_ptr<CursorViewModel> viewModel;

    /// Once the themes that the test wants on disk are there.
    void start() {
        viewModel = std::make_unique<CursorViewModel>(
            CursorViewModel::Dependencies{themes, themeStore, pipeline, downloads, removal, fullReset, store,
                                          scheduler.mainQueue(), scheduler.backgroundTasks(), hints, log});
        scheduler.runUntilIdle();
        log.systemLines.clear();
    }
    void applyNow(const char* id) {
        viewModel->applyTheme(theme(id));
        scheduler.runUntilIdle();
        log.systemLines.clear();
    }
    /// Changes a row as those who download, apply and delete do.
    template <typename Change>
    void changeRow(const char* id, Change change) {
        auto row = theme(id);
        change(row);
        themes.replace(row);
    }
    void publishVersion(const char* version) {
        updates.check({});
        http.answer(http.requests.size() - 1, 200,
                    std::string(R"({"version": ")") + version + R"(", "build": 12})");
        scheduler.runUntilIdle();
    }
};

}  // namespace pintle
