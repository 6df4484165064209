// The popover's footer and the keys of its header, as the model has them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/popover_model.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr auto kIce = ModelWorld::ice;

struct PopoverFooterTest : testing::Test {
    ModelWorld world;
    std::unique_ptr<PopoverModel> model;

    void make(PopoverModel::Session session = PopoverModel::Session::pointerCanChange) {
        if (!world.viewModel) world.start();
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log},
            session);
        model->onAppear();
    }
    std::string arrow() const {
        const auto text = model->arrowText();
        return text ? text->english() : std::string();
    }
    void slideTo(double scale) {
        model->sliderChanged(scale);
        world.scheduler.advance(1s);
    }
};

TEST_F(PopoverFooterTest, TheKeysOfTheHeaderAreThoseOfTheMenuAndF1) {
    std::vector<std::string_view> keys;
    for (const auto& button : PopoverModel::headerButtons()) keys.push_back(button.shortcut);
    EXPECT_THAT(keys, ElementsAre("Ctrl+,", "F1", "Ctrl+Q"));
}

TEST_F(PopoverFooterTest, TheArrowsSizeIsTheOneThatTheScaleLeadsToAmongTheThemesOwn) {
    // At 110 % the nearest nominal size to 35 is 24, at 120 % it is the one of 48 for 38.
    writeFile(world.cursorsOf(kIce) / "left_ptr",
              XCursorBuilder().image({.size = 24}).image({.size = 48}).bytes());
    make();
    EXPECT_EQ(arrow(), "");
    world.applyNow(kIce);
    slideTo(1.1);
    const auto shown = [this] {
        return world.windowServer.registered.at("com.apple.coregraphics.Arrow").size;
    };
    EXPECT_EQ(shown().width, 26);
    EXPECT_EQ(arrow(), "Arrow: 26 pixels");
    slideTo(1.2);
    EXPECT_EQ(shown().width, 57);
    EXPECT_EQ(arrow(), "Arrow: 57 pixels");
}

TEST_F(PopoverFooterTest, ANewSizeOfTheArrowIsNotified) {
    world.writeTheme(kIce, 0x102030);
    make();
    world.applyNow(kIce);
    std::vector<std::string> texts;
    const auto observer = model->changed.observe([&] { texts.push_back(arrow()); });
    slideTo(1.5);
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.back(), arrow());
    EXPECT_EQ(world.windowServer.registered.at("com.apple.coregraphics.Arrow").size.width, 72);
    EXPECT_EQ(arrow(), "Arrow: 72 pixels");
}

TEST_F(PopoverFooterTest, SystemDefaultIsInForceWhileNoThemeIs) {
    world.writeTheme(kIce, 0x102030);
    make();
    EXPECT_TRUE(model->systemDefaultInForce());
    EXPECT_EQ(model->systemDefaultHelp().english(), "The desktop's own cursors are in use");
    int changes = 0;
    const auto observer = model->changed.observe([&] { ++changes; });
    world.applyNow(kIce);
    EXPECT_FALSE(model->systemDefaultInForce());
    EXPECT_EQ(model->systemDefaultHelp().english(), "Use the desktop's own cursors");
    EXPECT_GT(changes, 0);
    changes = 0;
    model->resetToDefault();
    EXPECT_TRUE(model->systemDefaultInForce());
    EXPECT_EQ(arrow(), "");
    EXPECT_GT(changes, 0);
}

TEST_F(PopoverFooterTest, WhereThePointerCannotChangeTheDesktopsCursorsAreInForce) {
    world.writeTheme(kIce, 0x102030);
    world.start();
    world.applyNow(kIce);
    make(PopoverModel::Session::pointerCannotChange);
    EXPECT_TRUE(model->systemDefaultInForce());
    EXPECT_EQ(arrow(), "");
}

}  // namespace
}  // namespace pintle
