// What the one-shot replacement by name does not reach: the keeper finds it when it is shown.
#include <atomic>
#include <chrono>
#include <set>
#include <thread>

#include "tests/contract/x11/x11_fixture.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;

class X11Keeper : public X11Test {
  protected:
    XTestClient other{x.display(), "B"};

    /// Whether the pixel comes to be shown although nothing that the backend waits for comes.
    bool becomesAtOnce(std::uint32_t pixel) {
        queue.holdTimers(true);
        const bool shows = becomes(pixel);
        queue.holdTimers(false);
        return shows;
    }
};

TEST_F(X11Keeper, AProgramStartedAfterTheApplyIsThemed) {
    client->warp(300, 300);
    start();
    apply(10);
    XTestClient late(x.display(), "B");
    const auto window = late.window(0, 0);
    late.define(window, late.cursor("xterm"));
    client->warp(50, 50);
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_EQ(shownName(), "xterm");
}

TEST_F(X11Keeper, ACursorSetForTheDeviceIsThemedWhenThePointerComes) {
    const auto window = other.window(0, 0);
    other.defineForDevice(window, other.cursor("hand2"));
    client->warp(300, 300);
    start();
    apply(10);
    client->warp(50, 50);
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_EQ(shownName(), "hand2");
}

TEST_F(X11Keeper, ACursorSetForTheDeviceIsThemedUnderARestingPointer) {
    const auto window = other.window(0, 0);
    other.defineForDevice(window, other.cursor("hand2"));
    client->warp(50, 50);
    start();
    apply(10);
    EXPECT_TRUE(becomes(themePixel(10)));
    apply(11);
    EXPECT_TRUE(becomes(themePixel(11)));
    restore();
    EXPECT_TRUE(becomes(kThemeA + 0x30));
}

TEST_F(X11Keeper, ACursorSetAtTheMomentOfAReplacementIsTheOneThatShows) {
    const auto window = other.window(0, 0);
    client->warp(50, 50);
    start();
    apply(10);
    // Around the time at which the keeper sets the first cursor on the window, in small steps.
    for (auto wait = 39'500us; wait < 42'500us; wait += 100us) {
        // Replacements under a resting pointer are counted.
        client->warp(40 + static_cast<int>(wait.count() / 100 % 20), 50);
        std::atomic<bool> done = false;
        std::thread program([&] {
            other.defineForDevice(window, other.cursor("hand2"));
            other.synchronize();
            std::this_thread::sleep_for(wait);
            other.defineForDevice(window, other.cursor("xterm"));
            other.synchronize();
            done = true;
        });
        EXPECT_TRUE(eventually([&] { return done.load(); }));
        program.join();
        settle();
        EXPECT_EQ(shownPixel(), themePixel(10));
        EXPECT_EQ(shownName(), "xterm") << "after " << wait.count() << " us";
    }
}

TEST_F(X11Keeper, AnAnimatedPictureReplacesADeviceCursorWithoutAName) {
    const auto window = client->window(0, 0);
    client->defineForDevice(window, client->namelessCursor("watch"));
    client->warp(300, 300);
    start();
    unregisterAll();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 10)), 0);
    EXPECT_EQ(registerTheme(themeCursor(kWait, 20, 3)), 0);
    server->flush();
    client->warp(50, 50);
    const auto themed = [this] { return shownPixel() >> 16 == 0xFF00 + 20; };
    EXPECT_TRUE(eventually(themed));
    settle();
    EXPECT_TRUE(themed());
}

TEST_F(X11Keeper, APrivateCursorWithoutANameIsKnownByTheDesktopsPixels) {
    const auto window = client->window(0, 0);
    client->define(window, client->namelessCursor("hand2"));
    client->warp(50, 50);
    ASSERT_EQ(shownName(), "");
    start();
    apply(10);
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_EQ(shownName(), "hand2");
    // Its next cursor is not hidden by what the keeper set.
    client->define(window, client->cursor("fleur"));
    settle();
    EXPECT_EQ(shownPixel(), kThemeA + 0x40);
    client->define(window, client->namelessCursor("xterm"));
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_EQ(shownName(), "xterm");
}

TEST_F(X11Keeper, ACursorThatThePointerLeftBeforeItWasReplacedIsThemedWhenItComesBack) {
    const auto byName = client->window(0, 0);
    client->defineForDevice(byName, client->cursor("hand2"));
    const auto byPixels = client->window(100, 0);
    client->define(byPixels, client->namelessCursor("hand2"));
    client->warp(300, 300);
    start();
    apply(10);
    for (const int left : {50, 150}) {
        settle();
        client->warp(left, 50);
        // One without a name is not waited for.
        ASSERT_TRUE(eventually([this] { return queue.isWaiting() || shownPixel() == themePixel(10); }));
        client->warp(300, 300);
        settle();
        client->warp(left, 50);
        EXPECT_TRUE(becomes(themePixel(10))) << left;
        client->warp(300, 300);
    }
}

TEST_F(X11Keeper, ACursorWithoutANameIsThemedWithoutAWait) {
    const auto window = client->window(0, 0);
    client->warp(50, 50);
    start();
    apply(10);
    settle();
    for (const auto* const name : {"hand2", "xterm", "left_ptr", "hand2"}) {
        // Replacements under a resting pointer are counted.
        client->warp(client->pointer().first + 1, 50);
        client->define(window, client->namelessCursor(name));
        EXPECT_TRUE(becomesAtOnce(themePixel(10))) << name;
        EXPECT_EQ(shownName(), name);
        settle();
    }
}

TEST_F(X11Keeper, ACursorWithoutANameIsThemedWhileAnotherIsWaitedFor) {
    const auto first = other.window(0, 0);
    const auto second = client->window(200, 0);
    other.defineForDevice(first, other.cursor("hand2"));
    client->define(second, client->namelessCursor("xterm"));
    client->warp(400, 400);
    start();
    apply(10);
    settle();
    client->warp(50, 50);
    ASSERT_TRUE(eventually([&] { return queue.isWaiting(); }));
    client->warp(250, 50);
    EXPECT_TRUE(becomesAtOnce(themePixel(10)));
    EXPECT_EQ(shownName(), "xterm");
}

TEST_F(X11Keeper, AGlyphOfTheCoreFontIsThemedInAllColorsAndGivenBack) {
    constexpr unsigned kTopLeftArrow = 132;
    const auto window = client->window(0, 0);
    for (const auto& [foreground, background] :
         {std::pair(0x000000u, 0xFFFFFFu), std::pair(0xFFFFFFu, 0x000000u),
          std::pair(0xC04000u, 0x00FF80u)}) {
        client->define(window, client->glyphCursor(kTopLeftArrow, foreground, background));
        client->warp(50, 50);
        const auto own = client->shown();
        ASSERT_TRUE(own);
        ASSERT_EQ(own->name, "");
        start();
        apply(10);
        EXPECT_TRUE(becomes(themePixel(10)));
        EXPECT_EQ(shownName(), "top_left_arrow");
        apply(11);
        EXPECT_TRUE(becomes(themePixel(11)));
        restore();
        settle();
        const auto given = client->shown();
        ASSERT_TRUE(given);
        EXPECT_EQ(given->pixels, own->pixels);
        EXPECT_EQ(std::pair(given->hotspotX, given->hotspotY), std::pair(own->hotspotX, own->hotspotY));
        stop();
    }
}

TEST_F(X11Keeper, AGlyphThatHasNoNameInTheTableIsLeftAlone) {
    constexpr unsigned kGumby = 56;
    const auto window = client->window(0, 0);
    client->define(window, client->glyphCursor(kGumby, 0x000000, 0xFFFFFF));
    client->warp(50, 50);
    const auto own = client->shown();
    ASSERT_TRUE(own);
    start();
    apply(10);
    settle();
    ASSERT_TRUE(client->shown());
    EXPECT_EQ(client->shown()->pixels, own->pixels);
}

TEST_F(X11Keeper, ACursorThatNobodyCanSeeIsLeftAlone) {
    const auto window = client->window(0, 0);
    client->define(window, client->blankCursor("blank"));
    const auto second = client->window(100, 0);
    client->warp(300, 300);
    start();
    apply(10);
    client->warp(50, 50);
    settle();
    EXPECT_EQ(shownPixel(), 0u);
    client->define(second, client->blankCursor("xterm"));
    client->warp(150, 50);
    settle();
    EXPECT_EQ(shownPixel(), 0u);
}

TEST_F(X11Keeper, APictureThatIsNobodysIsLeftAlone) {
    writeTestTheme(themes.path(), "B", {{"nobodys", 0xFF123456}});
    const auto window = other.window(0, 0);
    other.define(window, other.cursor("nobodys"));
    client->warp(300, 300);
    start();
    apply(10);
    client->warp(50, 50);
    settle();
    EXPECT_EQ(shownPixel(), 0xFF123456u);
    other.define(window, other.namelessCursor("nobodys"));
    settle();
    EXPECT_EQ(shownPixel(), 0xFF123456u);
}

TEST_F(X11Keeper, AfterARestoreItRests) {
    start();
    apply(10);
    restore();
    const auto window = other.window(0, 0);
    other.define(window, other.cursor("left_ptr"));
    client->warp(50, 50);
    settle();
    EXPECT_EQ(shownPixel(), kThemeB + 0x10);
}

TEST_F(X11Keeper, AfterARestoreAChangeByNameOfTheDesktopShowsAtOnce) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    restore();
    other.changeByName(other.cursor("left_ptr"), "left_ptr");
    settle();
    EXPECT_EQ(shownPixel(), kThemeB + 0x10);
}

TEST_F(X11Keeper, AQuarrelWithAProgramThatAnswersEachReplacementEnds) {
    for (const bool device : {false, true}) {
        const auto window = other.window(0, 0);
        client->warp(300, 300);
        start();
        apply(10);
        other.contendFor(window, "xterm", device);
        client->warp(50, 50);
        other.define(window, other.cursor("xterm"));
        int answers = 0;
        const auto end = queue.now() + std::chrono::seconds(1);
        while (queue.now() < end) {
            queue.runOnce(std::chrono::milliseconds(2));
            answers += other.contendFor(window, "xterm", device);
        }
        EXPECT_GT(answers, 1);
        EXPECT_LT(answers, 15);
        // It is over: nothing happens any more while the pointer rests.
        for (int i = 0; i < 100; ++i) {
            queue.runOnce(std::chrono::milliseconds(2));
            EXPECT_EQ(other.contendFor(window, "xterm", device), 0);
        }
        stop();
    }
}

TEST_F(X11Keeper, TheWindowUnderAGrabKeepsItsOwnCursor) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("fleur"));
    client->defineForDevice(client->root(), client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    for (const bool named : {true, false}) {
        XTestClient grabbing(x.display(), named ? "B" : "A");
        grabbing.grab(named ? grabbing.cursor("xterm") : grabbing.namelessCursor("xterm"));
        settle();
        grabbing.ungrab();
        settle();
        if (named) {
            EXPECT_EQ(shownPixel(), kThemeA + 0x40);
        }
        client->define(window, client->cursor("watch"));
        client->define(window, client->cursor("fleur"));
        settle();
        EXPECT_EQ(shownPixel(), kThemeA + 0x40);
    }
}

TEST_F(X11Keeper, ACursorWhoseMakerIsGoneIsSurvived) {
    auto gone = std::make_unique<XTestClient>(x.display(), "B");
    const auto window = client->window(0, 0);
    gone->define(window, gone->cursor("hand2"));
    gone.reset();
    client->warp(300, 300);
    start();
    apply(10);
    client->warp(50, 50);
    EXPECT_TRUE(becomes(themePixel(10)));
    apply(11);
    EXPECT_TRUE(becomes(themePixel(11)));
}

TEST_F(X11Keeper, AnAnimatedThemeCursorIsNotFixedOverAndOver) {
    const auto window = other.window(0, 0);
    other.define(window, other.cursor("watch"));
    client->warp(50, 50);
    start();
    EXPECT_EQ(registerTheme(themeCursor(kWait, 20, 4)), 0);
    server->flush();
    namesSent.clear();
    std::set<std::uint32_t> seen;
    const auto end = queue.now() + std::chrono::milliseconds(600);
    while (queue.now() < end) {
        queue.runOnce(std::chrono::milliseconds(5));
        const auto shown = client->shown();
        if (shown && shown->width > 1) seen.insert(shown->pixels.front() & 0xFFFF00FF);
    }
    EXPECT_THAT(seen, testing::ElementsAre(themePixel(20)));
    EXPECT_THAT(namesSent, testing::IsEmpty());
}

}  // namespace
}  // namespace pintle
