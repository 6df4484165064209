// What the probe puts back after it has tried the arrow.
#include "tools/mac_probe/kept_registrations.h"

#include "platform/fake/fake_window_server.h"
#include "tests/mac/fake/fake_test.h"

namespace pintle {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

RegisteredCursor shown(const char* identifier, int seed) {
    return {identifier, {picture(8, 8, seed)}, {8, 8}, {1, 2}, 1, 0};
}

TEST(KeptRegistrations, WhatIsShownDifferentlyAfterwardsComesBackAndNothingElse) {
    FakeWindowServer server;
    server.desktopCursors = {
        {"arrow", shown("arrow", 1)}, {"beam", shown("beam", 2)}, {"hand", shown("hand", 3)}};
    KeptRegistrations kept(server, {"arrow", "beam", "hand", "unknown"});
    // All of it is withdrawn: the desktop's own arrow shows, its beam is the same, and the hand cannot be
    // read.
    server.desktopCursors["arrow"] = shown("arrow", 9);
    server.desktopCursors.erase("hand");
    EXPECT_EQ(kept.restore(), 2);
    EXPECT_THAT(server.registrations, ElementsAre(shown("arrow", 1), shown("hand", 3)));
}

TEST(KeptRegistrations, WhereNothingWasWithdrawnNothingIsRegistered) {
    FakeWindowServer server;
    server.desktopCursors = {{"arrow", shown("arrow", 1)}};
    EXPECT_EQ(KeptRegistrations(server, {"arrow"}).restore(), 0);
    EXPECT_THAT(server.registrations, IsEmpty());
}

TEST(KeptRegistrations, AnEntryThatTheServerRefusesOrSkipsIsNotCounted) {
    FakeWindowServer server;
    server.desktopCursors = {
        {"arrow", shown("arrow", 1)}, {"beam", shown("beam", 2)}, {"hand", shown("hand", 3)}};
    KeptRegistrations kept(server, {"arrow", "beam", "hand"});
    server.desktopCursors.clear();
    server.registerErrors["arrow"] = 1000;
    server.unusable = {"beam"};
    EXPECT_EQ(kept.restore(), 1);
}

TEST(KeptRegistrations, WithoutTheFunctionsNothingIsDone) {
    for (const auto missing :
         {WindowServerFunction::mainConnectionID, WindowServerFunction::copyRegisteredCursorImages,
          WindowServerFunction::registerCursorWithImages}) {
        FakeWindowServer server;
        server.desktopCursors = {{"arrow", shown("arrow", 1)}};
        server.missing = {missing};
        KeptRegistrations kept(server, {"arrow"});
        server.desktopCursors.clear();
        EXPECT_EQ(kept.restore(), 0);
        EXPECT_THAT(server.registrations, IsEmpty());
    }
}

}  // namespace
}  // namespace pintle
