#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QGuiApplication>

#include "app/languages.h"
#include "app/quick/translations.h"
#include "tests/popover/text_fit.h"
#include "tests/quick/window_world.h"

namespace pintle {
namespace {

using testing::IsEmpty;

struct WindowLanguagesTest : testing::TestWithParam<std::tuple<std::string_view, double>> {
    std::unique_ptr<QTranslator> translator =
        installTranslation({QString::fromStdString(std::string(std::get<0>(GetParam())))});
    ~WindowLanguagesTest() override { QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto); }
    static ViewLook::Look look() {
        ViewLook::Look look;
        look.reducedMotion = true;
        look.textScale = std::get<1>(GetParam());
        look.fontFamily = "DejaVu Sans";
        return look;
    }
};

TEST_P(WindowLanguagesTest, TheSettingsCutNoText) {
    WindowWorld world(look());
    world.settings.toggleAddAppField();
    auto* const view = world.show(WindowContent::settings);
    ASSERT_NE(view, nullptr);
    EXPECT_THAT(cutTexts(view->rootObject()), IsEmpty());
}

TEST_P(WindowLanguagesTest, TheSettingsCutNoTextWhereTheSessionShowsNoApplications) {
    WindowWorld world(look(), false);
    auto* const view = world.show(WindowContent::settings);
    ASSERT_NE(view, nullptr);
    EXPECT_THAT(cutTexts(view->rootObject()), IsEmpty());
}

TEST_P(WindowLanguagesTest, TheAboutWindowCutsNoText) {
    WindowWorld world(look());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    EXPECT_THAT(cutTexts(view->rootObject()), IsEmpty());
}

TEST_P(WindowLanguagesTest, TheAlertCutsNoText) {
    WindowWorld world(look());
    auto* const view =
        world.show({AlertStyle::warning,
                    std::string(settings_text::resetQuestion),
                    std::string(settings_text::resetQuestionText),
                    {std::string(settings_text::resetAndQuit), std::string(settings_text::cancel)}});
    ASSERT_NE(view, nullptr);
    EXPECT_THAT(cutTexts(view->rootObject()), IsEmpty());
}

std::string nameOf(const testing::TestParamInfo<std::tuple<std::string_view, double>>& info) {
    return std::string(std::get<0>(info.param)) + (std::get<1>(info.param) > 1 ? "At200" : "At100");
}

INSTANTIATE_TEST_SUITE_P(Languages, WindowLanguagesTest,
                         testing::Combine(testing::ValuesIn(languages), testing::Values(1.0, 2.0)), nameOf);

}  // namespace
}  // namespace pintle
