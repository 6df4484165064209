#include "app/about_window_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/fake_shell.h"

namespace pintle {
namespace {

using testing::ElementsAre;

struct AboutWindowModelTest : testing::Test {
    ShellTranscript transcript;
    FakeApplication application{transcript};
    Bundle bundle;
    int dismissed = 0;

    std::unique_ptr<AboutWindowModel> model(const std::string& version = "0.1.0") {
        bundle.shortVersion = version;
        return std::make_unique<AboutWindowModel>(bundle, application, [this] { ++dismissed; });
    }
};

TEST_F(AboutWindowModelTest, ShowsNameVersionAndTagline) {
    const auto about = model();
    EXPECT_EQ(AboutWindowModel::name().english(), "Pintle");
    EXPECT_EQ(about->version(), "0.1.0");
    EXPECT_EQ(about->versionText().english(), "Version 0.1.0");
    EXPECT_EQ(AboutWindowModel::tagline().english(), "A modern cursor manager for macOS");
    EXPECT_EQ(AboutWindowModel::contentSize, (Size{300, 480}));
    EXPECT_EQ(about_text::windowTitle, "About Pintle");
}

TEST_F(AboutWindowModelTest, ABundleWithoutAVersionCountsAsTheFirst) {
    EXPECT_EQ(model("")->versionText().english(), "Version 1.0.0");
}

TEST_F(AboutWindowModelTest, TheFeaturesStandInTheirOrderWithTheirDelays) {
    std::vector<std::string> seen;
    for (const auto& row : model()->features())
        seen.push_back(std::string(row.symbol) + " " + row.text.english() + " " +
                       std::to_string(row.delay.count()));
    EXPECT_THAT(seen, ElementsAre("cursorarrow Custom cursor themes 0",
                                  "arrow.up.left.and.arrow.down.right Adjustable cursor size 100",
                                  "arrow.clockwise Auto-apply on launch 200",
                                  "menubar.rectangle Menu bar integration 300"));
    EXPECT_EQ(AboutWindowModel::featuresTitle().english(), "Features");
    EXPECT_EQ(AboutWindowModel::featuresSymbol, "sparkles");
}

TEST_F(AboutWindowModelTest, NothingHasAppearedAtFirst) {
    const auto about = model();
    EXPECT_FALSE(about->appeared());
    EXPECT_FALSE(about->featuresAppeared());
    EXPECT_EQ(about->glowOpacity(), 0);
    EXPECT_LT(about->iconScale(), 1);
    for (const auto& row : about->features()) EXPECT_FALSE(row.appeared);
}

TEST_F(AboutWindowModelTest, EachTimeItAppearsTheEntranceBeginsAgain) {
    const auto about = model();
    std::vector<std::pair<bool, double>> states;
    const auto observer = about->changed.observe([&] {
        states.emplace_back(about->appeared(), about->iconScale());
        EXPECT_EQ(about->featuresAppeared(), about->appeared());
        EXPECT_EQ(about->glowOpacity(), about->appeared() ? 1 : 0);
        for (const auto& row : about->features()) EXPECT_EQ(row.appeared, about->appeared());
    });
    about->appear();
    about->appear();
    EXPECT_THAT(states, ElementsAre(std::pair(false, 0.8), std::pair(true, 1.0), std::pair(false, 0.8),
                                    std::pair(true, 1.0)));
}

TEST_F(AboutWindowModelTest, TheContactLinkOpensTheMailProgram) {
    model()->openContact();
    EXPECT_THAT(transcript, ElementsAre("application openUrl mailto:" + AboutWindowModel::contactAddress()));
    EXPECT_THAT(AboutWindowModel::contactAddress(), testing::ContainsRegex("^[^@ ]+@[^@ ]+$"));
}

TEST_F(AboutWindowModelTest, DismissingClosesTheWindow) {
    model()->dismiss();
    EXPECT_EQ(dismissed, 1);
    AboutWindowModel(bundle, application).dismiss();
}

}  // namespace
}  // namespace pintle
