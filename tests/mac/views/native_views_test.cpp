#include <gtest/gtest.h>

#include <QWindow>
#include <string>
#include <vector>

#include "app/root/native_views_qt.h"

namespace pintle {
namespace {

class RecordingViews : public ShellViews {
  public:
    void setComposited(bool composited) override {
        calls.push_back(composited ? "composited" : "not composited");
    }
    void setNativelyHosted() override { calls.push_back("natively hosted"); }
    double popoverMaterial() const override { return material; }
    void setTitleStrip(WindowContent content, double height) override {
        calls.push_back((content == WindowContent::settings ? "settings strip " : "about strip ") +
                        std::to_string(static_cast<int>(height)));
    }
    QWindow* popover() override {
        calls.push_back("popover");
        return canMake ? &popoverView : nullptr;
    }
    PopoverShape popoverShape() const override { return {}; }
    void popoverWillShow(bool animates) override {
        calls.push_back(animates ? "will show, animated" : "will show");
    }
    void popoverDidHide() override { calls.push_back("did hide"); }
    QWindow* window(WindowContent content) override {
        calls.push_back(content == WindowContent::settings ? "settings" : "about");
        if (!canMake) return nullptr;
        return content == WindowContent::settings ? &settingsView : &aboutView;
    }
    QWindow* alert(const Alert&, std::function<void(int)>) override { return nullptr; }

    bool canMake = true;
    double material = 0;
    QWindow popoverView;
    QWindow settingsView;
    QWindow aboutView;
    std::vector<std::string> calls;
};

class NativeViewsTest : public testing::Test {
  protected:
    RecordingViews ui;
    std::unique_ptr<NativeViews> views = makeNativeViews(ui);
};

using Calls = std::vector<std::string>;

TEST_F(NativeViewsTest, EachViewIsAskedForOnce) {
    const NativeView popover = views->popover();
    const NativeView settings = views->window(WindowContent::settings);
    const NativeView about = views->window(WindowContent::about);
    EXPECT_EQ(views->popover(), popover);
    EXPECT_EQ(views->window(WindowContent::settings), settings);
    EXPECT_EQ(views->window(WindowContent::about), about);
    EXPECT_NE(popover, settings);
    EXPECT_NE(settings, about);
    EXPECT_EQ(ui.calls, (Calls{"composited", "natively hosted", "popover", "settings", "about"}));
}

TEST_F(NativeViewsTest, AViewThatCannotBeMadeIsNull) {
    ui.canMake = false;
    EXPECT_EQ(views->popover(), nullptr);
    EXPECT_EQ(views->window(WindowContent::about), nullptr);
}

TEST_F(NativeViewsTest, ThePopoversMaterialIsThatOfTheMoment) {
    EXPECT_EQ(views->popoverMaterial(), 0);
    ui.material = 0.85;
    EXPECT_EQ(views->popoverMaterial(), 0.85);
}

TEST_F(NativeViewsTest, EachWindowIsGivenItsOwnTitleStripAndThePopoverNone) {
    const NativeView popover = views->popover();
    const NativeView settings = views->window(WindowContent::settings);
    const NativeView about = views->window(WindowContent::about);
    ui.calls.clear();
    views->setTitleStrip(settings, 28);
    views->setTitleStrip(about, 32);
    views->setTitleStrip(popover, 5);
    EXPECT_EQ(ui.calls, (Calls{"settings strip 28", "about strip 32"}));
}

TEST_F(NativeViewsTest, OnlyThePopoverIsNotifiedOfItsShowingAndHiding) {
    const NativeView popover = views->popover();
    const NativeView settings = views->window(WindowContent::settings);
    ui.calls.clear();
    views->willShow(popover, true);
    EXPECT_FALSE(ui.popoverView.isVisible());
    views->didShow(popover);
    EXPECT_TRUE(ui.popoverView.isVisible());
    views->didHide(popover);
    EXPECT_FALSE(ui.popoverView.isVisible());
    views->willShow(settings, true);
    views->didShow(settings);
    EXPECT_TRUE(ui.settingsView.isVisible());
    views->didHide(settings);
    EXPECT_FALSE(ui.settingsView.isVisible());
    EXPECT_EQ(ui.calls, (Calls{"will show, animated", "did hide"}));
}

TEST_F(NativeViewsTest, AViewThatWantsToGoAwayClosesItsWindowAndStays) {
    const NativeView settings = views->window(WindowContent::settings);
    int closed = 0;
    views->setClose(settings, [&] { ++closed; });
    views->didShow(settings);
    // Refused, it would stop the end of the program.
    EXPECT_TRUE(ui.settingsView.close());
    EXPECT_EQ(closed, 1);
    EXPECT_TRUE(ui.settingsView.isVisible());
    EXPECT_NE(ui.settingsView.handle(), nullptr);
}

}  // namespace
}  // namespace pintle
