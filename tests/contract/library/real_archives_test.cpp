// The extraction with the real archiver, threads and main queue: sound archives of every kind and hostile
// ones. The folder around everything is watched: nothing may change in it but the destination.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "platform/posix/archiver.h"
#include "platform/posix/unpack/confinement.h"
#include "platform/qt/qt_process_runner.h"
#include "tests/contract/queue_worlds.h"
#include "tests/support/temporary_folder.h"
#include "themes/theme_extractor.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

constexpr ExtractionLimits kSmall{64 << 20, 100'000, 64, std::chrono::milliseconds(20)};

/// Root's rights for a moment, where they were given up.
class AsStarted {
  public:
    AsStarted() { EXPECT_EQ(::seteuid(::getuid()), 0); }
    ~AsStarted() { EXPECT_EQ(::seteuid(effective_), 0); }

  private:
    const uid_t effective_ = ::geteuid();
};

struct RealArchives : testing::Test {
    static inline std::unique_ptr<TemporaryFolder> made, copy;
    static void SetUpTestSuite() {
        const AsStarted rights;
        made = std::make_unique<TemporaryFolder>();
        const auto command = std::string(PYTHON) + " " + MAKE_ARCHIVES + " " + made->path().string();
        ASSERT_EQ(std::system(command.c_str()), 0);
        fs::permissions(made->path(), fs::perms(0755));
        copy = std::make_unique<TemporaryFolder>();
        fs::permissions(copy->path(), fs::perms(0755));
        fs::copy_file(UNPACK_PROGRAM, unpacker());
    }
    /// A copy: another user may not enter every folder that a build is made in.
    static fs::path unpacker() { return copy->path() / fs::path(UNPACK_PROGRAM).filename(); }
    static void TearDownTestSuite() {
        const AsStarted rights;
        made.reset();
        copy.reset();
    }

    TemporaryFolder folder;
    fs::path archives = made->path();
    fs::path themes = folder.path() / "a/b/Themes";
    fs::path theme = themes / "banana";
    QtWorld world;
    std::unique_ptr<ProcessRunner> runner = makeQtProcessRunner(world.queue(), limitedArchiver(unpacker()));
    ThemeWork work;

    RealArchives() { fs::create_directories(themes); }

    /// What lies around: every path with its size and its kind, the destination left out.
    std::map<std::string, std::string> around() const {
        std::map<std::string, std::string> found;
        for (const auto& top : {folder.path(), archives})
            for (fs::recursive_directory_iterator entry(top), end; entry != end; ++entry) {
                if (entry->path() == theme) {
                    entry.disable_recursion_pending();
                    continue;
                }
                struct stat info = {};
                ::lstat(entry->path().c_str(), &info);
                found[entry->path()] = std::to_string(info.st_mode) + " " +
                                       (S_ISREG(info.st_mode) ? std::to_string(info.st_size) : "");
            }
        return found;
    }
    /// The error of the extraction, "" for none.
    std::string extract(const std::string& archive, ExtractionLimits limits = {}) {
        const auto before = around();
        ThemeExtractor extractor({*runner, work, world.queue(), world.tasks()}, limits);
        std::optional<Status> ended;
        extractor.extract(archives / archive, "banana", theme, [&](const Status& status) { ended = status; });
        // A hundred thousand files take their time on a slow disk.
        for (int i = 0; i < 6 && !ended; ++i) world.runUntil([&] { return ended.has_value(); });
        EXPECT_TRUE(ended);
        EXPECT_TRUE(around() == before) << "something was written outside";
        EXPECT_FALSE(fs::exists("/written-dotdot"));
        checkTheme();
        return !ended ? "not ended" : *ended ? "" : ended->error().description;
    }
    /// Whatever is installed holds files, folders and links to them alone.
    void checkTheme() const {
        std::error_code error;
        if (!fs::exists(theme)) return;
        EXPECT_EQ(std::distance(fs::directory_iterator(theme), {}), 1) << "more than one folder";
        const auto top = fs::canonical(theme, error);
        for (const auto& entry : fs::recursive_directory_iterator(theme)) {
            struct stat info = {};
            ASSERT_EQ(::lstat(entry.path().c_str(), &info), 0);
            EXPECT_TRUE(S_ISREG(info.st_mode) || S_ISDIR(info.st_mode) || S_ISLNK(info.st_mode))
                << entry.path();
            if (S_ISLNK(info.st_mode)) {
                const auto target = fs::canonical(entry.path(), error);
                EXPECT_FALSE(error) << entry.path() << " is broken";
                EXPECT_THAT(target.string(), StartsWith(top.string() + "/"));
            } else {
                EXPECT_EQ(info.st_mode & (S_ISUID | S_ISGID | S_ISVTX), 0u) << entry.path();
            }
        }
    }
    std::string content(const std::string& name) const {
        std::ifstream file(theme / "cursors" / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void expectInstalled(const std::string& archive) {
        EXPECT_EQ(extract(archive), "") << archive;
        EXPECT_EQ(content("left_ptr"), "Xcur cursor file") << archive;
    }
    /// Refused whole, or installed without the offending entry.
    void expectHarmless(const std::string& archive) {
        const auto error = extract(archive);
        if (error.empty())
            EXPECT_EQ(content("left_ptr"), "Xcur cursor file") << archive;
        else
            EXPECT_THAT(error, StartsWith("Extraction failed: ")) << archive;
        EXPECT_NE(content("secret"), "Xcur secret") << archive;
    }
};

TEST_F(RealArchives, AllFiveKindsAreUnpackedByOneCommand) {
    for (const char* archive : {"plain.tar", "t.tar.gz", "t.tar.bz2", "t.tar.xz", "t.zip"}) {
        expectInstalled(archive);
        EXPECT_EQ(content("default"), "Xcur cursor file") << archive;
        EXPECT_EQ(content("watch"), "Xcur cursor file") << archive << ": a link into a sibling folder";
        EXPECT_EQ(content("xü b"), "Xcur cursor file") << archive;
        EXPECT_TRUE(fs::is_symlink(theme / "cursors/default"));
        fs::remove_all(theme);
    }
}

TEST_F(RealArchives, ACorruptArchiveIsAnsweredInTheArchiversOwnWords) {
    for (const char* archive : {"cut.tar.xz", "words", "outside"}) {
        const auto error = extract(archive);
        EXPECT_THAT(error, StartsWith("Extraction failed: ")) << archive;
        EXPECT_THAT(error, testing::Not(HasSubstr("exit code"))) << archive;
        EXPECT_FALSE(fs::exists(theme));
    }
    EXPECT_THAT(extract("not-there"), HasSubstr("not-there"));
}

TEST_F(RealArchives, AbsolutePathsStayInside) { expectHarmless("absolute.tar"); }
TEST_F(RealArchives, PathsThatGoUpAreRefused) {
    EXPECT_THAT(extract("dotdot.tar"), HasSubstr("Path contains '..'"));
}
TEST_F(RealArchives, NothingIsWrittenThroughALinkOfTheArchive) { expectHarmless("through.tar"); }
TEST_F(RealArchives, NothingIsWrittenThroughAChainOfLinks) { expectHarmless("through-chain.tar"); }
TEST_F(RealArchives, HardLinksLeadToNothingOutside) {
    expectHarmless("hard.tar");
    expectHarmless("hard-through.tar");
    expectHarmless("hard-overwrite.tar");
}

TEST_F(RealArchives, LinksOfEveryKindAreSecured) {
    expectInstalled("links.tar");
    EXPECT_EQ(content("good"), "Xcur cursor file");
    EXPECT_EQ(content("side"), "Xcur cursor file");
    EXPECT_EQ(content("chain20"), "Xcur cursor file");
    for (const char* name : {"a", "b", "self", "out", "up", "top", "here", "lead", "chain0", "chain19"})
        EXPECT_FALSE(fs::exists(fs::symlink_status(theme / "cursors" / name))) << name;
}

TEST_F(RealArchives, FifosAndForeignBitsAreNotInstalled) {
    expectInstalled("nodes.tar");
    EXPECT_FALSE(fs::exists(fs::symlink_status(theme / "cursors/default")));
    EXPECT_FALSE(fs::exists(fs::symlink_status(theme / "cursors/arrow")));
}

TEST_F(RealArchives, ADeviceIsNotInstalled) { expectHarmless("device.tar"); }

TEST_F(RealArchives, FoldersWithoutPermissionsAreInstalledAndRemovedAllTheSame) {
    expectInstalled("modes.tar");
    expectInstalled("modes.tar");
}

TEST_F(RealArchives, FoldersThatTheirOwnerCouldNotEnterAreInstalled) { expectInstalled("careless.tar"); }

TEST_F(RealArchives, AHundredThousandEntriesAreTooMany) {
    EXPECT_EQ(extract("many.tar"), "Extraction failed: the archive holds more than 100000 entries");
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(RealArchives, ABombIsStopped) {
    EXPECT_THAT(extract("bomb.tar.gz", kSmall), StartsWith("Extraction failed: "));
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(RealArchives, OneFileThatIsTooLargeIsStopped) {
    EXPECT_THAT(extract("large.tar.gz", kSmall), StartsWith("Extraction failed: "));
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(RealArchives, NamesWithLineEndsAndDashesAreNames) {
    EXPECT_EQ(extract("names.tar"), "");
    EXPECT_EQ(content("left\nptr"), "Xcur cursor file");
    EXPECT_EQ(content("-rf"), "Xcur cursor file");
    EXPECT_EQ(content("d"), "Xcur cursor file");
}

TEST_F(RealArchives, FoldersBeyondTheLongestPathLeaveNothingBehind) {
    EXPECT_NE(extract("deep.tar"), "");
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(RealArchives, AMissingArchiverIsAReadableError) {
    runner = makeQtProcessRunner(world.queue(), limitedArchiver("/not/there"));
    EXPECT_EQ(extract("plain.tar"), "The program pintle-unpack is missing; install Pintle again");
}

TEST_F(RealArchives, WithoutAKnownFolderNoProgramOfThatNameIsStarted) {
    for (const char* name : {"pintle-unpack", "libexec/pintle/pintle-unpack"}) {
        writeFile(folder.path() / name, "#!/bin/sh\nexit 0\n");
        fs::permissions(folder.path() / name, fs::perms(0755));
    }
    const auto start = fs::current_path();
    fs::current_path(folder.path());
    for (const auto& program : {unpackProgram({}), unpackProgram("here"), fs::path("pintle-unpack")}) {
        runner = makeQtProcessRunner(world.queue(), limitedArchiver(program));
        EXPECT_EQ(extract("plain.tar"), "The program pintle-unpack is missing; install Pintle again")
            << program;
    }
    const AsStarted rights;
    fs::current_path(start);
}

TEST_F(RealArchives, TheProgramThatUnpacksLiesBesideOursOrInItsOwnFolder) {
    writeFile(folder.path() / "usr/libexec/pintle/pintle-unpack", "");
    EXPECT_EQ(unpackProgram(folder.path() / "usr/bin"), folder.path() / "usr/libexec/pintle/pintle-unpack");
    writeFile(folder.path() / "usr/bin/pintle-unpack", "");
    EXPECT_EQ(unpackProgram(folder.path() / "usr/bin"), folder.path() / "usr/bin/pintle-unpack");
}

/// Programs of these names, which leave a file where they run.
class PlantedPrograms {
  public:
    explicit PlantedPrograms(const fs::path& folder) : witness_(folder / "ran") {
        for (const char* name :
             {"lrzip", "lzop", "grzip", "gzip", "bzip2", "xz", "unxz", "zstd", "lz4", "lzip"}) {
            writeFile(folder / name, "#!/bin/sh\n: > " + witness_.string() + "\n");
            fs::permissions(folder / name, fs::perms(0755));
        }
    }
    /// Since the last question.
    bool ran() const { return fs::remove(witness_); }

  private:
    const fs::path witness_;
};

constexpr auto kUnrecognized =
    "Extraction failed: pintle-unpack: Error opening archive: Unrecognized archive format";

TEST_F(RealArchives, NoArchiveChoosesAProgram) {
    const TemporaryFolder programs;
    fs::permissions(programs.path(), fs::perms(0777));
    const PlantedPrograms planted(programs.path());
    auto archiver = limitedArchiver(unpacker());
    archiver.at("/usr/bin/tar").environment["PATH"] = programs.path().string() + ":/usr/bin:/bin";
    runner = makeQtProcessRunner(world.queue(), archiver);
    int seen = 0;
    for (const auto& entry : fs::directory_iterator(archives)) {
        const auto name = entry.path().filename().string();
        if (!name.starts_with("foreign.")) continue;
        ++seen;
        const auto error = extract(name);
        EXPECT_FALSE(planted.ran()) << name;
        // In these it is the content of a file that has the name of a cursor.
        const bool isEntry = name.ends_with(".tar") || name.ends_with(".zip");
        if (isEntry)
            EXPECT_EQ(error, "No XCursor files in archive") << name;
        else
            EXPECT_EQ(error, kUnrecognized) << name;
        EXPECT_FALSE(fs::exists(theme)) << name;
    }
    EXPECT_EQ(seen, 18 * 6 - 2);
}

TEST_F(RealArchives, AFalseChecksumOfGzipIsSeen) {
    EXPECT_THAT(extract("false.tar.gz"),
                testing::AllOf(StartsWith("Extraction failed: "), HasSubstr("gzip")));
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(RealArchives, UnpackingEndsWithTheFirstEntryThatIsRefused) {
    EXPECT_EQ(extract("refused.tar.xz"), "Extraction failed: pintle-unpack: ../up0: Path contains '..'");
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(RealArchives, TheUnpackingProcessReachesNothingButItsFolder) {
    if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 2)
        GTEST_SKIP() << "this kernel has no such confinement";
    writeFile(folder.path() / "outside", "");
    fs::create_directory(folder.path() / "inside");
    const pid_t child = ::fork();
    if (child == 0) {
        if (::chdir((folder.path() / "inside").c_str()) != 0) ::_exit(1);
        confineToCurrentFolder();
        if (::open("file", O_WRONLY | O_CREAT, 0600) < 0) ::_exit(2);
        if (::mkdir("folder", 0700) != 0 || ::link("file", "folder/file") != 0) ::_exit(3);
        if (::symlink("/", "way") != 0 || ::rename("file", "other") != 0 || ::unlink("other") != 0)
            ::_exit(4);
        if (::open("../outside", O_RDONLY) >= 0 || ::open("/etc/passwd", O_RDONLY) >= 0) ::_exit(5);
        if (::mkdir("../folder", 0700) == 0 || ::unlink("../outside") == 0) ::_exit(6);
        if (::open("way/etc/passwd", O_RDONLY) >= 0) ::_exit(7);
        // Where it could, it would end as false does.
        ::execl("/bin/false", "false", nullptr);
        ::_exit(0);
    }
    int state = 0;
    ASSERT_EQ(::waitpid(child, &state, 0), child);
    EXPECT_EQ(WIFEXITED(state) ? WEXITSTATUS(state) : -1, 0);
}

/// The lines of a file under /proc that begin with `start`, blanks as one.
std::string lineOf(const fs::path& file, const std::string& start) {
    std::ifstream input(file);
    for (std::string line; std::getline(input, line);) {
        if (!line.starts_with(start)) continue;
        std::istringstream words(line);
        std::string tidy;
        for (std::string word; words >> word;) tidy += (tidy.empty() ? "" : " ") + word;
        return tidy;
    }
    return {};
}

TEST_F(RealArchives, TheProgramThatUnpacksIsLimitedAndConfined) {
    const auto bad = folder.path() / "bad";
    writeFile(bad, "no archive");
    fs::create_directory(folder.path() / "inside");
    // The words about the archive find a full pipe, so the program waits there for as long as it is looked
    // at.
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ASSERT_EQ(::fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
    const std::string block(4096, ' ');
    while (::write(ends[1], block.data(), block.size()) > 0) continue;
    while (::write(ends[1], block.data(), 1) > 0) continue;
    ASSERT_EQ(::fcntl(ends[1], F_SETFL, 0), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        // Of a process that could become another user again nobody else may look at the working folder.
        const auto group = ::getegid();
        const auto user = ::geteuid();
        if (::setresgid(group, group, group) != 0 || ::setresuid(user, user, user) != 0) ::_exit(126);
        ::dup2(ends[1], STDERR_FILENO);
        ::execl(unpacker().c_str(), "pintle-unpack", "-xf", bad.c_str(), "-C",
                (folder.path() / "inside").c_str(), nullptr);
        ::_exit(127);
    }
    const fs::path proc = fs::path("/proc") / std::to_string(child);
    const auto waits = [&] {
        std::error_code error;
        return fs::read_symlink(proc / "cwd", error).filename() == "inside" &&
               lineOf(proc / "status", "State:").starts_with("State: S");
    };
    // Nobody reports that another process waits for a pipe, so it is looked at again and again.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!waits() && std::chrono::steady_clock::now() < deadline) ::usleep(1000);
    EXPECT_TRUE(waits());
    EXPECT_EQ(lineOf(proc / "status", "NoNewPrivs:"), "NoNewPrivs: 1");
    EXPECT_EQ(lineOf(proc / "limits", "Max open files"), "Max open files 64 64 files");
    EXPECT_EQ(lineOf(proc / "limits", "Max processes"), "Max processes 0 0 processes");
    EXPECT_EQ(lineOf(proc / "limits", "Max core file size"), "Max core file size 0 0 bytes");
    EXPECT_EQ(lineOf(proc / "limits", "Max address space"), "Max address space 805306368 805306368 bytes");
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(RealArchives, EndingAllWorkInTheMiddleLeavesNothing) {
    ThemeExtractor extractor({*runner, work, world.queue(), world.tasks()});
    bool ended = false;
    extractor.extract(archives / "many.tar", "banana", theme, [&](const Status&) { ended = true; });
    EXPECT_TRUE(world.runUntil([&] {
        for (const auto& entry : fs::directory_iterator(themes))
            if (fs::exists(entry.path() / "x/cursors")) return true;
        return false;
    }));
    work.endAll();
    EXPECT_TRUE(world.runUntil([&] { return fs::is_empty(themes); }));
    EXPECT_FALSE(ended);
}

}  // namespace
}  // namespace pintle
