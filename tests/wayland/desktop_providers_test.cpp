#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "platform/fake/fake_log.h"
#include "platform/wayland/gsettings_provider.h"
#include "platform/wayland/kde_provider.h"
#include "platform/wayland/settings_channel.h"
#include "tests/contract/test_bus.h"
#include "tests/support/temporary_folder.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

class GSettingsFile : public ::testing::Test {
  protected:
    std::unique_ptr<SettingsProvider> make() { return makeGSettingsProvider({kSchema, file_}); }

    static constexpr const char* kSchema = "org.gnome.desktop.interface";
    TemporaryFolder folder_;
    fs::path file_ = folder_.path() / "keyfile";
};

TEST_F(GSettingsFile, ASchemaThatIsNotThereIsAbsentAndEndsNothing) {
    EXPECT_FALSE(makeGSettingsProvider({"com.example.none", file_}));
    EXPECT_FALSE(makeGSettingsProvider({"org.gnome.desktop.sound", file_})) << "it has no such keys";
}

TEST_F(GSettingsFile, WhatIsForgottenWithTheProcessIsAbsent) {
    ::setenv("GSETTINGS_BACKEND", "memory", 1);
    EXPECT_FALSE(makeGSettingsProvider({kSchema, std::nullopt}));
}

TEST_F(GSettingsFile, UnsetStaysUnset) {
    const auto provider = make();
    ASSERT_TRUE(provider);
    EXPECT_EQ(provider->read().value(), PointerSetting());
    ASSERT_TRUE(provider->write({"Pintle-A", "41"}));
    EXPECT_THAT(contentOf(file_), ::testing::HasSubstr("cursor-theme='Pintle-A'"));
    EXPECT_THAT(contentOf(file_), ::testing::HasSubstr("cursor-size=41"));
    EXPECT_EQ(make()->read().value(), (PointerSetting{"Pintle-A", "41"}));
    ASSERT_TRUE(provider->write({}));
    EXPECT_EQ(provider->read().value(), PointerSetting());
    EXPECT_THAT(contentOf(file_), ::testing::Not(::testing::HasSubstr("cursor")));
}

TEST_F(GSettingsFile, TheUsersValuesComeBackByteForByte) {
    const std::string mine =
        "[org/gnome/desktop/interface]\ncursor-size=24\ncursor-theme=\"It's mine\"\nclock-show-date=true\n";
    writeFile(file_, mine);
    FakeLog log;
    std::vector<std::unique_ptr<SettingsProvider>> providers;
    providers.push_back(make());
    SettingsChannel channel(std::move(providers), StateFile(folder_.path() / "state"), log);
    EXPECT_EQ(channel.usersOwn(), (PointerSetting{"It's mine", "24"}));
    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    ASSERT_TRUE(channel.put({"Pintle-B", 33}));
    EXPECT_NE(contentOf(file_), mine);
    ASSERT_TRUE(channel.restore());
    EXPECT_EQ(contentOf(file_), mine);
}

TEST_F(GSettingsFile, ASizeThatIsNoNumberIsRefused) {
    EXPECT_FALSE(make()->write({"Pintle-A", "4 1"}));
    EXPECT_FALSE(make()->write({"Pintle-A", "99999999999"}));
    EXPECT_EQ(make()->read().value(), PointerSetting());
}

class KdeFile : public ::testing::Test {
  protected:
    std::unique_ptr<SettingsProvider> make() { return makeKdeProvider(KdeOptions{file_, bus_.address()}); }

    /// Listens before `action` and waits for one signal.
    std::string signalOf(const std::function<void()>& action) {
        auto* const listener = g_dbus_connection_new_for_address_sync(
            bus_.address().c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        std::string received;
        g_dbus_connection_signal_subscribe(
            listener, nullptr, "org.kde.KGlobalSettings", "notifyChange", "/KGlobalSettings", nullptr,
            G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
               gpointer data) {
                char* const text = g_variant_print(parameters, FALSE);
                *static_cast<std::string*>(data) = text;
                g_free(text);
            },
            &received, nullptr);
        // The bus has taken the subscription when it answers the next call.
        g_variant_unref(g_dbus_connection_call_sync(listener, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                    "org.freedesktop.DBus", "GetId", nullptr, nullptr,
                                                    G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
        action();
        bool late = false;
        const auto timer = g_timeout_add(
            5000, [](gpointer data) { return *static_cast<bool*>(data) = true, G_SOURCE_REMOVE; }, &late);
        while (received.empty() && !late) g_main_context_iteration(nullptr, TRUE);
        if (!late) g_source_remove(timer);
        g_object_unref(listener);
        return received;
    }

    TemporaryFolder folder_;
    TestBus bus_;
    fs::path file_ = folder_.path() / "config" / "kcminputrc";
};

TEST_F(KdeFile, IsWrittenAndTheChangeIsSignalled) {
    const auto provider = make();
    EXPECT_EQ(provider->read().value(), PointerSetting());
    EXPECT_EQ(signalOf([&] { EXPECT_TRUE(provider->write({"Pintle-A", "41"})); }), "(5, 0)");
    EXPECT_EQ(contentOf(file_), "[Mouse]\ncursorSize=41\ncursorTheme=Pintle-A\n");
    EXPECT_EQ(provider->read().value(), (PointerSetting{"Pintle-A", "41"}));
}

TEST_F(KdeFile, EverythingElseInTheFileStaysByteForByte) {
    const std::string mine = "[Keyboard]\nNumLock=0\n\n[Mouse]\ncursorTheme=Breeze_Snow\nOther=1\n";
    writeFile(file_, mine);
    const auto provider = make();
    const auto before = provider->read();
    ASSERT_TRUE(provider->write({"Pintle-A", "41"}));
    ASSERT_TRUE(provider->write(before.value()));
    EXPECT_EQ(contentOf(file_), mine);
}

TEST_F(KdeFile, ALinkToAFileElsewhereStaysOne) {
    writeFile(folder_.path() / "dotfiles" / "kcminputrc", "[Mouse]\ncursorTheme=Breeze\n");
    fs::create_directories(file_.parent_path());
    fs::create_symlink(folder_.path() / "dotfiles" / "kcminputrc", file_);
    ASSERT_TRUE(make()->write({"Pintle-A", "32"}));
    EXPECT_TRUE(fs::is_symlink(file_));
    EXPECT_EQ(make()->read().value().theme, "Pintle-A");
}

TEST_F(KdeFile, AValueOfSeveralLinesIsRefused) {
    EXPECT_FALSE(make()->write({"a\n[Evil]\nb=c", "32"}));
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(KdeFile, ABusThatIsAwayIsAnError) {
    EXPECT_FALSE(makeKdeProvider(KdeOptions{file_, "unix:path=" + (folder_.path() / "none").string()})
                     ->write({"Pintle-A", "32"}));
}

TEST_F(KdeFile, IsAbsentOnOtherDesktops) {
    std::map<std::string, std::string> variables = {{"XDG_CURRENT_DESKTOP", "KDE:other"},
                                                    {"HOME", folder_.path().string()},
                                                    {"XDG_RUNTIME_DIR", folder_.path().string()}};
    const auto make = [&] {
        return makeKdeProvider([&](const std::string& name) -> std::optional<std::string> {
            const auto found = variables.find(name);
            return found == variables.end() ? std::nullopt : std::optional(found->second);
        });
    };
    EXPECT_TRUE(make());
    variables["XDG_CURRENT_DESKTOP"] = "GNOME:NOTKDE";
    EXPECT_FALSE(make());
    variables["XDG_CURRENT_DESKTOP"] = "KDE";
    variables["HOME"] = "relative";
    EXPECT_FALSE(make());
}

}  // namespace
}  // namespace pintle::wayland
