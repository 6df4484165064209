#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <QWindow>
#include <memory>

#include "platform/fake/fake_appearance.h"
#include "platform/fake/fake_shell.h"
#include "platform/qt/shell/qt_popovers.h"
#include "platform/qt/shell/qt_status_bar.h"

namespace pintle {
namespace {

struct OneView : ShellViews {
    QWindow view;
    void setComposited(bool) override {}
    QWindow* popover() override { return &view; }
    PopoverShape popoverShape() const override { return {}; }
    QWindow* window(WindowContent) override { return nullptr; }
    QWindow* alert(const Alert&, std::function<void(int)>) override { return nullptr; }
};

struct PopoverPressesTest : testing::Test {
    OneView views;
    FakeAppearance appearance;
    FakeShell shell;
    ShellDesktop desktop;
    QWindow other;
    std::unique_ptr<StatusItem> item = shell.statusBar.makeStatusItem(kSquareStatusItemLength);
    std::unique_ptr<Popovers> popovers;
    std::unique_ptr<Popover> popover;

    void show(bool transient) {
        desktop.watchPresses = [](const auto&) { return Subscription(); };
        popovers = makeQtPopovers(views, appearance, desktop);
        popover =
            popovers->makePopover({.contentSize = {340, 520}, .transient = transient, .animates = false});
        other.resize(200, 100);
        other.show();
        popover->show(*item, {{0, 0}, {340, 520}});
        ASSERT_TRUE(popover->isShown());
    }
};

TEST_F(PopoverPressesTest, APressOnAnotherWindowOfTheProgramClosesThePopover) {
    show(true);
    QTest::mousePress(&other, Qt::LeftButton);
    EXPECT_FALSE(popover->isShown());
}

TEST_F(PopoverPressesTest, APressInThePopoverLeavesItOpen) {
    show(true);
    QTest::mousePress(&views.view, Qt::LeftButton);
    EXPECT_TRUE(popover->isShown());
}

TEST_F(PopoverPressesTest, APressOnTheTrayIconIsLeftToTheClickThatItBecomes) {
    show(true);
    other.setProperty(kIsTrayIcon, true);
    QTest::mousePress(&other, Qt::LeftButton);
    EXPECT_TRUE(popover->isShown());
}

TEST_F(PopoverPressesTest, APopoverThatIsNotTransientStaysOpen) {
    show(false);
    QTest::mousePress(&other, Qt::LeftButton);
    EXPECT_TRUE(popover->isShown());
}

}  // namespace
}  // namespace pintle
