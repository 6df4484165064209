// Preferences outlive the sudden death of their writer and the company of another one.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>

#include "platform/plist/plist_coder.h"
#include "tests/contract/session/survival.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

/// What a key holds: nothing, or what a change of this kind and number stored.
struct Change {
    int kind = 0;
    std::int64_t number = 0;
    std::optional<PropertyValue> value() const {
        if (kind == 0) return std::nullopt;
        return survival::valueOf(kind, number);
    }
};

class Writer {
  public:
    Writer(const std::filesystem::path& file, const std::string& prefix, std::uint64_t seed, long first,
           long count) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        pid_ = ::fork();
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::dup2(ends[1], 1);
            ::close(ends[0]);
            ::close(ends[1]);
            ::execl(SURVIVAL_WRITER, SURVIVAL_WRITER, file.c_str(), prefix.c_str(),
                    std::to_string(seed).c_str(), std::to_string(first).c_str(),
                    std::to_string(count).c_str(), nullptr);
            ::_exit(127);
        }
        ::close(ends[1]);
        output_ = ends[0];
    }
    ~Writer() {
        kill();
        wait();
        ::close(output_);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void kill() const {
        if (pid_ > 0) ::kill(pid_, SIGKILL);
    }
    int wait() {
        int status = -1;
        if (pid_ > 0) ::waitpid(pid_, &status, 0);
        pid_ = -1;
        return status;
    }
    /// Takes in what the writer reported. False at the end of it.
    bool readSome() {
        std::array<char, 65536> bytes{};
        const auto count = ::read(output_, bytes.data(), bytes.size());
        if (count <= 0) return false;
        pending_.append(bytes.data(), static_cast<std::size_t>(count));
        for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
            take(pending_.substr(0, end));
            pending_.erase(0, end + 1);
        }
        return true;
    }

    /// Of each key the last change whose write had returned.
    std::map<std::string, Change> returned;
    /// The change that was being written.
    std::optional<std::pair<std::string, Change>> begun;
    long changes = 0;
    long last = 0;

  private:
    void take(const std::string& line) {
        std::istringstream words(line);
        std::string mark, key;
        Change change;
        words >> mark >> key >> change.kind >> change.number;
        last = change.number;
        if (mark == ">") {
            begun.emplace(key, change);
            return;
        }
        returned[key] = change;
        begun.reset();
        ++changes;
    }

    pid_t pid_ = -1;
    int output_ = -1;
    std::string pending_;
};

struct SettingsSurvivalTest : testing::Test {
    TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "config" / "com.pintle.app.plist";
    std::unique_ptr<PropertyListCoder> coder = makePlistCoder();

    std::optional<PropertyDictionary> stored() const {
        std::ifstream in(file, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
        const auto list = coder->decode(bytes);
        const auto* dictionary = list ? list->as<PropertyDictionary>() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    }
    static bool holds(const PropertyDictionary& content, const std::string& key, const Change& change) {
        const auto found = content.find(key);
        const auto value = change.value();
        return value ? found != content.end() && found->second == *value : found == content.end();
    }
    /// Compares the file with what is known, and learns whether the change that was begun got through.
    void check(std::map<std::string, Change>& known, const Writer& writer) {
        for (const auto& [key, change] : writer.returned) known[key] = change;
        const auto content = stored();
        ASSERT_TRUE(content);
        if (writer.begun && holds(*content, writer.begun->first, writer.begun->second))
            known[writer.begun->first] = writer.begun->second;
        for (const auto& [key, change] : known)
            EXPECT_TRUE(holds(*content, key, change)) << key << " " << change.kind << " " << change.number;
        for (const auto& [key, value] : *content) EXPECT_TRUE(known.contains(key)) << key;
    }
    std::size_t filesBeside() const {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(file.parent_path()))
            if (entry.path().string().find("damaged") != std::string::npos) ++count;
        return count;
    }
};

TEST_F(SettingsSurvivalTest, TenThousandChangesWithAHundredSuddenDeathsLoseNothingThatHadReturned) {
    constexpr int kDeaths = 100;
    constexpr long kChanges = 10000;
    std::mt19937_64 random(4711);
    std::map<std::string, Change> known;
    long changes = 0;
    long number = 1;
    for (int death = 0; death < kDeaths; ++death) {
        Writer writer(file, "key", random(), number, 1000000);
        const long wanted = (kChanges - changes) / (kDeaths - death) + static_cast<long>(random() % 21);
        while (writer.changes < wanted && writer.readSome()) {
        }
        // At any moment inside the next few changes: a death that waits for an event is always at the same
        // place.
        ::usleep(static_cast<useconds_t>(random() % 2000));
        writer.kill();
        ASSERT_TRUE(WIFSIGNALED(writer.wait()));
        while (writer.readSome()) {
        }
        check(known, writer);
        if (HasFailure()) FAIL() << "after death " << death;
        changes += writer.changes;
        number = writer.last + 1;
    }
    EXPECT_GE(changes, kChanges);
    EXPECT_EQ(filesBeside(), 0u);
    // And so another reader sees it.
    const std::string command =
        "/usr/bin/python3 -c 'import plistlib, sys; plistlib.load(open(sys.argv[1], \"rb\"))' " +
        file.string();
    EXPECT_EQ(std::system(command.c_str()), 0);
}

TEST_F(SettingsSurvivalTest, TwoWritersAtOnceNeverInterleaveIntoADamagedFile) {
    Writer first(file, "first", 1, 1, 1500);
    Writer second(file, "second", 2, 1, 1500);
    bool firstRuns = true;
    bool secondRuns = true;
    while (firstRuns || secondRuns) {
        if (firstRuns) firstRuns = first.readSome();
        if (secondRuns) secondRuns = second.readSome();
        if (std::filesystem::exists(file)) {
            ASSERT_TRUE(stored());
        }
    }
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    auto known = first.returned;
    check(known, second);
    EXPECT_EQ(known.size(), 40u);
    EXPECT_EQ(filesBeside(), 0u);
}

// Between two processes a change may be lost where one waits too long for the other's lock; a damaged file
// may not come of it.
TEST_F(SettingsSurvivalTest, WritersThatDieInCompanyLeaveAFileThatParsesAndTakesFurtherChanges) {
    std::mt19937_64 random(815);
    Writer steady(file, "steady", 3, 1, 1000000);
    for (int death = 0; death < 20; ++death) {
        Writer dying(file, "dying", random(), 1, 1000000);
        while (dying.changes < 20 && dying.readSome()) {
        }
        ASSERT_TRUE(steady.readSome());
        // At any moment, as above.
        ::usleep(static_cast<useconds_t>(random() % 2000));
        dying.kill();
        ASSERT_TRUE(WIFSIGNALED(dying.wait()));
        ASSERT_TRUE(stored()) << "after death " << death;
    }
    steady.kill();
    steady.wait();
    EXPECT_EQ(filesBeside(), 0u);

    Writer last(file, "last", 4, 1, 100);
    while (last.readSome()) {
    }
    EXPECT_EQ(last.wait(), 0);
    const auto content = stored();
    ASSERT_TRUE(content);
    for (const auto& [key, change] : last.returned) EXPECT_TRUE(holds(*content, key, change)) << key;
}

}  // namespace
}  // namespace pintle
