#include "settings/cursor_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <functional>
#include <limits>

#include "platform/fake/fake_key_value_store.h"
#include "settings/notification_names.h"
#include "settings/typed_defaults.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

constexpr std::string_view kNotifications[] = {
    notification::cursorScaleChanged, notification::alwaysUseThemedCursorChanged,
    notification::excludedAppsChanged, notification::glassModeChanged};

/// What a notification carried, as text with its type.
std::string described(const std::any& object) {
    if (const auto* number = std::any_cast<double>(&object)) return "double " + std::to_string(*number);
    if (const auto* flag = std::any_cast<bool>(&object)) return *flag ? "bool true" : "bool false";
    if (const auto* list = std::any_cast<Texts>(&object)) {
        std::string text = "list";
        for (const auto& each : *list) text += " " + each;
        return text;
    }
    return "something else";
}

struct CursorSettingsTest : testing::Test {
    FakeKeyValueStore store;
    NotificationCenter notifications;
    CursorSettings settings{store, notifications};

    /// Every publication, change in the store and notification in the order in which they came.
    Texts events;
    std::vector<Subscription> subscriptions;

    void SetUp() override {
        subscriptions.push_back(settings.changed.observe([this] { events.emplace_back("changed"); }));
        for (const auto* key : {"cursorScale", "currentThemeId", "applyOnLaunch", "restoreOnQuit",
                                "alwaysUseThemedCursor", "useSystemCursorForMissing", "excludedApps",
                                "glassMode", "glassOpacity", "pauseWhenScreenShared"})
            subscriptions.push_back(
                store.observe(key, [this, key] { events.push_back(std::string("stored ") + key); }));
        for (const auto name : kNotifications)
            subscriptions.push_back(
                notifications.observe(std::string(name), [this, name](const auto& object) {
                    events.push_back("posted " + std::string(name) + " " + described(object));
                }));
    }

    std::optional<PropertyValue> stored(const std::string& key) const {
        const auto found = store.domain->find(key);
        return found == store.domain->end() ? std::nullopt : std::optional(found->second);
    }
    std::size_t postings() const {
        std::size_t count = 0;
        for (const auto& event : events)
            if (event.starts_with("posted ")) ++count;
        return count;
    }
};

TEST_F(CursorSettingsTest, AStoredScaleAtWhichNothingCanBeDrawnReadsAsZeroAndStaysInTheStore) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& value :
         {PropertyValue(nan), PropertyValue(infinity), PropertyValue(-infinity), PropertyValue(1e18),
          PropertyValue(-1e18), PropertyValue(1e308), PropertyValue("1e18"),
          PropertyValue(std::numeric_limits<std::int64_t>::max())}) {
        FakeKeyValueStore prepared;
        prepared.domain->insert_or_assign("cursorScale", value);
        CursorSettings loaded(prepared, notifications);
        EXPECT_EQ(loaded.cursorScale(), 0.0);
        EXPECT_TRUE(prepared.domain->contains("cursorScale"));
        loaded.setCursorScale(1.25);
        EXPECT_EQ(CursorSettings(prepared, notifications).cursorScale(), 1.25);
    }
    for (const double value : {0.0, -1.0, 10.0, 1e9}) {
        FakeKeyValueStore prepared;
        prepared.domain->insert_or_assign("cursorScale", PropertyValue(value));
        EXPECT_EQ(CursorSettings(prepared, notifications).cursorScale(), value);
    }
}

TEST_F(CursorSettingsTest, AFreshInstallReadsTheRegisteredDefaults) {
    EXPECT_EQ(settings.cursorScale(), 1.0);
    EXPECT_TRUE(settings.applyOnLaunch());
    EXPECT_FALSE(settings.restoreOnQuit());
    EXPECT_FALSE(settings.alwaysUseThemedCursor());
    EXPECT_TRUE(settings.useSystemCursorForMissing());
    EXPECT_THAT(settings.excludedApps(), IsEmpty());
    EXPECT_TRUE(settings.glassMode());
    EXPECT_EQ(settings.glassOpacity(), 0.85);
    EXPECT_TRUE(settings.pauseWhenScreenShared());
    EXPECT_EQ(settings.currentThemeId(), std::nullopt);
    EXPECT_FALSE(boolValue(store, CursorSettings::launchAtLoginKey));
}

TEST_F(CursorSettingsTest, RegistersExactlyNineDefaultsInOneCallAndWritesNothing) {
    EXPECT_EQ(store.registerDefaultsCalls, 1);
    EXPECT_EQ(store.defaults, (PropertyDictionary{{"cursorScale", 1.0},
                                                  {"applyOnLaunch", true},
                                                  {"restoreOnQuit", false},
                                                  {"alwaysUseThemedCursor", false},
                                                  {"useSystemCursorForMissing", true},
                                                  {"excludedApps", PropertyArray{}},
                                                  {"glassMode", true},
                                                  {"glassOpacity", 0.85},
                                                  {"pauseWhenScreenShared", true}}));
    EXPECT_THAT(*store.domain, IsEmpty());
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_THAT(store.removals, IsEmpty());
}

TEST_F(CursorSettingsTest, LoadsEveryPropertyFromTheStore) {
    FakeKeyValueStore prepared;
    *prepared.domain = {{"cursorScale", 1.25},
                        {"currentThemeId", "banana"},
                        {"applyOnLaunch", false},
                        {"restoreOnQuit", true},
                        {"alwaysUseThemedCursor", true},
                        {"useSystemCursorForMissing", false},
                        {"excludedApps", PropertyArray{"Photos", "Draw"}},
                        {"glassMode", false},
                        {"glassOpacity", 0.5},
                        {"pauseWhenScreenShared", false}};
    const CursorSettings loaded(prepared, notifications);
    EXPECT_EQ(loaded.cursorScale(), 1.25);
    EXPECT_EQ(loaded.currentThemeId(), "banana");
    EXPECT_FALSE(loaded.applyOnLaunch());
    EXPECT_TRUE(loaded.restoreOnQuit());
    EXPECT_TRUE(loaded.alwaysUseThemedCursor());
    EXPECT_FALSE(loaded.useSystemCursorForMissing());
    EXPECT_THAT(loaded.excludedApps(), ElementsAre("Photos", "Draw"));
    EXPECT_FALSE(loaded.glassMode());
    EXPECT_EQ(loaded.glassOpacity(), 0.5);
    EXPECT_FALSE(loaded.pauseWhenScreenShared());
}

TEST_F(CursorSettingsTest, IllTypedValuesFallBackToZeroFalseAbsentAndEmpty) {
    FakeKeyValueStore prepared;
    *prepared.domain = {{"cursorScale", PropertyArray{}},
                        {"currentThemeId", PropertyDictionary{}},
                        {"applyOnLaunch", PropertyArray{}},
                        {"useSystemCursorForMissing", "perhaps"},
                        {"excludedApps", PropertyArray{"Photos", 3}},
                        {"glassMode", PropertyData{1}},
                        {"glassOpacity", "none"},
                        {"pauseWhenScreenShared", PropertyDate{1}}};
    const CursorSettings loaded(prepared, notifications);
    EXPECT_EQ(loaded.cursorScale(), 0.0);
    EXPECT_EQ(loaded.currentThemeId(), std::nullopt);
    EXPECT_FALSE(loaded.applyOnLaunch());
    EXPECT_FALSE(loaded.useSystemCursorForMissing());
    EXPECT_THAT(loaded.excludedApps(), IsEmpty());
    EXPECT_FALSE(loaded.glassMode());
    EXPECT_EQ(loaded.glassOpacity(), 0.0);
    EXPECT_FALSE(loaded.pauseWhenScreenShared());
}

TEST_F(CursorSettingsTest, ExcludedAppsThatAreNoArrayReadAsEmpty) {
    FakeKeyValueStore prepared;
    *prepared.domain = {{"excludedApps", "Photos"}};
    EXPECT_THAT(CursorSettings(prepared, notifications).excludedApps(), IsEmpty());
}

TEST_F(CursorSettingsTest, AScaleIsPublishedThenStoredThenPosted) {
    settings.setCursorScale(1.5);
    EXPECT_THAT(events,
                ElementsAre("changed", "stored cursorScale", "posted cursorScaleChanged double 1.500000"));
    EXPECT_EQ(stored("cursorScale"), PropertyValue(1.5));
    EXPECT_EQ(settings.cursorScale(), 1.5);
}

TEST_F(CursorSettingsTest, AlwaysUseThemedCursorIsPublishedThenStoredThenPosted) {
    settings.setAlwaysUseThemedCursor(true);
    EXPECT_THAT(events, ElementsAre("changed", "stored alwaysUseThemedCursor",
                                    "posted alwaysUseThemedCursorChanged bool true"));
    EXPECT_EQ(stored("alwaysUseThemedCursor"), PropertyValue(true));
}

TEST_F(CursorSettingsTest, ExcludedAppsArePublishedThenStoredThenPosted) {
    settings.setExcludedApps({"Photos", "Draw"});
    EXPECT_THAT(events,
                ElementsAre("changed", "stored excludedApps", "posted excludedAppsChanged list Photos Draw"));
    EXPECT_EQ(stored("excludedApps"), PropertyValue(PropertyArray{"Photos", "Draw"}));
}

TEST_F(CursorSettingsTest, GlassModeIsPublishedThenStoredThenPosted) {
    settings.setGlassMode(false);
    EXPECT_THAT(events, ElementsAre("changed", "stored glassMode", "posted glassModeChanged bool false"));
    EXPECT_EQ(stored("glassMode"), PropertyValue(false));
}

TEST_F(CursorSettingsTest, TheOtherPropertiesArePublishedThenStoredAndPostNothing) {
    settings.setCurrentThemeId("banana");
    settings.setApplyOnLaunch(false);
    settings.setUseSystemCursorForMissing(false);
    settings.setGlassOpacity(0.4);
    settings.setPauseWhenScreenShared(false);
    EXPECT_THAT(events, ElementsAre("changed", "stored currentThemeId", "changed", "stored applyOnLaunch",
                                    "changed", "stored useSystemCursorForMissing", "changed",
                                    "stored glassOpacity", "changed", "stored pauseWhenScreenShared"));
    EXPECT_EQ(*store.domain, (PropertyDictionary{{"currentThemeId", "banana"},
                                                 {"applyOnLaunch", false},
                                                 {"useSystemCursorForMissing", false},
                                                 {"glassOpacity", 0.4},
                                                 {"pauseWhenScreenShared", false}}));
}

TEST_F(CursorSettingsTest, RestoreOnQuitIsPublishedButNeverWritten) {
    settings.setRestoreOnQuit(true);
    EXPECT_TRUE(settings.restoreOnQuit());
    EXPECT_THAT(events, ElementsAre("changed"));
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_THAT(*store.domain, IsEmpty());
}

TEST_F(CursorSettingsTest, RestoreOnQuitLagsBehindAKeyThatOthersWrite) {
    store.set("restoreOnQuit", true);
    EXPECT_FALSE(settings.restoreOnQuit());
}

TEST_F(CursorSettingsTest, ObserversOfTheChangeSeeTheNewPropertyAndTheOldStoredValue) {
    std::string seen;
    const auto observer = settings.changed.observe([&] {
        seen =
            std::to_string(settings.cursorScale()) + " " + std::to_string(doubleValue(store, "cursorScale"));
    });
    settings.setCursorScale(1.25);
    EXPECT_EQ(seen, "1.250000 1.000000");
}

TEST_F(CursorSettingsTest, ANotificationHandlerReadsTheNewValueFromTheStore) {
    double seen = 0;
    const auto observer = notifications.observe(
        "cursorScaleChanged", [&](const std::any&) { seen = doubleValue(store, "cursorScale"); });
    settings.setCursorScale(1.25);
    EXPECT_EQ(seen, 1.25);
}

TEST_F(CursorSettingsTest, AnObserverThatSetsThePropertyAgainHasTheLastWord) {
    const auto observer = settings.changed.observe([&] {
        if (settings.cursorScale() > 1.5) settings.setCursorScale(1.5);
    });
    settings.setCursorScale(3);
    EXPECT_EQ(settings.cursorScale(), 1.5);
    EXPECT_EQ(stored("cursorScale"), PropertyValue(1.5));
    EXPECT_EQ(events.back(), "posted cursorScaleChanged double 1.500000");
}

TEST_F(CursorSettingsTest, AnyScaleIsStoredAndAnnouncedExactly) {
    settings.setCursorScale(0);
    EXPECT_EQ(stored("cursorScale"), PropertyValue(0.0));
    EXPECT_EQ(events.back(), "posted cursorScaleChanged double 0.000000");
    settings.setCursorScale(10);
    EXPECT_EQ(stored("cursorScale"), PropertyValue(10.0));
    EXPECT_EQ(events.back(), "posted cursorScaleChanged double 10.000000");
}

TEST_F(CursorSettingsTest, AssigningGlassModeItsPresentValueStoresAndPosts) {
    ASSERT_TRUE(settings.glassMode());
    settings.setGlassMode(true);
    settings.setGlassMode(true);
    EXPECT_THAT(store.writes, ElementsAre("glassMode", "glassMode"));
    EXPECT_EQ(stored("glassMode"), PropertyValue(true));
    EXPECT_THAT(events, ElementsAre("changed", "posted glassModeChanged bool true", "changed",
                                    "posted glassModeChanged bool true"));
}

TEST_F(CursorSettingsTest, EveryStoredPropertyIsWrittenAlsoWhenEqual) {
    for (int round = 0; round < 2; ++round) {
        store.writes.clear();
        settings.setCursorScale(1);
        settings.setCurrentThemeId("banana");
        settings.setApplyOnLaunch(true);
        settings.setAlwaysUseThemedCursor(false);
        settings.setUseSystemCursorForMissing(true);
        settings.setExcludedApps({});
        settings.setGlassMode(true);
        settings.setGlassOpacity(0.85);
        settings.setPauseWhenScreenShared(true);
        EXPECT_THAT(store.writes,
                    ElementsAre("cursorScale", "currentThemeId", "applyOnLaunch", "alwaysUseThemedCursor",
                                "useSystemCursorForMissing", "excludedApps", "glassMode", "glassOpacity",
                                "pauseWhenScreenShared"));
    }
    EXPECT_EQ(postings(), 8u);
}

TEST_F(CursorSettingsTest, AnAbsentThemeIdRemovesTheKeySoThatTheNextStartFindsNone) {
    settings.setCurrentThemeId("banana");
    EXPECT_EQ(CursorSettings(store, notifications).currentThemeId(), "banana");
    settings.setCurrentThemeId(std::nullopt);
    EXPECT_EQ(stored("currentThemeId"), std::nullopt);
    EXPECT_THAT(store.removals, ElementsAre("currentThemeId"));
    EXPECT_EQ(CursorSettings(store, notifications).currentThemeId(), std::nullopt);
}

TEST_F(CursorSettingsTest, AddingANameTwiceLeavesOneEntryAndPostsOnce) {
    settings.addExcludedApp("Photos");
    settings.addExcludedApp("Photos");
    EXPECT_THAT(settings.excludedApps(), ElementsAre("Photos"));
    EXPECT_EQ(postings(), 1u);
    EXPECT_THAT(store.writes, ElementsAre("excludedApps"));
}

TEST_F(CursorSettingsTest, ANameInOtherLetterCaseIsAnotherName) {
    settings.addExcludedApp("Photos");
    settings.addExcludedApp("photos");
    EXPECT_THAT(settings.excludedApps(), ElementsAre("Photos", "photos"));
    EXPECT_EQ(events.back(), "posted excludedAppsChanged list Photos photos");
}

TEST_F(CursorSettingsTest, NamesAreNeitherTrimmedNorRefused) {
    settings.addExcludedApp(" Photos ");
    settings.addExcludedApp("");
    EXPECT_THAT(settings.excludedApps(), ElementsAre(" Photos ", ""));
}

TEST_F(CursorSettingsTest, RemovingANameThatIsNotInTheListDoesNothing) {
    settings.addExcludedApp("Photos");
    events.clear();
    store.writes.clear();
    settings.removeExcludedApp("photos");
    EXPECT_THAT(events, IsEmpty());
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_THAT(settings.excludedApps(), ElementsAre("Photos"));
}

TEST_F(CursorSettingsTest, RemovingANameTakesTheFirstOfEqualEntries) {
    settings.setExcludedApps({"Draw", "Photos", "Write", "Photos"});
    settings.removeExcludedApp("Photos");
    EXPECT_THAT(settings.excludedApps(), ElementsAre("Draw", "Write", "Photos"));
    EXPECT_EQ(stored("excludedApps"), PropertyValue(PropertyArray{"Draw", "Write", "Photos"}));
    EXPECT_EQ(events.back(), "posted excludedAppsChanged list Draw Write Photos");
}

TEST_F(CursorSettingsTest, ThemeErrorsAreKeptByTheme) {
    EXPECT_EQ(settings.themeError("banana"), std::nullopt);
    settings.setThemeError("banana", "Not found");
    settings.setThemeError("fuchsia", "Timed out");
    settings.setThemeError("banana", "Offline");
    EXPECT_EQ(settings.themeError("banana"), "Offline");
    EXPECT_EQ(settings.themeError("fuchsia"), "Timed out");
    EXPECT_EQ(settings.themeError("breezex"), std::nullopt);
    EXPECT_EQ(stored("themeDownloadErrors"),
              PropertyValue(PropertyDictionary{{"banana", "Offline"}, {"fuchsia", "Timed out"}}));
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(CursorSettingsTest, ClearingAThemeErrorAlwaysWritesTheMap) {
    settings.clearThemeError("banana");
    EXPECT_EQ(stored("themeDownloadErrors"), PropertyValue(PropertyDictionary{}));
    settings.setThemeError("banana", "Offline");
    settings.setThemeError("fuchsia", "Timed out");
    settings.clearThemeError("banana");
    settings.clearThemeError("banana");
    EXPECT_EQ(stored("themeDownloadErrors"), PropertyValue(PropertyDictionary{{"fuchsia", "Timed out"}}));
    EXPECT_THAT(store.writes, testing::SizeIs(5));
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(CursorSettingsTest, ThemeErrorsOfWhichOneIsANumberReadAsEmptyAndAreReplacedWhole) {
    store.set("themeDownloadErrors", PropertyDictionary{{"banana", "Offline"}, {"fuchsia", 404}});
    EXPECT_EQ(settings.themeError("banana"), std::nullopt);
    EXPECT_EQ(settings.themeError("fuchsia"), std::nullopt);
    settings.setThemeError("breezex", "Timed out");
    EXPECT_EQ(stored("themeDownloadErrors"), PropertyValue(PropertyDictionary{{"breezex", "Timed out"}}));
}

TEST_F(CursorSettingsTest, ThemeErrorsThatAreNoDictionaryAreOverwrittenByAClear) {
    store.set("themeDownloadErrors", "Offline");
    EXPECT_EQ(settings.themeError("banana"), std::nullopt);
    settings.clearThemeError("banana");
    EXPECT_EQ(stored("themeDownloadErrors"), PropertyValue(PropertyDictionary{}));
}

TEST_F(CursorSettingsTest, TheLaunchAtLoginKeyIsNeverTouched) {
    for (const bool value : {true, false}) {
        settings.setApplyOnLaunch(value);
        settings.setRestoreOnQuit(value);
        settings.setAlwaysUseThemedCursor(value);
        settings.setUseSystemCursorForMissing(value);
        settings.setGlassMode(value);
        settings.setPauseWhenScreenShared(value);
    }
    settings.setCursorScale(2);
    settings.setGlassOpacity(0.5);
    settings.setCurrentThemeId("banana");
    settings.setCurrentThemeId(std::nullopt);
    settings.setExcludedApps({"a"});
    settings.addExcludedApp("b");
    settings.removeExcludedApp("b");
    settings.setThemeError("banana", "error");
    settings.clearThemeError("banana");
    ASSERT_GE(store.writes.size() + store.removals.size(), 10u);
    EXPECT_THAT(store.removals, testing::Not(testing::Contains("launchAtLogin")));
    EXPECT_EQ(std::string(CursorSettings::launchAtLoginKey), "launchAtLogin");
    EXPECT_FALSE(store.defaults.contains("launchAtLogin"));
    EXPECT_THAT(store.writes, testing::Not(testing::Contains("launchAtLogin")));
}

TEST_F(CursorSettingsTest, AfterTheDomainIsRemovedOnlyWhatIsSetAgainIsStored) {
    settings.setGlassMode(false);
    settings.setCurrentThemeId("banana");
    store.removeDomain();
    events.clear();
    settings.setCursorScale(1.0);
    EXPECT_EQ(*store.domain, (PropertyDictionary{{"cursorScale", 1.0}}));
    EXPECT_EQ(events.back(), "posted cursorScaleChanged double 1.000000");
    EXPECT_FALSE(settings.glassMode());
    EXPECT_EQ(settings.currentThemeId(), "banana");
    EXPECT_TRUE(CursorSettings(store, notifications).glassMode());
}

TEST_F(CursorSettingsTest, SharedAnswersWhatIsInstalled) {
    CursorSettings::install(settings);
    EXPECT_EQ(&CursorSettings::shared(), &settings);
    {
        CursorSettings other(store, notifications);
        CursorSettings::install(other);
        EXPECT_EQ(&CursorSettings::shared(), &other);
    }
    EXPECT_DEATH(CursorSettings::shared(), "");
}

TEST(NotificationNames, TheRequestsOfTheInterfaceHaveTheirNames) {
    EXPECT_EQ(notification::openSettingsRequest, "openSettingsRequest");
    EXPECT_EQ(notification::openAboutRequest, "openAboutRequest");
    EXPECT_EQ(notification::quitAppRequest, "quitAppRequest");
}

}  // namespace
}  // namespace pintle
