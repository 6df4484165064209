// The registration's life beyond the process and its end with the server: the retained connection, its
// predecessor, connections that are closed, servers that die, sessions without a usable server.
#include <sys/socket.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <vector>

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

/// A program that speaks the protocol itself and makes a window before anything else.
class PlainProgram {
  public:
    struct Traits {
        bool inputOnly = true;
        bool mapped = false;
        std::uint16_t width = 1;
        std::uint16_t height = 1;
        bool childOfRoot = true;
        bool first = true;
        bool named = true;
    };
    PlainProgram(const std::string& display, const Traits& traits)
        : connection_(xcb_connect(display.c_str(), nullptr)) {
        if (!traits.first) xcb_generate_id(connection_);
        window = xcb_generate_id(connection_);
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        auto parent = root;
        if (!traits.childOfRoot) {
            parent = xcb_generate_id(connection_);
            make(parent, root, {.inputOnly = true});
        }
        make(window, parent, traits);
        if (traits.mapped) xcb_map_window(connection_, window);
        free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }
    ~PlainProgram() { xcb_disconnect(connection_); }
    PlainProgram(const PlainProgram&) = delete;
    PlainProgram& operator=(const PlainProgram&) = delete;

    xcb_window_t window = 0;

  private:
    void make(xcb_window_t id, xcb_window_t parent, const Traits& traits) {
        const std::uint32_t overrideRedirect = 1;
        xcb_create_window(connection_, 0, id, parent, 0, 0, traits.width, traits.height, 0,
                          traits.inputOnly ? XCB_WINDOW_CLASS_INPUT_ONLY : XCB_WINDOW_CLASS_INPUT_OUTPUT, 0,
                          XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    }
    xcb_connection_t* const connection_;
};

TEST_F(X11Connections, AStrangerWhoseWindowWasMadeToLookLikeARegistrationIsLeftAlone) {
    using Traits = PlainProgram::Traits;
    const std::vector<Traits> differences = {{.inputOnly = false}, {.mapped = true},       {.width = 2},
                                             {.height = 2},        {.childOfRoot = false}, {.first = false},
                                             {.named = false}};
    for (std::size_t i = 0; i < differences.size(); ++i) {
        const PlainProgram stranger(x.display(), differences[i]);
        if (differences[i].named) client->setWindowProperty(stranger.window, kMark, stranger.window);
        client->setWindowProperty(client->root(), kMark, stranger.window);
        start();
        apply(10);
        EXPECT_TRUE(client->exists(stranger.window)) << i;
        EXPECT_NE(marked(), stranger.window);
        stop();
    }
    const PlainProgram registration(x.display(), {});
    client->setWindowProperty(registration.window, kMark, registration.window);
    client->setWindowProperty(client->root(), kMark, registration.window);
    start();
    apply(10);
    EXPECT_FALSE(client->exists(registration.window)) << "none of the others was spared for another reason";
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

TEST_F(X11Connections, TwoProcessesDoNotEndEachOtherForEver) {
    startOverAWindow("left_ptr");
    apply(10);
    const auto first = std::move(server);
    start();
    apply(20);
    const auto second = std::move(server);
    endOfTurn.end();
    const auto registerOn = [&](WindowServer& process, std::uint8_t red) {
        const auto answer = process.registerCursorWithImages(
            process.mainConnectionID(), themeCursor(kArrow, red), RegistrationPurpose::theme);
        process.flush();
        return answer;
    };
    for (int round = 1; round < 4; ++round) {
        const auto ofFirst = static_cast<std::uint8_t>(10 + round);
        const auto ofSecond = static_cast<std::uint8_t>(20 + round);
        settle();
        EXPECT_TRUE(first->provides(WindowServerFunction::registerCursorWithImages));
        const auto inForce = marked();
        EXPECT_EQ(registerOn(*first, ofFirst), 0);
        settle();
        EXPECT_NE(marked(), inForce);
        EXPECT_EQ(shownPixel(), themePixel(ofFirst));
        EXPECT_TRUE(second->provides(WindowServerFunction::registerCursorWithImages));
        EXPECT_EQ(registerOn(*second, ofSecond), 0);
        EXPECT_EQ(shownPixel(), themePixel(ofSecond));
    }
    EXPECT_TRUE(log.has("[X11] Another process registers cursors now"));
    EXPECT_FALSE(log.has("[X11] The connection that registers cursors was closed - opened again"));
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
