// The two files that start the program at login, read by the tools of the desktops that read them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "platform/fake/fake_key_value_store.h"
#include "platform/fake/fake_log.h"
#include "platform/freedesktop/autostart_entry.h"
#include "platform/plist/plist_coder.h"
#include "settings/launch_agent_file.h"
#include "settings/launch_at_login.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

struct AutostartTest : testing::Test {
    TemporaryFolder folder;
    const std::filesystem::path configuration = folder.path() / "config";
    const std::filesystem::path file = configuration / "autostart" / "com.pintle.app.desktop";
    std::unique_ptr<LoginItemService> service = makeAbsentLoginItemService();
    std::unique_ptr<LoginAgent> entry = makeAutostartEntry(configuration);
    FakeKeyValueStore store;
    FakeLog log;

    LaunchAtLogin at(const std::string& program) {
        return LaunchAtLogin(*service, *entry, store, log, {program, program},
                             LoginAgentRole::standsInForService);
    }
    static bool isValid(const std::filesystem::path& path) {
        const auto command = "desktop-file-validate " + shellQuoted(path.string());
        return std::system(command.c_str()) == 0;
    }
};

TEST_F(AutostartTest, EachCallOfTheAbsentServiceFailsWithItsDescription) {
    EXPECT_EQ(service->registerItem().error().description, "Login item service not available");
    EXPECT_EQ(service->unregisterItem().error().description, "Login item service not available");
    EXPECT_NE(service->status(), LoginItemStatus::enabled);
}

TEST_F(AutostartTest, TheEntryIsValidAndStartsTheProgramOnce) {
    ASSERT_TRUE(entry->write("/usr/bin/pintle"));
    EXPECT_EQ(entry->path(), file);
    EXPECT_TRUE(entry->exists());
    EXPECT_EQ(entry->program(), "/usr/bin/pintle");
    EXPECT_TRUE(isValid(file));
    EXPECT_THAT(contentOf(file), testing::HasSubstr("\nExec=\"/usr/bin/pintle\"\n"));
}

TEST_F(AutostartTest, AnEntryForAPathFullOfOddCharactersIsValid) {
    const std::string program = R"(/opt/My "Apps" 50% $HOME `x` o'n\e/pintle)";
    ASSERT_TRUE(entry->write(program));
    EXPECT_EQ(entry->program(), program);
    EXPECT_TRUE(isValid(file));
}

TEST_F(AutostartTest, AnotherReaderOfEntriesStartsExactlyTheProgram) {
    // No percent sign: this reader looks for the file before it undoes their doubling.
    const auto program = folder.path() / R"(My "Apps" $HOME `x` o'n\e)" / "pintle";
    const auto mark = folder.path() / "started";
    writeFile(program, "#!/bin/sh\nprintf '%s|%s' \"$#\" \"$0\" > " + shellQuoted(mark.string() + ".part") +
                           "\nmv " + shellQuoted(mark.string() + ".part") + " " + shellQuoted(mark.string()) +
                           "\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    ASSERT_TRUE(entry->write(program.string()));
    const auto command =
        "timeout 60 /usr/bin/python3 -c 'import sys, gi\n"
        "gi.require_version(\"Gio\", \"2.0\")\n"
        "from gi.repository import Gio\n"
        "app = Gio.DesktopAppInfo.new_from_filename(sys.argv[1])\n"
        "app.launch([], None)\n"
        "import os, time\n"
        "end = time.monotonic() + 50\n"
        "while not os.path.exists(sys.argv[2]) and time.monotonic() < end: time.sleep(0.02)' " +
        shellQuoted(file.string()) + " " + shellQuoted(mark.string());
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(contentOf(mark), "0|" + program.string());
}

TEST_F(AutostartTest, AnEntryThatSaysHiddenCountsAsNoFile) {
    writeFile(file, "[Desktop Entry]\nType=Application\nName=Pintle\nExec=/usr/bin/pintle\nHidden=true\n");
    EXPECT_FALSE(entry->exists());
    EXPECT_FALSE(entry->program());
    store.set("launchAtLogin", true);
    at("/opt/pintle").syncLaunchAtLoginState();
    EXPECT_EQ(store.object("launchAtLogin"), PropertyValue(false));
    at("/opt/pintle").setLaunchAtLoginViaLaunchAgent(false);
    EXPECT_THAT(log.systemLines, IsEmpty());
    // A start does not bring it back; the toggle does.
    store.set("launchAtLogin", true);
    at("/opt/pintle").refreshLoginItemLocation();
    EXPECT_FALSE(entry->exists());
    at("/opt/pintle").setLaunchAtLogin(true);
    EXPECT_EQ(entry->program(), "/opt/pintle");
}

TEST_F(AutostartTest, WhateverStandsInItsPlaceIsNeitherWaitedForNorReadWithoutEnd) {
    store.set("launchAtLogin", true);
    const auto start = [&] {
        auto launch = at("/opt/pintle");
        launch.refreshLoginItemLocation();
        launch.syncLaunchAtLoginState();
    };
    std::filesystem::create_directories(file.parent_path());
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_FALSE(entry->program());
    start();
    EXPECT_EQ(entry->program(), "/opt/pintle") << "what is no folder is mended";
    std::filesystem::remove(file);
    std::filesystem::create_symlink("/dev/zero", file);
    EXPECT_FALSE(entry->program());
    start();
    EXPECT_EQ(entry->program(), "/opt/pintle");
    writeFile(file, "[Desktop Entry]\nExec=/usr/bin/pintle\n" + std::string(64 << 10, '#'));
    EXPECT_FALSE(entry->program());
    start();
    EXPECT_EQ(entry->program(), "/opt/pintle");
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_FALSE(entry->program());
    log.systemLines.clear();
    start();
    EXPECT_THAT(log.systemLines,
                testing::Contains(testing::StartsWith("[LaunchAgent] ERROR writing plist: ")));
}

TEST_F(AutostartTest, ALinkInItsPlaceIsReplacedAndWhatItLeadsToIsLeftAlone) {
    const auto target = folder.path() / "target";
    for (const bool isThere : {true, false}) {
        std::filesystem::create_directories(file.parent_path());
        std::filesystem::remove(file);
        std::filesystem::create_symlink(target, file);
        if (isThere)
            writeFile(target, "somebody else's");
        else
            std::filesystem::remove(target);
        ASSERT_TRUE(entry->write("/usr/bin/pintle"));
        EXPECT_FALSE(std::filesystem::is_symlink(file));
        EXPECT_EQ(entry->program(), "/usr/bin/pintle");
        EXPECT_EQ(contentOf(target), isThere ? "somebody else's" : "");
        EXPECT_EQ(std::filesystem::exists(target), isThere);
    }
}

TEST_F(AutostartTest, TheEntryNamesThePictureOfTheProgram) {
    ASSERT_TRUE(entry->write("/usr/bin/pintle"));
    EXPECT_THAT(contentOf(file), testing::HasSubstr("\nIcon=com.pintle.app\n"));
}

TEST_F(AutostartTest, HiddenFalseCountsAsAFile) {
    writeFile(file, "[Desktop Entry]\nType=Application\nName=Pintle\nExec=/usr/bin/pintle\nHidden=false\n");
    EXPECT_TRUE(entry->exists());
}

TEST_F(AutostartTest, TheToggleWritesTheEntryAndTakesItAway) {
    at("/opt/pintle").setLaunchAtLogin(true);
    EXPECT_TRUE(std::filesystem::exists(file));
    at("/opt/pintle").setLaunchAtLogin(false);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_THAT(log.systemLines,
                ElementsAre("[LaunchAtLogin] SMAppService failed: Login item service not available",
                            "[LaunchAtLogin] Using LaunchAgent fallback",
                            "[LaunchAgent] Created plist at: " + file.string(),
                            "[LaunchAtLogin] SMAppService failed: Login item service not available",
                            "[LaunchAtLogin] Using LaunchAgent fallback", "[LaunchAgent] Removed plist"));
}

TEST_F(AutostartTest, AMovedProgramRewritesItsEntryAtTheStart) {
    store.set("launchAtLogin", true);
    at("/opt/pintle").setLaunchAtLogin(true);
    log.systemLines.clear();
    at("/opt/pintle").refreshLoginItemLocation();
    EXPECT_THAT(log.systemLines, IsEmpty());
    at("/home/u/Pintle-1.2.AppImage").refreshLoginItemLocation();
    EXPECT_EQ(entry->program(), "/home/u/Pintle-1.2.AppImage");
    EXPECT_EQ(store.object("loginItemPath"), PropertyValue("/home/u/Pintle-1.2.AppImage"));
    EXPECT_TRUE(isValid(file));
}

TEST_F(AutostartTest, AnEntryThatCannotBeWrittenIsReportedAndLeavesNothingBehind) {
    writeFile(configuration / "autostart", std::string("a file where the folder has to be"));
    at("/opt/pintle").setLaunchAtLoginViaLaunchAgent(true);
    EXPECT_THAT(log.systemLines, ElementsAre(testing::StartsWith("[LaunchAgent] ERROR writing plist: ")));
}

TEST(LaunchAgentPropertyList, IsXmlWithExactlyItsFourEntriesAndTheirTypes) {
    const TemporaryFolder folder;
    const auto coder = makePlistCoder();
    const auto agent = makeLaunchAgentFile(folder.path(), *coder);
    ASSERT_TRUE(agent->write("/Applications/Pintle <&> \"1\".app/Contents/MacOS/Pintle"));
    const auto path = folder.path() / "Library" / "LaunchAgents" / "com.pintle.app.plist";
    EXPECT_EQ(agent->path(), path);
    EXPECT_TRUE(contentOf(path).starts_with("<?xml"));
    EXPECT_EQ(agent->program(), "/Applications/Pintle <&> \"1\".app/Contents/MacOS/Pintle");
    const auto command =
        "/usr/bin/python3 -c 'import plistlib, sys\n"
        "list = plistlib.load(open(sys.argv[1], \"rb\"), fmt=plistlib.FMT_XML)\n"
        "path = \"/Applications/Pintle <&> \\\"1\\\".app/Contents/MacOS/Pintle\"\n"
        "assert list == {\"Label\": \"com.pintle.app\", \"ProgramArguments\": [path],\n"
        "                \"RunAtLoad\": True, \"KeepAlive\": False}, list\n"
        "assert list[\"RunAtLoad\"] is True and list[\"KeepAlive\"] is False' " +
        shellQuoted(path.string());
    EXPECT_EQ(std::system(command.c_str()), 0);
}

}  // namespace
}  // namespace pintle
