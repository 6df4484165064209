#include "platform/wayland/wayland_window_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>

#include "cursor/xcursor_parser.h"
#include "platform/fake/fake_log.h"
#include "platform/fake/fake_window_server.h"
#include "platform/fake/virtual_scheduler.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/xcursor_builder.h"
#include "tests/wayland/fake_provider.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using wayland::FakeProvider;
using wayland::FakeSettings;
using wayland::PointerSetting;

constexpr auto kArrow = "com.apple.coregraphics.Arrow";
constexpr auto kBeam = "com.apple.coregraphics.IBeam";

RegisteredCursor cursor(const std::string& identifier, int side, std::uint8_t colour = 7) {
    RegisteredCursor made;
    made.identifier = identifier;
    made.size = {static_cast<double>(side), static_cast<double>(side)};
    made.images = {*Bitmap::create(side, side, [&](auto bytes) {
        for (auto& byte : bytes) byte = colour;
    })};
    return made;
}

class WaylandSession : public ::testing::Test {
  protected:
    WaylandSession() {
        writeFile(icons_.data / "Mine" / "cursors" / "left_ptr",
                  XCursorBuilder().image({.size = 24, .xhot = 3}).image({.size = 48}).bytes());
    }
    ~WaylandSession() override { server_.reset(); }

    void start() {
        server_.reset();
        std::vector<std::unique_ptr<wayland::SettingsProvider>> providers;
        if (hasProvider_) providers.push_back(std::make_unique<FakeProvider>("desktop", settings_));
        server_ = makeWaylandWindowServer({
            .queue = scheduler_.mainQueue(),
            .background = scheduler_.backgroundTasks(),
            .log = log_,
            .environment = [this](const std::string& name) -> std::optional<std::string> {
                const auto found = variables_.find(name);
                if (found == variables_.end()) return std::nullopt;
                return found->second;
            },
            .icons = icons_,
            .stateFile = folder_.path() / "Pintle" / "pointer_setting.json",
            .providers = std::move(providers),
            .outputScales = [this] { return scales_; },
            .observeCompositor =
                [this](std::function<void(CompositorNews)> handler) {
                    report_ = std::move(handler);
                    return Subscription([this] { report_ = nullptr; });
                },
            .cursorScale = [this] { return scale_; },
            .xPixelsPerPoint = [this] { return xDensity_; },
            .makeXServer = [this](auto desktopTheme) -> std::unique_ptr<WindowServer> {
                if (!hasX_) return nullptr;
                xDesktop_ = std::move(desktopTheme);
                auto made = std::make_unique<FakeWindowServer>();
                x_ = made.get();
                return made;
            },
        });
    }
    RegistrationAnswer wish(const RegisteredCursor& wanted) {
        return server_->registerCursorWithImages(1, wanted, RegistrationPurpose::theme);
    }
    /// A turn of the main queue, and what follows from it.
    void turn() {
        server_->flush();
        scheduler_.runUntilIdle();
    }
    /// Nominal sizes and widths in a file of a theme.
    std::vector<std::pair<std::int64_t, std::int64_t>> sizesIn(const std::string& theme,
                                                               const std::string& name) {
        std::vector<std::pair<std::int64_t, std::int64_t>> sizes;
        if (const auto images =
                XCursorParser::parseFile(icons_.data / theme / "cursors" / name, std::nullopt))
            for (const auto& image : *images) sizes.emplace_back(image.size, image.width);
        return sizes;
    }

    TemporaryFolder folder_;
    wayland::IconFolders icons_{folder_.path() / "share" / "icons", folder_.path() / ".icons"};
    FakeSettings settings_{PointerSetting{"Mine", "24"}};
    std::vector<double> scales_;
    double scale_ = 1;
    bool hasProvider_ = true;
    std::map<std::string, std::string> variables_;
    bool hasX_ = false;
    double xDensity_ = 1;
    std::function<std::pair<std::string, int>()> xDesktop_;
    /// Of the window server.
    FakeWindowServer* x_ = nullptr;
    std::function<void(CompositorNews)> report_;
    FakeLog log_;
    VirtualScheduler scheduler_;
    std::unique_ptr<WindowServer> server_;
};

TEST_F(WaylandSession, ARegistrationBecomesAThemeThatTheDesktopIsPointedAt) {
    start();
    ASSERT_TRUE(server_->provides(WindowServerFunction::registerCursorWithImages));
    EXPECT_EQ(wish(cursor(kArrow, 31)), 0);
    EXPECT_THAT(settings_.writes, IsEmpty());
    turn();
    EXPECT_EQ(settings_.value, (PointerSetting{"Pintle-A", "32"}));
    EXPECT_THAT(sizesIn("Pintle-A", "left_ptr"), ElementsAre(std::pair(32, 32)));
    EXPECT_EQ(fs::read_symlink(icons_.data / "Pintle-A" / "cursors" / "default"), "left_ptr");
    EXPECT_TRUE(fs::is_symlink(icons_.home / "Pintle-A"));
}

TEST_F(WaylandSession, TheUsersScaleAndTheOutputsSetTheSizes) {
    scale_ = 1.3;
    scales_ = {1, 2};
    start();
    wish(cursor(kArrow, 41));
    turn();
    EXPECT_EQ(settings_.value.size, "41");
    EXPECT_THAT(sizesIn("Pintle-A", "left_ptr"), ElementsAre(std::pair(41, 42), std::pair(82, 82)));
}

TEST_F(WaylandSession, ANewPictureComesUnderTheOtherName) {
    start();
    wish(cursor(kArrow, 32, 1));
    turn();
    wish(cursor(kArrow, 32, 2));
    turn();
    scheduler_.advance(300ms);
    EXPECT_EQ(settings_.value.theme, "Pintle-B");
    wish(cursor(kArrow, 32, 3));
    turn();
    scheduler_.advance(300ms);
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
}

TEST_F(WaylandSession, AnOutputOfAnotherScaleGetsPicturesOfItsOwn) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    scheduler_.advance(1s);
    scales_ = {2};
    report_(CompositorNews::changedOutputs);
    scheduler_.runUntilIdle();
    EXPECT_EQ(settings_.value.theme, "Pintle-B");
    EXPECT_THAT(sizesIn("Pintle-B", "left_ptr"), ElementsAre(std::pair(32, 32), std::pair(64, 64)));
}

TEST_F(WaylandSession, OutputsThatNeedNothingElseWriteNothing) {
    scales_ = {2};
    start();
    report_(CompositorNews::changedOutputs);
    scheduler_.runUntilIdle();
    EXPECT_THAT(settings_.writes, IsEmpty());
    wish(cursor(kArrow, 32));
    turn();
    // What a compositor reports of the very change that this theme is.
    for (int i = 0; i < 3; ++i) {
        report_(CompositorNews::changedOutputs);
        scheduler_.advance(1s);
    }
    EXPECT_EQ(settings_.writes.size(), 1U);
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
}

TEST_F(WaylandSession, AThemeThatTheCompositorForgotIsSetAgainAtMostOnceIn300Milliseconds) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    for (int i = 0; i < 5; ++i) report_(CompositorNews::forgotTheme);
    scheduler_.runUntilIdle();
    EXPECT_EQ(settings_.writes.size(), 1U);
    scheduler_.advance(300ms);
    EXPECT_EQ(settings_.writes.size(), 2U);
    EXPECT_EQ(settings_.value.theme, "Pintle-B");
    scheduler_.advance(10s);
    EXPECT_EQ(settings_.writes.size(), 2U);
}

TEST_F(WaylandSession, TheUsersOwnThemeIsNobodysToSetAgain) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    scheduler_.advance(1s);
    server_->coreCursorUnregisterAll(1);
    turn();
    const auto writes = settings_.writes.size();
    report_(CompositorNews::forgotTheme);
    report_(CompositorNews::changedOutputs);
    scheduler_.advance(1s);
    EXPECT_EQ(settings_.writes.size(), writes);
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
}

TEST_F(WaylandSession, WhatIsUnderWayAtTheEndIsDoneWhateverTheOutputsReported) {
    start();
    wish(cursor(kArrow, 32, 1));
    server_->flush();
    report_(CompositorNews::changedOutputs);
    server_.reset();
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
    EXPECT_FALSE(report_);
}

TEST_F(WaylandSession, ManyChangesAreOneWritingIn300MillisecondsAndTheLastOneWins) {
    start();
    for (std::uint8_t i = 1; i <= 20; ++i) {
        wish(cursor(kArrow, 32 + 2 * i));
        turn();
        scheduler_.advance(10ms);
    }
    EXPECT_EQ(settings_.writes.size(), 1U);
    scheduler_.advance(100ms);
    EXPECT_EQ(settings_.writes.size(), 2U);
    scheduler_.advance(10s);
    EXPECT_EQ(settings_.writes.size(), 2U);
    EXPECT_THAT(sizesIn("Pintle-B", "left_ptr"), ElementsAre(std::pair(32, 72)));
}

TEST_F(WaylandSession, TheSamePicturesAgainChangeNothing) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    for (int i = 0; i < 3; ++i) {
        scheduler_.advance(1s);
        server_->coreCursorUnregisterAll(1);
        wish(cursor(kArrow, 32));
        turn();
    }
    scheduler_.advance(1s);
    EXPECT_EQ(settings_.writes.size(), 1U);
}

TEST_F(WaylandSession, WithdrawingAllGivesTheSettingBackAndThenRemovesTheFolders) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    scheduler_.advance(1s);
    server_->coreCursorUnregisterAll(1);
    server_->registerCursorWithImages(1, cursor(kArrow, 24), RegistrationPurpose::original);
    turn();
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
    EXPECT_FALSE(fs::exists(icons_.data / "Pintle-A"));
    EXPECT_FALSE(fs::is_symlink(icons_.home / "Pintle-A"));
    EXPECT_TRUE(fs::exists(icons_.data / "Mine"));
}

TEST_F(WaylandSession, FoldersStayWhileASettingStillNamesThem) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    scheduler_.advance(1s);
    settings_.writable = false;
    server_->coreCursorUnregisterAll(1);
    turn();
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
    EXPECT_TRUE(fs::exists(icons_.data / "Pintle-A"));
    settings_.writable = true;
    server_->coreCursorUnregisterAll(1);
    scheduler_.advance(1s);
    turn();
    EXPECT_EQ(settings_.value.theme, "Mine");
    EXPECT_FALSE(fs::exists(icons_.data / "Pintle-A"));
}

TEST_F(WaylandSession, TheEndCompletesWhatIsPending) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    server_->coreCursorUnregisterAll(1);
    server_->flush();
    server_.reset();
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
}

TEST_F(WaylandSession, WorkThatBeginsAfterTheEndIsLeftOut) {
    start();
    scheduler_.holdBackground(true);
    wish(cursor(kArrow, 32));
    turn();
    server_->coreCursorUnregisterAll(1);
    server_.reset();
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
    scheduler_.holdBackground(false);
    scheduler_.runUntilIdle();
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
}

TEST_F(WaylandSession, AnEndWithoutChangesLeavesTheThemeInForce) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    server_.reset();
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
}

TEST_F(WaylandSession, AfterAKillTheNextOneGivesTheUsersOwnBack) {
    start();
    wish(cursor(kArrow, 32));
    turn();
    (void)server_.release();  // Nothing of it runs any more.
    start();
    const auto copied = server_->copyRegisteredCursorImages(1, kArrow);
    EXPECT_EQ(copied.cursor.size.width, 24);
    server_->coreCursorUnregisterAll(1);
    turn();
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
    EXPECT_FALSE(fs::exists(icons_.data / "Pintle-A"));
}

TEST_F(WaylandSession, TheDesktopsOwnPictureIsTheUsersAlsoWhileOursIsInForce) {
    start();
    const auto before = server_->copyRegisteredCursorImages(1, kArrow);
    ASSERT_EQ(before.error, 0);
    EXPECT_EQ(before.cursor.size.width, 24);
    EXPECT_EQ(before.cursor.hotspot.x, 3);
    wish(cursor(kArrow, 40));
    turn();
    const auto during = server_->copyRegisteredCursorImages(1, kArrow);
    EXPECT_EQ(during.cursor, before.cursor);
    EXPECT_NE(server_->copyRegisteredCursorImages(1, "com.apple.cursor.99").error, 0);
}

TEST_F(WaylandSession, ProgramsOfTheXServerGetThePictureAtOnceWithItsOwnPixels) {
    hasX_ = true;
    start();
    auto dense = cursor(kArrow, 64);
    dense.size = {32, 32};
    dense.pixelsPerPoint = 2;
    EXPECT_EQ(wish(dense), 0);
    EXPECT_THAT(x_->registrations, ElementsAre(dense));
    turn();
    EXPECT_GE(x_->flushes, 1);
    EXPECT_THAT(sizesIn("Pintle-A", "left_ptr"), ElementsAre(std::pair(32, 32)));
}

TEST_F(WaylandSession, WhatTheXServerRefusesStillReachesTheSetting) {
    hasX_ = true;
    start();
    x_->registerErrors[kArrow] = 11;
    x_->unregisterError = 11;
    EXPECT_EQ(wish(cursor(kArrow, 32)), 0);
    turn();
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
    EXPECT_EQ(server_->coreCursorUnregisterAll(1), 0);
    scheduler_.advance(1s);
    turn();
    EXPECT_EQ(settings_.value.theme, "Mine");
}

TEST_F(WaylandSession, ProgramsOfTheXServerGetTheUsersOwnBackInItsPixelsAlsoWhileOursIsInForce) {
    hasX_ = true;
    start();
    EXPECT_EQ(xDesktop_(), std::pair(std::string("Mine"), 24));
    xDensity_ = 2;
    EXPECT_EQ(xDesktop_(), std::pair(std::string("Mine"), 48));
    wish(cursor(kArrow, 32));
    turn();
    ASSERT_EQ(settings_.value.theme, "Pintle-A");
    EXPECT_EQ(xDesktop_(), std::pair(std::string("Mine"), 48));
    xDensity_ = std::numeric_limits<double>::infinity();
    EXPECT_EQ(xDesktop_().second, 96);
}

TEST_F(WaylandSession, TheSizeOfTheEnvironmentIsThatOfProgramsOfTheXServerUnlessItIsOurs) {
    hasX_ = true;
    xDensity_ = 2;
    variables_ = {{"XCURSOR_THEME", "Mine"}, {"XCURSOR_SIZE", "30"}};
    start();
    EXPECT_EQ(xDesktop_().second, 30);
    variables_["XCURSOR_SIZE"] = "no size";
    EXPECT_EQ(xDesktop_().second, 48);
    variables_ = {{"XCURSOR_THEME", "Pintle-A"}, {"XCURSOR_SIZE", "32"}};
    EXPECT_EQ(xDesktop_().second, 48);
}

TEST_F(WaylandSession, WithoutAProviderEveryFunctionIsMissing) {
    hasProvider_ = false;
    start();
    EXPECT_FALSE(server_->provides(WindowServerFunction::registerCursorWithImages));
    EXPECT_NE(wish(cursor(kArrow, 32)), 0);
    EXPECT_NE(server_->coreCursorUnregisterAll(1), 0);
    EXPECT_NE(server_->copyRegisteredCursorImages(1, kArrow).error, 0);
    turn();
    EXPECT_FALSE(fs::exists(icons_.home));
}

TEST_F(WaylandSession, RecordsThatDoNotHoldTheirFramesAreRefusedAndOthersWithoutNamesAccepted) {
    start();
    auto broken = cursor(kArrow, 32);
    broken.frameCount = 2;
    EXPECT_NE(wish(broken), 0);
    EXPECT_EQ(wish(cursor("com.apple.cursor.99", 32)), 0);
    turn();
    EXPECT_THAT(settings_.writes, IsEmpty());
}

TEST_F(WaylandSession, AnIconFolderThatCannotBeWrittenLeavesTheSettingAndIsTriedAgain) {
    fs::rename(icons_.data, folder_.path() / "aside");
    writeFile(icons_.data, "a file");
    start();
    wish(cursor(kArrow, 32));
    turn();
    EXPECT_EQ(settings_.value, (PointerSetting{"Mine", "24"}));
    EXPECT_EQ(log_.systemLines.size(), 1U);
    fs::remove(icons_.data);
    scheduler_.advance(1s);
    wish(cursor(kArrow, 32));
    turn();
    EXPECT_EQ(settings_.value.theme, "Pintle-A");
}

TEST_F(WaylandSession, TheUsersThemeIsAskedForWhatOursLacks) {
    start();
    wish(cursor(kBeam, 32));
    turn();
    std::ifstream index(icons_.data / "Pintle-A" / "index.theme");
    const std::string text{std::istreambuf_iterator<char>(index), {}};
    EXPECT_THAT(text, ::testing::HasSubstr("\nInherits=Mine\n"));
}

}  // namespace
}  // namespace pintle
