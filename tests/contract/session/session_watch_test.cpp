// Sleep, session and lock as the real services tell them: a mock of the session manager on a private system
// bus, and lock screens on a private session bus.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <cstdlib>
#include <stdexcept>

#include "platform/freedesktop/session_watch.h"
#include "tests/contract/session/session_world.h"
#include "tests/contract/test_bus.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kWillSleep = "NSWorkspaceWillSleepNotification";
constexpr const char* kDidWake = "NSWorkspaceDidWakeNotification";
constexpr const char* kActive = "NSWorkspaceSessionDidBecomeActiveNotification";
constexpr const char* kLocked = "com.apple.screenIsLocked";
constexpr const char* kUnlocked = "com.apple.screenIsUnlocked";

/// The buses that the code under test takes for those of the system and of the session, made once because the
/// toolkit keeps its connections.
struct Buses {
    static Buses& shared() {
        static Buses buses;
        return buses;
    }
    Buses() {
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus.address().c_str(), 1);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", sessionBus.address().c_str(), 1);
        logind = std::make_unique<QuietChild>(std::vector<std::string>{
            "timeout", "300", "/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind"});
        system = QDBusConnection::connectToBus(QString::fromStdString(systemBus.address()), "test system");
        session = QDBusConnection::connectToBus(QString::fromStdString(sessionBus.address()), "test session");
        const bool there = SessionWorld::until([this] {
            return system.interface()->isServiceRegistered("org.freedesktop.login1").value() &&
                   mock("AddSession", {"c1", "seat0", quint32(1000), "user", true});
        });
        if (!there || !mock("AddSession", {"c2", "seat1", quint32(1001), "stranger", true}))
            throw std::runtime_error("no mock of the session manager");
    }
    bool call(const char* path, const char* interface, const char* method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall("org.freedesktop.login1", path, interface, method);
        message.setArguments(arguments);
        return system.call(message).type() == QDBusMessage::ReplyMessage;
    }
    bool mock(const char* method, const QVariantList& arguments) {
        return call("/org/freedesktop/login1", "org.freedesktop.DBus.Mock", method, arguments);
    }

    SessionWorld world;
    TestBus systemBus;
    TestBus sessionBus;
    std::unique_ptr<QuietChild> logind;
    QDBusConnection system{"none"};
    QDBusConnection session{"none"};
};

struct SessionWatchTest : testing::Test {
    Buses& buses = Buses::shared();
    SessionWorld world;
    std::unique_ptr<Workspace> workspace;

    /// Makes the workspace and waits until it follows its session: a lock is reported.
    void watch(const char* sessionId = "c1") {
        if (sessionId)
            ::setenv("XDG_SESSION_ID", sessionId, 1);
        else
            ::unsetenv("XDG_SESSION_ID");
        workspace = world.makeWorkspace(":9987");
        ASSERT_TRUE(SessionWorld::until([&] {
            onSession("Lock");
            return world.wasReported(kLocked);
        }));
        onSession("Unlock");
        ASSERT_TRUE(world.untilReported(kUnlocked));
        // Its question about the session was sent with the subscriptions and is answered before this one.
        setActive(true);
        const auto reported = reportedSoFar();
        if (sessionId) {
            ASSERT_THAT(reported, ElementsAre(kLocked, kUnlocked));
        }
    }
    void onSession(const char* method, const char* session = "c1") {
        const std::string path = std::string("/org/freedesktop/login1/session/") + session;
        ASSERT_TRUE(buses.call(path.c_str(), "org.freedesktop.login1.Session", method, {}));
    }
    void setActive(bool active, const char* session = "c1") { setProperty("Active", active, session); }
    void setProperty(const char* name, bool value, const char* session = "c1") {
        const std::string path = std::string("/org/freedesktop/login1/session/") + session;
        ASSERT_TRUE(buses.call(path.c_str(), "org.freedesktop.DBus.Mock", "UpdateProperties",
                               {"org.freedesktop.login1.Session", QVariantMap{{name, value}}}));
    }
    void sleep(bool sleeping) {
        ASSERT_TRUE(buses.mock("EmitSignal", {"org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                                              QVariant::fromValue(QVariantList{sleeping})}));
    }
    void screenSaver(const char* interface, const char* path, bool active) {
        auto signal = QDBusMessage::createSignal(path, interface, "ActiveChanged");
        signal << active;
        ASSERT_TRUE(buses.session.send(signal));
    }
    /// What was reported until now; a sleep behind it is the mark.
    std::vector<std::string> reportedSoFar() {
        sleep(true);
        EXPECT_TRUE(world.untilReported(kWillSleep));
        auto before = world.reported;
        before.pop_back();
        world.reported.clear();
        return before;
    }
};

TEST_F(SessionWatchTest, SleepAndWakeAreReported) {
    watch();
    sleep(true);
    sleep(false);
    ASSERT_TRUE(world.untilReported(kDidWake));
    EXPECT_THAT(world.reported, ElementsAre(kWillSleep, kDidWake));
}

TEST_F(SessionWatchTest, TheSessionThatBecomesActiveIsTold) {
    watch();
    setActive(false);
    EXPECT_THAT(reportedSoFar(), IsEmpty());
    setActive(true);
    EXPECT_THAT(reportedSoFar(), ElementsAre(kActive));
    setActive(true);
    EXPECT_THAT(reportedSoFar(), IsEmpty());
}

TEST_F(SessionWatchTest, TheSessionsOfOthersAreNotOurs) {
    watch();
    setActive(false, "c2");
    setActive(true, "c2");
    onSession("Lock", "c2");
    EXPECT_THAT(reportedSoFar(), IsEmpty());
}

TEST_F(SessionWatchTest, LockAndUnlockOfTheSessionAreReported) {
    watch();
    onSession("Lock");
    onSession("Unlock");
    EXPECT_THAT(reportedSoFar(), ElementsAre(kLocked, kUnlocked));
}

TEST_F(SessionWatchTest, TheSessionsOwnWordAboutItsLockIsObserved) {
    watch();
    setProperty("LockedHint", true);
    EXPECT_THAT(reportedSoFar(), ElementsAre(kLocked));
    setProperty("LockedHint", false);
    EXPECT_THAT(reportedSoFar(), ElementsAre(kUnlocked));
    onSession("Lock");
    setProperty("LockedHint", true);
    setProperty("LockedHint", false);
    EXPECT_THAT(reportedSoFar(), ElementsAre(kLocked, kUnlocked)) << "without the signal of an unlock";
}

TEST_F(SessionWatchTest, ALockFromBeforeTheStartIsReported) {
    ::setenv("XDG_SESSION_ID", "c1", 1);
    setProperty("LockedHint", true);
    workspace = world.makeWorkspace(":9987");
    EXPECT_TRUE(world.untilReported(kLocked));
    setProperty("LockedHint", false);
    EXPECT_TRUE(world.untilReported(kUnlocked));
}

TEST_F(SessionWatchTest, ARequestToLockThatNothingCarriesOutEnds) {
    ::setenv("XDG_SESSION_ID", "c1", 1);
    std::vector<bool> locks;
    const SessionWatch quick({[](bool) {}, [] {}, [&](bool locked) { locks.push_back(locked); }},
                             std::chrono::milliseconds(1));
    ASSERT_TRUE(SessionWorld::until([&] {
        if (locks.empty()) onSession("Lock");
        return locks.size() == 2;
    }));
    EXPECT_THAT(locks, ElementsAre(true, false));
    setProperty("LockedHint", true);
    ASSERT_TRUE(SessionWorld::until([&] { return locks.size() == 3; }));
    onSession("Lock");
    setProperty("LockedHint", false);
    ASSERT_TRUE(SessionWorld::until([&] { return locks.size() == 4; }));
    EXPECT_THAT(locks, ElementsAre(true, false, true, false));
}

TEST_F(SessionWatchTest, EachLockScreenIsObserved) {
    watch();
    for (const auto& [interface, path] : std::vector<std::pair<const char*, const char*>>{
             {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
             {"org.freedesktop.ScreenSaver", "/ScreenSaver"},
             {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
             {"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
             {"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
             {"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"}}) {
        screenSaver(interface, path, true);
        ASSERT_TRUE(world.untilReported(kLocked)) << interface;
        screenSaver(interface, path, false);
        ASSERT_TRUE(world.untilReported(kUnlocked)) << interface;
        EXPECT_THAT(reportedSoFar(), ElementsAre(kLocked, kUnlocked)) << interface;
    }
}

TEST_F(SessionWatchTest, OneLockThatTwoServicesTellIsOneLock) {
    watch();
    onSession("Lock");
    ASSERT_TRUE(world.untilReported(kLocked));
    screenSaver("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", true);
    screenSaver("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", true);
    screenSaver("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", false);
    ASSERT_TRUE(world.untilReported(kUnlocked));
    onSession("Unlock");
    EXPECT_THAT(reportedSoFar(), ElementsAre(kLocked, kUnlocked));
}

TEST_F(SessionWatchTest, AProgramOutsideOfAnySessionHearsOfEveryOne) {
    watch(nullptr);
    onSession("Lock", "c2");
    ASSERT_TRUE(world.untilReported(kLocked));
    onSession("Unlock", "c2");
    EXPECT_THAT(reportedSoFar(), ElementsAre(kLocked, kUnlocked));
}

TEST_F(SessionWatchTest, AfterItsEndNothingArrives) {
    watch();
    workspace.reset();
    sleep(true);
    auto second = std::make_unique<SessionWorld>();
    const auto other = second->makeWorkspace(":9987");
    ASSERT_TRUE(SessionWorld::until([&] {
        sleep(true);
        return second->wasReported(kWillSleep);
    }));
    EXPECT_THAT(world.reported, IsEmpty());
}

}  // namespace
}  // namespace pintle
