// Applies, changes of scale and resets at seeded moments between seeded steps of main and background work:
// whatever the order, the last request decides what is on screen.
#include <gtest/gtest.h>

#include <random>

#include "apply/theme_loading.h"
#include "tests/support/cursor_world.h"

namespace pintle {
namespace {

struct Theme {
    const char* id;
    std::uint32_t colour;
};
constexpr Theme kThemes[] = {{"bibata-modern-ice", 0x102030}, {"banana", 0xC0B000}, {"fuchsia", 0xA020A0}};
constexpr double kScales[] = {0.75, 1.0, 1.25, 1.5};
constexpr double kDensities[] = {1, 1.5, 2};

using Registered = std::map<std::string, RegisteredCursor>;

/// What the window server holds when nothing but this theme has ever been requested.
Registered wholeTheme(const CursorWorld& world, const std::string& id, double scale, double density) {
    const auto essential = loadEssentialSet(world.cursorsOf(id), scale, density);
    const auto plan =
        planRegistration(completeSet(essential, loadRemainingImages(essential), scale, density));
    Registered registered;
    for (const auto& image : plan->images) registered.emplace(image.identifier, image.toRegisteredCursor());
    return registered;
}

void expectTheLastRequestToWin(std::uint64_t seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937_64 random(seed);
    const auto pick = [&](std::size_t count) { return static_cast<std::size_t>(random() % count); };

    CursorWorld world;
    for (const auto& [id, colour] : kThemes) world.writeTheme(id, colour);
    world.themes.loadThemes();
    world.pipeline.observeScale();
    world.scheduler.shuffle(seed);

    const Theme* theme = nullptr;
    const auto requests = 3 + pick(8);
    for (std::size_t i = 0; i < requests; ++i) {
        switch (pick(5)) {
            case 0:
            case 1:
                theme = &kThemes[pick(std::size(kThemes))];
                world.pipeline.applyTheme(world.theme(theme->id));
                break;
            case 2:
                world.settings.setCursorScale(kScales[pick(std::size(kScales))]);
                break;
            case 3:
                theme = nullptr;
                world.pipeline.resetToDefault();
                break;
            case 4:
                world.workspace.changeDensity(kDensities[pick(std::size(kDensities))]);
                break;
        }
        if (i + 1 == requests) break;
        for (auto steps = pick(12); steps > 0; --steps) world.scheduler.step();
    }
    const double scale = world.settings.cursorScale();

    // What a change of scale asks for is requested by its task, which waits in the main queue.
    const auto asks = [&] { return world.linesOf({"[CursorViewModel] Applying scale"}).size(); };
    const auto asked = asks();
    const auto issued = world.windowServer.registrations.size();
    auto newer = issued;
    while (world.scheduler.step())
        if (asks() > asked && newer == issued) newer = world.windowServer.registrations.size();

    const auto expected = theme ? wholeTheme(world, theme->id, scale, world.workspace.density) : Registered{};
    EXPECT_EQ(world.windowServer.registered, expected);
    for (auto i = newer; i < world.windowServer.registrations.size(); ++i) {
        const auto& registered = world.windowServer.registrations[i];
        ASSERT_TRUE(expected.contains(registered.identifier));
        EXPECT_EQ(registered, expected.at(registered.identifier)) << "an older request reached the screen";
    }

    EXPECT_EQ(world.changer.isActive(), theme != nullptr);
    EXPECT_EQ(world.pipeline.currentTheme().has_value(), theme != nullptr);
    const auto stored = world.store.object("currentThemeId");
    ASSERT_EQ(stored.has_value(), theme != nullptr);
    if (theme) {
        EXPECT_EQ(world.applier.currentScale(), scale);
        EXPECT_EQ(*stored, PropertyValue(theme->id));
        EXPECT_EQ(world.pipeline.currentTheme()->id, theme->id);
    }
    for (const auto& row : world.themes.themes()) EXPECT_FALSE(row.isApplying);
    EXPECT_TRUE(world.hints.active->empty());
}

constexpr std::uint64_t kSeedsPerGroup = 25;

class LastRequestWins : public testing::TestWithParam<std::uint64_t> {};

TEST_P(LastRequestWins, OverSeededOrdersOfMainAndBackgroundWork) {
    for (std::uint64_t i = 1; i <= kSeedsPerGroup; ++i)
        expectTheLastRequestToWin(GetParam() * kSeedsPerGroup + i);
}

INSTANTIATE_TEST_SUITE_P(Seeds, LastRequestWins, testing::Range<std::uint64_t>(0, 12));

}  // namespace
}  // namespace pintle
