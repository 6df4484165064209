#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/freedesktop/dbus_instance_bus.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_main_queue.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
constexpr const char* kName = "com.pintle.app";

class InstanceBusTest : public ::testing::Test {
  protected:
    void SetUp() override {
        keep("DBUS_SESSION_BUS_ADDRESS", address_);
        keep("XDG_RUNTIME_DIR", runtime_);
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
        ::unsetenv("XDG_RUNTIME_DIR");
    }
    void TearDown() override {
        restore("DBUS_SESSION_BUS_ADDRESS", address_);
        restore("XDG_RUNTIME_DIR", runtime_);
    }
    static void keep(const char* name, std::optional<std::string>& value) {
        if (const char* now = ::getenv(name)) value = now;
    }
    static void restore(const char* name, const std::optional<std::string>& value) {
        if (value)
            ::setenv(name, value->c_str(), 1);
        else
            ::unsetenv(name);
    }
    std::unique_ptr<InstanceBus> makeBus(const std::string& name) {
        return makeDbusInstanceBus(name, *queue_, *background_);
    }
    /// Asks a fresh object, which must answer no and soon.
    void expectNoAndSoon() {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(makeBus(kName)->anotherCopyRuns());
        EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    }
    std::optional<std::string> address_;
    std::optional<std::string> runtime_;
    TemporaryFolder folder_;
    std::unique_ptr<MainQueue> queue_ = makeQtMainQueue();
    std::unique_ptr<BackgroundTasks> background_ = makeQtBackgroundTasks();
};

TEST_F(InstanceBusTest, WithoutABusTheAnswerIsNo) { expectNoAndSoon(); }

TEST_F(InstanceBusTest, WithAnAddressThatNobodyServesTheAnswerIsNo) {
    for (const std::string& address :
         {"unix:path=" + (folder_.path() / "gone").string(), std::string("nonsense"),
          std::string("disabled:"), std::string("autolaunch:"), std::string("unix:abstract=/pintle/nobody"),
          std::string("unix:")}) {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
        expectNoAndSoon();
    }
}

TEST_F(InstanceBusTest, ABusThatAcceptsAndNeverAnswersDoesNotHangTheStart) {
    const std::string path = (folder_.path() / "silent").string();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 4), 0);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    expectNoAndSoon();
    ::close(listener);
}

/// A private bus of the test.
class WithBus : public InstanceBusTest {
  protected:
    void SetUp() override {
        InstanceBusTest::SetUp();
        startBus();
    }
    void startBus() {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const std::string address = "unix:path=" + (folder_.path() / "bus").string();
        const std::string print = "--print-address=" + std::to_string(ends[1]);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", "--nopidfile", "--address",
                     address.c_str(), print.c_str(), nullptr);
            ::_exit(127);
        }
        ::close(ends[1]);
        std::string printed;
        char byte = 0;
        while (::read(ends[0], &byte, 1) == 1 && byte != '\n') printed += byte;
        ::close(ends[0]);
        if (printed.empty()) GTEST_SKIP() << "no dbus-daemon";
        ::setenv("DBUS_SESSION_BUS_ADDRESS", printed.c_str(), 1);
    }
    void endBus() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGCONT);
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
        pid_ = -1;
        std::filesystem::remove(folder_.path() / "bus");
    }
    void TearDown() override {
        endBus();
        InstanceBusTest::TearDown();
    }
    pid_t pid_ = -1;
};

TEST_F(WithBus, TheFirstCopyIsAloneAndTheSecondFindsIt) {
    auto first = makeBus(kName);
    EXPECT_FALSE(first->anotherCopyRuns());
    EXPECT_FALSE(first->anotherCopyRuns());
    auto second = makeBus(kName);
    EXPECT_TRUE(second->anotherCopyRuns());
    first.reset();
    EXPECT_FALSE(second->anotherCopyRuns());
}

TEST_F(WithBus, AnotherNameIsNoCopy) {
    const auto other = makeBus("com.pintle.other");
    EXPECT_FALSE(other->anotherCopyRuns());
    EXPECT_FALSE(makeBus(kName)->anotherCopyRuns());
}

TEST_F(WithBus, TheSocketInTheRuntimeFolderIsFoundWithoutAnAddress) {
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    const auto first = makeBus(kName);
    EXPECT_FALSE(first->anotherCopyRuns());
    EXPECT_TRUE(makeBus(kName)->anotherCopyRuns());
}

TEST_F(WithBus, AStoppedBusDoesNotHangTheStart) {
    ::kill(pid_, SIGSTOP);
    expectNoAndSoon();
}

TEST_F(WithBus, ABusThatDiesDoesNotEndThisProcess) {
    const auto first = makeBus(kName);
    EXPECT_FALSE(first->anotherCopyRuns());
    endBus();
    EXPECT_FALSE(first->anotherCopyRuns());
}

/// Runs this process's event loop until `reached`; false when it does not get there in time.
bool eventually(const std::function<bool()>& reached) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    // The end of a child process is no event of the loop.
    QTimer look;
    look.start(2ms);
    while (!reached()) {
        if (std::chrono::steady_clock::now() > end) return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Waits for a helper while this process's event loop runs.
int exitCodeOf(pid_t helper) {
    int status = -1;
    if (!eventually([&] { return ::waitpid(helper, &status, WNOHANG) == helper; })) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -2;
}

pid_t startHelper(std::vector<std::string> arguments) {
    std::vector<char*> pointers = {const_cast<char*>(CONTRACT_HELPER)};
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t pid = -1;
    return ::posix_spawn(&pid, CONTRACT_HELPER, nullptr, nullptr, pointers.data(), environ) == 0 ? pid : -1;
}

TEST_F(WithBus, AMessageOfASecondCopyThatEndsAtOnceIsReceivedByTheFirst) {
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int received = 0;
    int other = 0;
    const auto watch = first->observe("show", [&] { ++received; });
    const auto otherWatch = first->observe("hide", [&] { ++other; });
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(exitCodeOf(startHelper({"post", kName, "show"})), 0);
        EXPECT_TRUE(eventually([&] { return received == i; }));
    }
    EXPECT_EQ(other, 0);
}

TEST_F(WithBus, AMessageWaitsForAFirstCopyThatIsBusy) {
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int received = 0;
    const auto watch = first->observe("show", [&] { ++received; });
    const auto onlooker = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "onlooker");
    const auto clients = [&] { return onlooker.interface()->registeredServiceNames().value().size(); };
    const auto before = clients();
    const pid_t helper = startHelper({"post", kName, "show"});
    // Questions to the bus run no event loop: this process is busy while the second copy comes and posts.
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (clients() == before && std::chrono::steady_clock::now() < end) continue;
    EXPECT_GT(clients(), before);
    EXPECT_EQ(received, 0);
    EXPECT_TRUE(eventually([&] { return received == 1; }));
    EXPECT_EQ(exitCodeOf(helper), 0);
}

TEST_F(WithBus, AfterTheHandleEndedNothingIsReceived) {
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int received = 0;
    auto watch = first->observe("show", [&] { ++received; });
    watch.end();
    EXPECT_EQ(exitCodeOf(startHelper({"post", kName, "show"})), 0);
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_EQ(received, 0);
}

TEST_F(WithBus, AKilledFirstCopyLeavesItsPlaceToTheNext) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t killed = startHelper({"hold", kName, std::to_string(ends[1])});
    ASSERT_GT(killed, 0);
    char answer = 0;
    ASSERT_EQ(::read(ends[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'a');
    const auto next = makeBus(kName);
    EXPECT_TRUE(next->anotherCopyRuns());
    ::kill(killed, SIGKILL);
    ::waitpid(killed, nullptr, 0);
    // The bus notices the closed connection when it comes to it.
    EXPECT_TRUE(eventually([&] { return !next->anotherCopyRuns(); }));
    int received = 0;
    const auto watch = next->observe("show", [&] { ++received; });
    EXPECT_EQ(exitCodeOf(startHelper({"post", kName, "show"})), 0);
    EXPECT_TRUE(eventually([&] { return received == 1; }));
    ::close(ends[0]);
    ::close(ends[1]);
}

/// A copy in another process, asked before this returns.
struct HeldCopy {
    HeldCopy() {
        EXPECT_EQ(::pipe(ends), 0);
        pid = startHelper({"hold", kName, std::to_string(ends[1])});
        EXPECT_EQ(::read(ends[0], &answer, 1), 1);
    }
    ~HeldCopy() {
        if (pid > 0) {
            ::kill(pid, SIGKILL);
            ::waitpid(pid, nullptr, 0);
        }
        ::close(ends[0]);
        ::close(ends[1]);
    }
    int exitCode() {
        const int code = exitCodeOf(pid);
        if (code != -1) pid = -1;
        return code;
    }
    int ends[2] = {};
    pid_t pid = -1;
    /// 'a': no other copy was there, 'b': one was.
    char answer = 0;
};

TEST_F(WithBus, ABusThatComesBackIsJoinedAgain) {
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int received = 0;
    int older = 0;
    const auto watch = first->observe("show", [&] { ++received; });
    const auto olderWatch = first->observeOlderCopy([&] { ++older; });
    for (int round = 1; round <= 2; ++round) {
        endBus();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        startBus();
        EXPECT_TRUE(eventually([&] { return exitCodeOf(startHelper({"post", kName, "show"})) == 0; }));
        EXPECT_TRUE(eventually([&] { return received == round; }));
    }
    EXPECT_EQ(older, 0);
}

TEST_F(WithBus, ABusThatComesAfterTheStartIsJoined) {
    endBus();
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    startBus();
    EXPECT_TRUE(eventually([&] { return exitCodeOf(startHelper({"post", kName, "show"})) == 0; }));
}

TEST_F(WithBus, ACopyThatStartedWhileTheBusWasGoneEndsWhenTheFirstComesBack) {
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int older = 0;
    const auto olderWatch = first->observeOlderCopy([&] { ++older; });
    endBus();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    startBus();
    HeldCopy second;
    EXPECT_EQ(second.answer, 'a') << "the first one is not back yet";
    EXPECT_EQ(second.exitCode(), 4);
    // The name falls to the first one, so that a third is no first.
    EXPECT_TRUE(eventually([&] { return exitCodeOf(startHelper({"post", kName, "show"})) == 0; }));
    EXPECT_EQ(older, 0);
}

TEST_F(WithBus, OfTwoCopiesWithoutABusTheFirstKeepsItsPlace) {
    endBus();
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int older = 0;
    const auto olderWatch = first->observeOlderCopy([&] { ++older; });
    HeldCopy second;
    EXPECT_EQ(second.answer, 'a');
    startBus();
    EXPECT_EQ(second.exitCode(), 4);
    EXPECT_TRUE(eventually([&] { return exitCodeOf(startHelper({"post", kName, "show"})) == 0; }));
    EXPECT_EQ(older, 0);
}

TEST_F(WithBus, AYoungerCopyCannotSendTheFirstAway) {
    const auto first = makeBus(kName);
    ASSERT_FALSE(first->anotherCopyRuns());
    int older = 0;
    const auto olderWatch = first->observeOlderCopy([&] { ++older; });
    const pid_t caller = ::fork();
    if (caller == 0) {
        ::execlp("dbus-send", "dbus-send", "--session", "--print-reply", "--reply-timeout=500",
                 "--dest=com.pintle.app", "/com/pintle/app", "com.pintle.app.GiveWay", nullptr);
        ::_exit(127);
    }
    EXPECT_EQ(exitCodeOf(caller), 0) << "there is no such method";
    EXPECT_EQ(older, 0);
}

TEST_F(InstanceBusTest, WithoutABusAMessageIsLostAndNothingHangs) {
    const auto bus = makeBus(kName);
    EXPECT_FALSE(bus->anotherCopyRuns());
    int received = 0;
    const auto watch = bus->observe("show", [&] { ++received; });
    bus->post("show");
    EXPECT_EQ(received, 0);
}

}  // namespace
}  // namespace pintle
