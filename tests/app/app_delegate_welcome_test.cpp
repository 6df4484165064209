#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/shell_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

struct WelcomeTest : testing::Test, ShellWorld {};

TEST_F(WelcomeTest, TheFirstStartSaysOnceWhereTheProgramLives) {
    welcomes = true;
    make().applicationDidFinishLaunching();
    EXPECT_EQ(shell.transcript.back(), "application notify") << "after the last step of start-up";
    world.scheduler.advance(std::chrono::minutes(1));
    EXPECT_THAT(shell.application.notes,
                ElementsAre(Pair("Pintle lives in the tray", "Click its icon to choose a cursor theme.")));
}

TEST_F(WelcomeTest, ALaterStartSaysNothing) {
    start();
    world.scheduler.advance(std::chrono::minutes(1));
    EXPECT_THAT(shell.application.notes, IsEmpty());
}

TEST_F(WelcomeTest, WaitsForATrayThatComesLate) {
    welcomes = true;
    shell.statusBar.available = false;
    start();
    EXPECT_THAT(shell.application.notes, IsEmpty());
    shell.statusBar.available = true;
    world.scheduler.advance(std::chrono::minutes(1));
    EXPECT_EQ(shell.application.notes.size(), 1u);
}

TEST_F(WelcomeTest, WithoutATrayTheUserIsNotifiedOfThatOnly) {
    welcomes = true;
    shell.statusBar.available = false;
    start();
    world.scheduler.advance(std::chrono::minutes(1));
    ASSERT_EQ(shell.application.notes.size(), 1u);
    EXPECT_EQ(shell.application.notes[0].first, "Pintle found no tray");
}

}  // namespace
}  // namespace pintle
