#include "app/root/session_kinds.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "platform/fake/fake_log.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_main_queue.h"

namespace pintle {
namespace {

Environment environmentOf(std::map<std::string, std::string> variables) {
    return [variables = std::move(variables)](const char* name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        if (found == variables.end()) return std::nullopt;
        return found->second;
    };
}

struct SessionKindsTest : testing::Test {
    DesktopSession make(std::map<std::string, std::string> variables) {
        const auto environment = environmentOf(std::move(variables));
        return detectSession(environment).make({*queue, *background, log, environment, {}, [] {}});
    }

    FakeLog log;
    std::unique_ptr<MainQueue> queue = makeQtMainQueue();
    std::unique_ptr<BackgroundTasks> background = makeQtBackgroundTasks();
};

TEST_F(SessionKindsTest, ASessionOfAnXServerIsOneWithoutAWordOfWayland) {
    EXPECT_EQ(detectSession(environmentOf({})).name, "x11");
    EXPECT_EQ(detectSession(environmentOf({{"XDG_SESSION_TYPE", "x11"}, {"WAYLAND_DISPLAY", ""}})).name,
              "x11");
}

TEST_F(SessionKindsTest, ASessionOfWaylandIsNotTheXServersThatItRunsForOldPrograms) {
    EXPECT_NE(detectSession(environmentOf({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}})).name,
              "x11");
    EXPECT_NE(detectSession(environmentOf({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}})).name, "x11");
}

TEST_F(SessionKindsTest, OnAnXServerPointersCanBeChangedAndAnOverlayCanBeDrawn) {
    const auto session = make({});
    EXPECT_TRUE(session.windowServer->provides(WindowServerFunction::registerCursorWithImages));
    EXPECT_TRUE(session.overlay);
    EXPECT_TRUE(session.workspace);
    EXPECT_TRUE(session.appearance);
}

TEST_F(SessionKindsTest, WhereNoPointerCanBeChangedEveryFunctionIsMissingAndThereIsNoOverlay) {
    // What is set there is forgotten, so nobody keeps a setting here.
    ::setenv("GSETTINGS_BACKEND", "memory", 1);
    const auto session = sessionKinds().back().make({*queue, *background, log, environmentOf({}), {}, [] {}});
    for (const auto function :
         {WindowServerFunction::mainConnectionID, WindowServerFunction::registerCursorWithImages,
          WindowServerFunction::coreCursorUnregisterAll, WindowServerFunction::copyRegisteredCursorImages})
        EXPECT_FALSE(session.windowServer->provides(function));
    EXPECT_FALSE(session.overlay);
    EXPECT_TRUE(session.workspace);
    EXPECT_TRUE(session.appearance);
    EXPECT_TRUE(log.has(
        "[Wayland] No setting of this desktop reaches the pointer - cursor registration unavailable"));
}

TEST_F(SessionKindsTest, TheLastKindIsAlwaysDetected) {
    EXPECT_TRUE(sessionKinds().back().detect(environmentOf({})));
    EXPECT_TRUE(sessionKinds().back().detect(environmentOf({{"WAYLAND_DISPLAY", "wayland-0"}})));
}

}  // namespace
}  // namespace pintle
