#include "base/own_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <future>
#include <iterator>
#include <string>

#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

struct OwnFileTest : testing::Test {
    TemporaryFolder folder;
    fs::path file = folder.path() / "file";

    static std::string text(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }
    int errorOf(std::size_t most = 1000) const {
        const auto read = readOwnFile(file, most);
        return read ? 0 : read.error().code;
    }
    Status replace(const std::string& content) const {
        return replaceOwnFile(file, std::vector<std::uint8_t>(content.begin(), content.end()));
    }
    std::string content() const {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(OwnFileTest, AFileOfExactlyTheLimitIsReadAndALargerOneIsNot) {
    writeFile(file, "0123456789");
    const auto read = readOwnFile(file, 10);
    ASSERT_TRUE(read);
    EXPECT_EQ(text(read.value().bytes), "0123456789");
    EXPECT_EQ(read.value().status.st_size, 10);
    EXPECT_EQ(errorOf(9), EFBIG);
}

TEST_F(OwnFileTest, AnEmptyFileHasNoBytes) {
    writeFile(file, "");
    EXPECT_EQ(errorOf(), 0);
}

TEST_F(OwnFileTest, WhatIsNoRegularFileIsAnErrorAtOnce) {
    EXPECT_EQ(errorOf(), ENOENT);
    fs::create_directory(file);
    EXPECT_EQ(errorOf(), EISDIR);
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(errorOf(), ENXIO);
    fs::remove(file);
    fs::create_symlink("/dev/zero", file);
    EXPECT_EQ(errorOf(), ENXIO);
    fs::remove(file);
    fs::create_symlink("file", file);
    EXPECT_EQ(errorOf(), ELOOP);
}

TEST_F(OwnFileTest, AFileBehindALinkIsRead) {
    writeFile(folder.path() / "real", "words");
    fs::create_symlink("real", file);
    EXPECT_EQ(text(readOwnFile(file, 100).value().bytes), "words");
}

TEST_F(OwnFileTest, WhateverIsNoFolderIsReplacedAndNothingIsLeftBesideIt) {
    ASSERT_TRUE(replace("first"));
    EXPECT_EQ(content(), "first");
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    ASSERT_TRUE(replace("second"));
    EXPECT_EQ(content(), "second");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST_F(OwnFileTest, WhateverLiesBesideItStaysAndStopsNoWrite) {
    writeFile(folder.path() / "other", "kept");
    fs::create_directory(file.string() + ".new");
    fs::create_symlink("other", folder.path() / ".file.new");
    ASSERT_TRUE(replace("new"));
    EXPECT_EQ(content(), "new");
    EXPECT_TRUE(fs::is_directory(file.string() + ".new"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / ".file.new"));
    std::ifstream other(folder.path() / "other");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(other), {}), "kept");
}

TEST_F(OwnFileTest, TwoWritersAtTheSameTimeBothSucceed) {
    const auto write = [this](char letter) {
        int failed = 0;
        for (int i = 0; i < 100; ++i)
            if (!replace(std::string(100'000, letter))) ++failed;
        return failed;
    };
    auto other = std::async(std::launch::async, write, 'a');
    EXPECT_EQ(write('b'), 0);
    EXPECT_EQ(other.get(), 0);
    EXPECT_EQ(content(), std::string(100'000, content().front()));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST_F(OwnFileTest, ItsModeIsTheUsualOneOfThisUser) {
    const auto before = ::umask(027);
    const auto replaced = replace("new");
    ::umask(before);
    ASSERT_TRUE(replaced);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(OwnFileTest, AFailureLeavesTheOldOneAndNothingBesideIt) {
    fs::create_directory(file);
    writeFile(file / "inside", "kept");
    EXPECT_EQ(replace("new").error().code, EISDIR);
    EXPECT_TRUE(fs::exists(file / "inside"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
    file = folder.path() / "not" / "there";
    EXPECT_EQ(replace("new").error().code, ENOENT);
}

TEST_F(OwnFileTest, WhatTheDiskDoesNotTakeWholeReplacesNothing) {
    writeFile(file, "old");
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{4096, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto replaced = replace(std::string(100'000, 'n'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, handler);
    ASSERT_FALSE(replaced);
    EXPECT_EQ(replaced.error().code, EFBIG);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
}  // namespace pintle
