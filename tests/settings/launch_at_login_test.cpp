#include "settings/launch_at_login.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/fake_login_item_service.h"
#include "settings/launch_agent_file.h"
#include "tests/support/test_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kBundle = "/Applications/Pintle.app";
constexpr const char* kExecutable = "/Applications/Pintle.app/Contents/MacOS/Pintle";

struct LaunchAtLoginTest : testing::Test {
    TestWorld world;
    FakeLoginItemService service;
    std::unique_ptr<LoginAgent> agent = makeLaunchAgentFile(world.directories.home, world.propertyLists);
    const std::filesystem::path file =
        world.directories.home / "Library" / "LaunchAgents" / "com.pintle.app.plist";

    LaunchAtLogin at(std::string bundle = kBundle, std::optional<std::string> executable = kExecutable,
                     LoginAgentRole role = LoginAgentRole::fallback) {
        return LaunchAtLogin(service, *agent, world.store, world.log,
                             {std::move(bundle), std::move(executable)}, role);
    }
    /// As on a desktop without the service, where the program lies in `program`.
    LaunchAtLogin withoutService(const std::string& program) {
        service.registerError = service.unregisterError = "Login item service not available";
        service.current = LoginItemStatus::notFound;
        return at(program, program, LoginAgentRole::standsInForService);
    }
    bool fileExists() const { return std::filesystem::exists(file); }
    std::optional<PropertyValue> stored(const std::string& key) const { return world.store.object(key); }
    PropertyDictionary fileContent() {
        std::ifstream in(file, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
        return *world.propertyLists.decode(bytes)->as<PropertyDictionary>();
    }
    std::string created() const { return "[LaunchAgent] Created plist at: " + file.string(); }
};

TEST_F(LaunchAtLoginTest, EnablingWithAWillingServiceWritesNoFileAndStoresTheBundlePath) {
    at().setLaunchAtLogin(true);
    EXPECT_THAT(service.calls, ElementsAre("register", "status"));
    EXPECT_FALSE(fileExists());
    EXPECT_EQ(stored("loginItemPath"), PropertyValue(kBundle));
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAtLogin] SMAppService status: 1, success: 1"));
}

TEST_F(LaunchAtLoginTest, ARegistrationThatRequiresApprovalWritesTheAgentTooAndKeepsBoth) {
    service.statusAfterRegister = LoginItemStatus::requiresApproval;
    at().setLaunchAtLogin(true);
    EXPECT_TRUE(fileExists());
    EXPECT_THAT(service.calls, ElementsAre("register", "status"));
    EXPECT_EQ(stored("loginItemPath"), PropertyValue(kBundle));
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAtLogin] SMAppService status: 2, success: 0",
                                                   "[LaunchAtLogin] Using LaunchAgent fallback", created()));
}

TEST_F(LaunchAtLoginTest, EveryStatusButEnabledCountsAsNotRegistered) {
    for (const auto status : {LoginItemStatus::notRegistered, LoginItemStatus::notFound}) {
        service.statusAfterRegister = status;
        world.log.systemLines.clear();
        at().setLaunchAtLogin(true);
        EXPECT_EQ(world.log.systemLines.front(),
                  "[LaunchAtLogin] SMAppService status: " + std::to_string(static_cast<int>(status)) +
                      ", success: 0");
        EXPECT_TRUE(fileExists());
        std::filesystem::remove(file);
    }
}

TEST_F(LaunchAtLoginTest, ARefusedRegistrationFallsBackWithoutAskingForTheStatus) {
    service.registerError = "Operation not permitted";
    at().setLaunchAtLogin(true);
    EXPECT_THAT(service.calls, ElementsAre("register"));
    EXPECT_FALSE(stored("loginItemPath"));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] SMAppService failed: Operation not permitted",
                            "[LaunchAtLogin] Using LaunchAgent fallback", created()));
}

TEST_F(LaunchAtLoginTest, TheAgentHoldsExactlyItsFourEntriesAsAnXmlPropertyList) {
    at().setLaunchAtLoginViaLaunchAgent(true);
    EXPECT_EQ(world.propertyLists.lastFormat, PropertyListFormat::xml);
    EXPECT_EQ(fileContent(), (PropertyDictionary{{"Label", "com.pintle.app"},
                                                 {"ProgramArguments", PropertyArray{kExecutable}},
                                                 {"RunAtLoad", true},
                                                 {"KeepAlive", false}}));
}

TEST_F(LaunchAtLoginTest, AnExistingAgentIsReplaced) {
    writeFile(file, std::string(10000, 'x'));
    at().setLaunchAtLoginViaLaunchAgent(true);
    EXPECT_EQ(fileContent().at("Label"), PropertyValue("com.pintle.app"));
}

TEST_F(LaunchAtLoginTest, ALinkInThePlaceOfTheAgentIsReplacedAndWhatItLeadsToIsLeftAlone) {
    const auto target = world.folder.path() / "target";
    writeFile(target, "somebody else's");
    std::filesystem::create_directories(agent->path().parent_path());
    std::filesystem::create_symlink(target, agent->path());
    ASSERT_TRUE(agent->write("/Applications/Pintle"));
    EXPECT_FALSE(std::filesystem::is_symlink(agent->path()));
    EXPECT_EQ(agent->program(), "/Applications/Pintle");
    EXPECT_EQ(std::filesystem::file_size(target), 15u);
}

TEST_F(LaunchAtLoginTest, DisablingWithAWillingServiceTouchesNoFile) {
    writeFile(file, std::string("left by somebody"));
    at().setLaunchAtLogin(false);
    EXPECT_THAT(service.calls, ElementsAre("unregister", "status"));
    EXPECT_TRUE(fileExists());
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAtLogin] SMAppService status: 0, success: 1"));
}

TEST_F(LaunchAtLoginTest, DisablingDoesNotForgetTheStoredPath) {
    at().setLaunchAtLogin(true);
    at().setLaunchAtLogin(false);
    EXPECT_EQ(stored("loginItemPath"), PropertyValue(kBundle));
}

TEST_F(LaunchAtLoginTest, DisablingCountsApprovalPendingAsNotRegistered) {
    service.statusAfterUnregister = LoginItemStatus::requiresApproval;
    at().setLaunchAtLogin(false);
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAtLogin] SMAppService status: 2, success: 1"));
}

TEST_F(LaunchAtLoginTest, DisablingAServiceThatStaysEnabledRemovesTheAgent) {
    writeFile(file, std::string("x"));
    service.statusAfterUnregister = LoginItemStatus::enabled;
    at().setLaunchAtLogin(false);
    EXPECT_FALSE(fileExists());
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] SMAppService status: 1, success: 0",
                            "[LaunchAtLogin] Using LaunchAgent fallback", "[LaunchAgent] Removed plist"));
}

TEST_F(LaunchAtLoginTest, DisablingRemovesTheAgentWhenUnregisteringFails) {
    writeFile(file, std::string("x"));
    service.unregisterError = "No such item";
    at().setLaunchAtLogin(false);
    EXPECT_FALSE(fileExists());
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] SMAppService failed: No such item",
                            "[LaunchAtLogin] Using LaunchAgent fallback", "[LaunchAgent] Removed plist"));
}

TEST_F(LaunchAtLoginTest, DisablingWithoutAnAgentFileLogsNothingInTheFallback) {
    at().setLaunchAtLoginViaLaunchAgent(false);
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(LaunchAtLoginTest, AnAgentThatCannotBeRemovedIsReported) {
    writeFile(file / "inside", std::string("x"));
    at().setLaunchAtLoginViaLaunchAgent(false);
    EXPECT_THAT(world.log.systemLines,
                ElementsAre(testing::StartsWith("[LaunchAgent] ERROR removing plist: ")));
    EXPECT_TRUE(fileExists());
}

TEST_F(LaunchAtLoginTest, WithoutAnExecutablePathNoAgentIsWritten) {
    at(kBundle, std::nullopt).setLaunchAtLoginViaLaunchAgent(true);
    EXPECT_FALSE(fileExists());
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAgent] ERROR: Cannot find executable path"));
}

TEST_F(LaunchAtLoginTest, AnAgentThatCannotBeWrittenIsReported) {
    // A file stands where the folder has to be; that the folder cannot be made is not reported by itself.
    writeFile(world.directories.home / "Library" / "LaunchAgents", std::string("x"));
    at().setLaunchAtLoginViaLaunchAgent(true);
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAgent] ERROR writing plist: Not a directory"));
}

TEST_F(LaunchAtLoginTest, AnAgentThatCannotBeSerialisedIsReportedAndNotWritten) {
    world.propertyLists.encodingFails = true;
    at().setLaunchAtLoginViaLaunchAgent(true);
    EXPECT_FALSE(fileExists());
    EXPECT_THAT(world.log.systemLines,
                ElementsAre(testing::StartsWith("[LaunchAgent] ERROR writing plist: ")));
}

TEST_F(LaunchAtLoginTest, TheToggleTurnsOnForAnAgentFileThoughTheStoredValueIsFalse) {
    world.store.set("launchAtLogin", false);
    writeFile(file, std::string("x"));
    at().syncLaunchAtLoginState();
    EXPECT_EQ(stored("launchAtLogin"), PropertyValue(true));
}

TEST_F(LaunchAtLoginTest, TheToggleShowsTheTruthOfBothMechanisms) {
    for (const bool enabled : {false, true})
        for (const bool written : {false, true}) {
            service.current = enabled ? LoginItemStatus::enabled : LoginItemStatus::requiresApproval;
            if (written)
                writeFile(file, std::string("x"));
            else
                std::filesystem::remove(file);
            world.store.set("launchAtLogin", !(enabled || written));
            EXPECT_EQ(at().launchAgentPlistExists(), written);
            at().syncLaunchAtLoginState();
            EXPECT_EQ(stored("launchAtLogin"), PropertyValue(enabled || written));
        }
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(LaunchAtLoginTest, StartingWithTheOptionOffDoesNothing) {
    world.store.set("loginItemPath", "/elsewhere/Pintle.app");
    at().refreshLoginItemLocation();
    world.store.set("launchAtLogin", false);
    at().refreshLoginItemLocation();
    EXPECT_THAT(service.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(LaunchAtLoginTest, AnUnchangedPathCausesNoServiceCallsAtAll) {
    world.store.set("launchAtLogin", true);
    world.store.set("loginItemPath", kBundle);
    at().refreshLoginItemLocation();
    EXPECT_THAT(service.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(LaunchAtLoginTest, AMovedBundleIsRegisteredAgainAtTheNextStart) {
    world.store.set("launchAtLogin", true);
    at().setLaunchAtLogin(true);
    service.calls.clear();
    world.log.systemLines.clear();
    at("/Users/u/Pintle.app").refreshLoginItemLocation();
    EXPECT_THAT(service.calls, ElementsAre("unregister", "register"));
    EXPECT_EQ(stored("loginItemPath"), PropertyValue("/Users/u/Pintle.app"));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] Login item re-pointed to /Users/u/Pintle.app"));
    at("/Users/u/Pintle.app").refreshLoginItemLocation();
    EXPECT_THAT(service.calls, ElementsAre("unregister", "register"));
}

TEST_F(LaunchAtLoginTest, AFailedUnregisterDoesNotStopTheNewRegistration) {
    world.store.set("launchAtLogin", true);
    world.store.set("loginItemPath", "/elsewhere");
    service.unregisterError = "Not registered";
    at().refreshLoginItemLocation();
    EXPECT_EQ(stored("loginItemPath"), PropertyValue(kBundle));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre(std::string("[LaunchAtLogin] Login item re-pointed to ") + kBundle));
}

TEST_F(LaunchAtLoginTest, AFailedRegistrationKeepsTheOldPathSoThatTheNextStartTriesAgain) {
    world.store.set("launchAtLogin", true);
    world.store.set("loginItemPath", "/elsewhere");
    service.registerError = "Denied";
    for (int start = 1; start <= 2; ++start) {
        at().refreshLoginItemLocation();
        EXPECT_EQ(stored("loginItemPath"), PropertyValue("/elsewhere"));
        EXPECT_EQ(world.log.count("[LaunchAtLogin] Re-register failed: Denied"),
                  static_cast<std::size_t>(start));
    }
}

TEST_F(LaunchAtLoginTest, AFirstStartAfterTheAgentAloneRegistersTheService) {
    service.registerError = "Denied";
    at().setLaunchAtLogin(true);
    world.store.set("launchAtLogin", true);
    service.registerError.reset();
    service.calls.clear();
    at().refreshLoginItemLocation();
    EXPECT_THAT(service.calls, ElementsAre("unregister", "register"));
    EXPECT_EQ(stored("loginItemPath"), PropertyValue(kBundle));
    EXPECT_TRUE(fileExists());
}

TEST_F(LaunchAtLoginTest, AsAHelperTheAgentIsNotRewrittenByTheStart) {
    at().setLaunchAtLoginViaLaunchAgent(true);
    const auto before = fileContent();
    world.store.set("launchAtLogin", true);
    at("/Users/u/Pintle.app", "/Users/u/Pintle.app/Contents/MacOS/Pintle").refreshLoginItemLocation();
    EXPECT_EQ(fileContent(), before);
}

TEST_F(LaunchAtLoginTest, WithoutTheServiceTheEntryServes) {
    withoutService("/opt/pintle").setLaunchAtLogin(true);
    EXPECT_EQ(agent->program(), "/opt/pintle");
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] SMAppService failed: Login item service not available",
                            "[LaunchAtLogin] Using LaunchAgent fallback", created()));
    world.log.systemLines.clear();
    withoutService("/opt/pintle").setLaunchAtLogin(false);
    EXPECT_FALSE(fileExists());
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] SMAppService failed: Login item service not available",
                            "[LaunchAtLogin] Using LaunchAgent fallback", "[LaunchAgent] Removed plist"));
}

TEST_F(LaunchAtLoginTest, WithoutTheServiceARightEntryIsSilentlyRecordedAtTheStart) {
    world.store.set("launchAtLogin", true);
    withoutService("/opt/pintle").setLaunchAtLogin(true);
    world.log.systemLines.clear();
    service.calls.clear();
    for (int start = 0; start < 2; ++start) withoutService("/opt/pintle").refreshLoginItemLocation();
    EXPECT_EQ(stored("loginItemPath"), PropertyValue("/opt/pintle"));
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_THAT(service.calls, IsEmpty());
}

TEST_F(LaunchAtLoginTest, WithoutTheServiceAnEntryOfAMovedProgramIsRewrittenAndRecorded) {
    world.store.set("launchAtLogin", true);
    withoutService("/opt/pintle").setLaunchAtLogin(true);
    withoutService("/opt/pintle").refreshLoginItemLocation();
    world.log.systemLines.clear();
    withoutService("/home/u/pintle").refreshLoginItemLocation();
    EXPECT_EQ(agent->program(), "/home/u/pintle");
    EXPECT_EQ(stored("loginItemPath"), PropertyValue("/home/u/pintle"));
    EXPECT_THAT(
        world.log.systemLines,
        ElementsAre("[LaunchAtLogin] Re-register failed: Login item service not available", created()));
    world.log.systemLines.clear();
    withoutService("/home/u/pintle").refreshLoginItemLocation();
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(LaunchAtLoginTest, WithoutTheServiceAWrongEntryIsRewrittenThoughTheStoredPathIsRight) {
    world.store.set("launchAtLogin", true);
    world.store.set("loginItemPath", "/opt/pintle");
    withoutService("/somewhere/old").setLaunchAtLoginViaLaunchAgent(true);
    world.log.systemLines.clear();
    withoutService("/opt/pintle").refreshLoginItemLocation();
    EXPECT_EQ(agent->program(), "/opt/pintle");
    EXPECT_THAT(service.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, ElementsAre(created()));
}

TEST_F(LaunchAtLoginTest, WithoutTheServiceAnEntryThatIsGoneIsNotMadeByTheStart) {
    world.store.set("launchAtLogin", true);
    withoutService("/opt/pintle").refreshLoginItemLocation();
    EXPECT_FALSE(fileExists());
    EXPECT_FALSE(stored("loginItemPath"));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[LaunchAtLogin] Re-register failed: Login item service not available"));
}

TEST_F(LaunchAtLoginTest, WithoutTheServiceAnEntryThatCannotBeRewrittenIsTriedAgainAtTheNextStart) {
    world.store.set("launchAtLogin", true);
    withoutService("/opt/pintle").setLaunchAtLoginViaLaunchAgent(true);
    world.propertyLists.encodingFails = true;
    withoutService("/home/u/pintle").refreshLoginItemLocation();
    EXPECT_FALSE(stored("loginItemPath"));
    world.propertyLists.encodingFails = false;
    withoutService("/home/u/pintle").refreshLoginItemLocation();
    EXPECT_EQ(stored("loginItemPath"), PropertyValue("/home/u/pintle"));
}

}  // namespace
}  // namespace pintle
