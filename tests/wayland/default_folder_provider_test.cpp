#include "platform/wayland/default_folder_provider.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

class DefaultFolder : public ::testing::Test {
  protected:
    std::unique_ptr<SettingsProvider> make() { return makeDefaultFolderProvider("default", folder_.path()); }

    TemporaryFolder folder_;
    fs::path index_ = folder_.path() / "default" / "index.theme";
};

TEST_F(DefaultFolder, NamesTheThemeAndGoesAgainWithoutATrace) {
    const auto provider = make();
    ASSERT_TRUE(provider);
    EXPECT_EQ(provider->read().value(), PointerSetting());
    const auto ours = provider->valueFor({"Pintle-A", 32}, {});
    EXPECT_TRUE(provider->isOwn(*ours.theme));
    ASSERT_TRUE(provider->write(ours));
    EXPECT_NE(contentOf(index_).find("\nInherits=Pintle-A\n"), std::string::npos);
    EXPECT_EQ(provider->read().value(), ours);
    ASSERT_TRUE(provider->write({}));
    EXPECT_FALSE(fs::exists(folder_.path() / "default"));
}

TEST_F(DefaultFolder, TheUsersFileComesBackByteForByte) {
    const std::string mine = "[Icon Theme]\r\nInherits = Breeze \n\n# \xC3\xA4";
    writeFile(index_, mine);
    const auto provider = make();
    const auto before = provider->read();
    ASSERT_TRUE(before);
    EXPECT_FALSE(provider->isOwn(*before.value().theme));
    ASSERT_TRUE(provider->write(provider->valueFor({"Pintle-B", 32}, before.value())));
    EXPECT_NE(contentOf(index_), mine);
    ASSERT_TRUE(provider->write(before.value()));
    EXPECT_EQ(contentOf(index_), mine);
}

TEST_F(DefaultFolder, AWholeThemeOrALinkUnderTheNameIsLeftAlone) {
    fs::create_directories(folder_.path() / "default" / "cursors");
    EXPECT_FALSE(make());
    fs::remove_all(folder_.path() / "default");
    fs::create_directories(folder_.path() / "Theirs");
    fs::create_directory_symlink(folder_.path() / "Theirs", folder_.path() / "default");
    EXPECT_FALSE(make());
    fs::remove(folder_.path() / "default");
    writeFile(folder_.path() / "elsewhere", "text");
    fs::create_directories(folder_.path() / "default");
    fs::create_symlink(folder_.path() / "elsewhere", index_);
    EXPECT_FALSE(make());
}

TEST_F(DefaultFolder, WhatBecameAThemeMeanwhileIsNotWrittenInto) {
    const auto provider = make();
    fs::create_directories(folder_.path() / "default" / "cursors");
    EXPECT_FALSE(provider->write(provider->valueFor({"Pintle-A", 32}, {})));
    EXPECT_FALSE(fs::exists(index_));
}

TEST_F(DefaultFolder, AFileOfManyKilobytesIsNotTaken) {
    writeFile(index_, std::string(100000, 'x'));
    EXPECT_FALSE(make()->read());
}

}  // namespace
}  // namespace pintle::wayland
