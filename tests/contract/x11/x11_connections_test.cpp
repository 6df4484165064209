// The registration's life beyond the process and its end with the server: the retained connection, its
// predecessor, connections that are closed, servers that die, sessions without a usable server.
#include <sys/socket.h>

#include "tests/contract/x11/x11_fixture.h"

namespace pintle {
namespace {

const std::string kMark = "_PINTLE_REGISTRATION";

class X11Connections : public X11Test {
  protected:
    void startOverAWindow(const std::string& name) {
        const auto window = client->window(0, 0);
        client->define(window, client->cursor(name));
        client->warp(50, 50);
        start();
    }
    XTestClient::Id marked() { return client->windowProperty(client->root(), kMark); }
    bool provides() { return server->provides(WindowServerFunction::registerCursorWithImages); }
};

TEST_F(X11Connections, ARegistrationOutlivesItsProcessAndStaysReadable) {
    startOverAWindow("left_ptr");
    apply(10);
    stop();
    EXPECT_EQ(shownPixel(), themePixel(10));
    EXPECT_EQ(shownName(), "left_ptr");
}

TEST_F(X11Connections, TheMarkNamesAWindowThatNamesItself) {
    start();
    apply(10);
    const auto window = marked();
    ASSERT_NE(window, 0u);
    EXPECT_EQ(client->windowProperty(window, kMark), window);
    stop();
    EXPECT_EQ(client->windowProperty(window, kMark), window);
}

TEST_F(X11Connections, EachProcessEndsItsPredecessorAndCanRegisterAgain) {
    startOverAWindow("left_ptr");
    for (int run = 0; run < 4; ++run) {
        if (run > 0) start();
        const auto before = marked();
        apply(static_cast<std::uint8_t>(10 + run));
        EXPECT_EQ(shownPixel(), themePixel(static_cast<std::uint8_t>(10 + run)));
        if (run > 0) {
            EXPECT_NE(marked(), before);
            EXPECT_FALSE(client->exists(before));
        }
        stop();
    }
    EXPECT_EQ(shownPixel(), themePixel(13));
}

TEST_F(X11Connections, APredecessorLivesUntilTheNewRegistrationIsSent) {
    start();
    apply(10);
    const auto before = marked();
    stop();
    start();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 11)), 0);
    EXPECT_TRUE(client->exists(before));
    server->flush();
    EXPECT_FALSE(client->exists(before));
}

TEST_F(X11Connections, AStrangerWhoseWindowTheMarkNamesIsLeftAlone) {
    XTestClient stranger(x.display(), "A");
    const auto window = stranger.window(200, 200);
    client->setWindowProperty(client->root(), kMark, window);
    start();
    apply(10);
    EXPECT_TRUE(client->exists(window));
    EXPECT_NE(marked(), window);
}

TEST_F(X11Connections, AStrangerWhoWasGivenThePredecessorsSlotIsLeftAlone) {
    start();
    apply(10);
    const auto before = marked();
    stop();
    // The server retains what it kills before it has seen the connection's end, and frees it the second time.
    for (int kill = 0; kill < 2 && client->exists(before); ++kill) client->killOwnerOf(before);
    ASSERT_FALSE(client->exists(before));
    // The server gives the freed slot to the next client; its ids are the predecessor's.
    std::vector<std::unique_ptr<XTestClient>> strangers;
    bool sameId = false;
    for (int i = 0; i < 8 && !sameId; ++i) {
        strangers.push_back(std::make_unique<XTestClient>(x.display(), "A"));
        for (int window = 0; window < 300 && !sameId; ++window)
            sameId = strangers.back()->window(0, 0) == before;
    }
    ASSERT_TRUE(sameId) << "the slot was not given to a stranger";
    start();
    apply(11);
    EXPECT_TRUE(client->exists(before));
}

TEST_F(X11Connections, ItStaysRetainedAfterARestore) {
    startOverAWindow("left_ptr");
    apply(10);
    restore();
    const auto window = marked();
    stop();
    EXPECT_TRUE(client->exists(window));
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
}

TEST_F(X11Connections, AProcessThatRegisteredNothingLeavesNothing) {
    start();
    apply(10);
    const auto before = marked();
    stop();
    start();
    EXPECT_TRUE(provides());
    stop();
    EXPECT_EQ(marked(), before);
    EXPECT_TRUE(client->exists(before));
}

TEST_F(X11Connections, AClosedConnectionIsOpenedOnceMoreAndSendsEverythingAgain) {
    startOverAWindow("left_ptr");
    apply(10);
    const auto before = marked();
    namesSent.clear();
    client->killOwnerOf(before);
    EXPECT_TRUE(eventually([&] { return marked() != before; }));
    EXPECT_TRUE(log.has("[X11] The connection that registers cursors was closed - opened again"));
    EXPECT_THAT(namesSent, testing::Contains("left_ptr"));
    EXPECT_TRUE(provides());
    EXPECT_EQ(shownPixel(), themePixel(10));
    EXPECT_FALSE(client->exists(before));
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 12)), 0);
    server->flush();
    EXPECT_EQ(shownPixel(), themePixel(12));
}

TEST_F(X11Connections, AConnectionClosedASecondTimeMakesTheFunctionsMissing) {
    startOverAWindow("left_ptr");
    apply(10);
    const auto first = marked();
    client->killOwnerOf(first);
    ASSERT_TRUE(eventually([&] { return marked() != first; }));
    client->killOwnerOf(marked());
    EXPECT_TRUE(eventually([&] { return !provides(); }));
    EXPECT_NE(registerTheme(themeCursor(kArrow, 12)), 0);
    EXPECT_NE(unregisterAll(), 0);
    server->flush();
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(shownPixel(), themePixel(10));
}

TEST_F(X11Connections, ACallFindsTheClosedConnectionBeforeTheQueueDoes) {
    startOverAWindow("left_ptr");
    apply(10);
    client->killOwnerOf(marked());
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 12)), 0);
    server->flush();
    EXPECT_EQ(shownPixel(), themePixel(12));
    settle();
    EXPECT_TRUE(provides());
    EXPECT_EQ(deaths, 0);
}

TEST_F(X11Connections, AClosedWatchingConnectionIsOpenedOnceMore) {
    start();
    apply(10);
    for (const int descriptor : queue.watchedDescriptors()) {
        ::shutdown(descriptor, SHUT_RDWR);
        settle();
    }
    EXPECT_TRUE(provides());
    EXPECT_TRUE(log.has("[X11] The connection that watches the pointer was closed - opened again"));
    EXPECT_EQ(deaths, 0);
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    EXPECT_TRUE(becomes(themePixel(10)));
}

TEST_F(X11Connections, ADeadServerIsReportedOnceAndNothingCrashes) {
    start();
    apply(10);
    client.reset();
    x.crash();
    EXPECT_TRUE(eventually([&] { return deaths > 0; }));
    EXPECT_FALSE(provides());
    EXPECT_NE(registerTheme(themeCursor(kArrow, 12)), 0);
    EXPECT_NE(unregisterAll(), 0);
    EXPECT_NE(server->copyRegisteredCursorImages(1, kArrow).error, 0);
    server->flush();
    settle();
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(log.has("[X11] The X server is gone"));
}

TEST_F(X11Connections, ACallThatFindsTheServerDeadAnswersAnError) {
    start();
    apply(10);
    client.reset();
    x.crash();
    EXPECT_NE(registerTheme(themeCursor(kArrow, 12)), 0);
    EXPECT_EQ(deaths, 0);
    settle();
    EXPECT_EQ(deaths, 1);
}

TEST_F(X11Connections, AFlushThatFindsTheServerDeadSurvives) {
    start();
    apply(10);
    unregisterAll();
    client.reset();
    x.crash();
    server->flush();
    EXPECT_TRUE(eventually([&] { return deaths == 1; }));
}

class X11Absence : public testing::Test {
  protected:
    bool provides(std::optional<std::string> display, std::map<std::string, std::string> environment) {
        X11WindowServerOptions options{std::move(display), queue, log, {}, {}, {}, {}};
        options.watchReadable = [this](int descriptor, std::function<void()> readable) {
            return queue.watchReadable(descriptor, std::move(readable));
        };
        options.environment = [environment](const std::string& name) -> std::optional<std::string> {
            const auto found = environment.find(name);
            if (found == environment.end()) return std::nullopt;
            return found->second;
        };
        const auto server = makeX11WindowServer(std::move(options));
        const bool answer = server->provides(WindowServerFunction::mainConnectionID);
        EXPECT_EQ(server->provides(WindowServerFunction::copyRegisteredCursorImages), answer);
        EXPECT_EQ(server->mainConnectionID() != 0, answer);
        server->flush();
        return answer;
    }

    PollQueue queue;
    FakeLog log;
};

TEST_F(X11Absence, TheDisplayOfTheEnvironmentIsUsedWhenNoneIsNamed) {
    const XTestServer x;
    EXPECT_TRUE(provides(std::nullopt, {{"DISPLAY", x.display()}}));
    EXPECT_TRUE(provides(x.display(), {}));
}

TEST_F(X11Absence, WithoutAServerThereAreNoFunctions) {
    EXPECT_FALSE(provides(std::nullopt, {}));
    EXPECT_FALSE(provides(":nonsense", {}));
    EXPECT_TRUE(log.has("[X11] No X server - cursor registration unavailable"));
}

TEST_F(X11Absence, AServerWithoutTheExtensionsHasNoFunctions) {
    const XTestServer x({"-extension", "RENDER"});
    EXPECT_FALSE(provides(x.display(), {}));
    EXPECT_TRUE(log.has("[X11] The X server lacks extensions - cursor registration unavailable"));
    const XTestServer second({"-extension", "XFIXES"});
    EXPECT_FALSE(provides(second.display(), {}));
}

}  // namespace
}  // namespace pintle
