// Presses that go elsewhere, and keys that come to the program's own windows.
#include <QMenu>

#include "tests/contract/shell/shell_fixture.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Presses : public ShellTest {
  protected:
    void watch(EventMask mask = kLeftMouseDownMask | kRightMouseDownMask) {
        presses = monitors->addGlobalMonitor(
            mask, [this](const GlobalMouseDown& press) { pressed.push_back(press); });
    }
    /// A click over everything else, which every watcher must have seen when this returns.
    bool clickElsewhere() {
        const auto before = pressed.size();
        click(900, 700);
        return until([&] { return pressed.size() > before; });
    }
};

TEST_F(Presses, OverOtherWindowsAndTheDesktopAreReportedInTheirOrder) {
    watch();
    ASSERT_TRUE(presses);
    click(300, 300, 1);
    click(300, 300, 3);
    click(300, 300, 2);
    click(300, 300, 4);
    ASSERT_TRUE(clickElsewhere());
    ASSERT_TRUE(until([this] { return pressed.size() == 3; }));
    EXPECT_EQ(pressed[0].button, GlobalMouseDown::Button::left);
    EXPECT_EQ(pressed[0].press, 1u);
    EXPECT_EQ(pressed[1].button, GlobalMouseDown::Button::right);
    EXPECT_EQ(pressed[1].press, 2u);
    // The middle button counts and is not reported; the wheel does not even count.
    EXPECT_EQ(pressed[2].press, 4u);
}

TEST_F(Presses, OfAMaskedButtonAloneAreReported) {
    watch(kRightMouseDownMask);
    click(300, 300, 1);
    click(300, 300, 3);
    ASSERT_TRUE(until([this] { return pressed.size() == 1; }));
    EXPECT_EQ(pressed[0].press, 2u);
}

TEST_F(Presses, OnAWindowOfTheProgramAndOnItsFrameAreNotReported) {
    const auto window = windows->makeWindow({.content = WindowContent::about,
                                             .contentSize = {300, 200},
                                             .title = "About Pintle",
                                             .styleMask = 3,
                                             .showsMiniaturizeAndZoom = false});
    window->setFrame({{100, 400}, {302, 221}});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey() && window->frame() == Rect{{100, 400}, {302, 221}}; }));
    const Rect frame = window->frame();
    const int left = static_cast<int>(frame.origin.x);
    const int top = static_cast<int>(800 - frame.origin.y - frame.size.height);
    watch();
    // One after the other: the pointer must still be there when a press is seen.
    click(left + 150, top + 120);
    ASSERT_TRUE(hasSeen(1));
    // The title bar, which is the window manager's.
    click(left + 150, top + 8);
    ASSERT_TRUE(hasSeen(2));
    ASSERT_TRUE(clickElsewhere());
    ASSERT_EQ(pressed.size(), 1u);
    EXPECT_EQ(pressed[0].press, 3u);
}

TEST_F(Presses, AreSeenWhileAMenuHoldsThePointer) {
    QMenu menu;
    menu.addAction(QStringLiteral("one"));
    menu.popup({200, 200});
    ASSERT_TRUE(until([&] { return menu.windowHandle() && menu.windowHandle()->isExposed(); }));
    watch();
    ASSERT_TRUE(clickElsewhere());
    EXPECT_TRUE(until([] { return QApplication::activePopupWidget() == nullptr; }));
}

TEST_F(Presses, AreNotReportedAfterTheHandleEnded) {
    watch();
    ASSERT_TRUE(clickElsewhere());
    presses.end();
    click(300, 300);
    ASSERT_TRUE(hasSeen(2));
    EXPECT_EQ(pressed.size(), 1u);
}

TEST_F(Presses, KeysOfOwnWindowsComeWithTheirModifierAndCanBeSwallowed) {
    std::vector<LocalKeyDown> keys;
    const auto monitor = monitors->addLocalMonitor(kKeyDownMask, [&](const LocalKeyDown& key) {
        keys.push_back(key);
        return key.commandModifier && key.charactersIgnoringModifiers == "w";
    });
    const auto window = windows->makeWindow(
        {.content = WindowContent::settings, .contentSize = {300, 200}, .title = "Settings", .styleMask = 3});
    window->setFrame({{100, 400}, {302, 221}});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    mouse("key ctrl+w");
    ASSERT_TRUE(until([&] { return keys.size() >= 2; }));
    // The modifier itself comes first.
    EXPECT_EQ(keys.back().charactersIgnoringModifiers, "w");
    EXPECT_TRUE(keys.back().commandModifier);
    keys.clear();
    mouse("key x");
    ASSERT_TRUE(until([&] { return !keys.empty(); }));
    EXPECT_FALSE(keys.front().commandModifier);
    EXPECT_EQ(keys.front().charactersIgnoringModifiers, "x");
    EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace pintle
