#include "platform/wayland/wayland_window_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
            .environment = [](const std::string&) { return std::nullopt; },
            .icons = icons_,
            .stateFile = folder_.path() / "Pintle" / "pointer_setting.json",
            .providers = std::move(providers),
            .outputScales = [this] { return scales_; },
            .cursorScale = [this] { return scale_; },
            .makeXServer = {},
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
