// What is observed over the message buses is observed again after they were started anew at their old places.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/freedesktop/desktop_notifications.h"
#include "platform/freedesktop/notifier_watch.h"
#include "platform/freedesktop/portal_watch.h"
#include "platform/freedesktop/session_watch.h"
#include "tests/contract/session/loop_world.h"
#include "tests/contract/test_bus.h"
#include "tests/support/temporary_folder.h"

namespace pintle {

/// A register of tray icons with a panel behind it.
class PanelRegister : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

  public:
    static bool hasHost() { return true; }
};

/// A desktop that shows passing messages, and forgets nothing of them.
class MessageBoard : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

  public:
    void serve(QDBusConnection bus) {
        bus.registerObject("/org/freedesktop/Notifications", this, QDBusConnection::ExportAllSlots);
        bus.registerService("org.freedesktop.Notifications");
    }
    bool shows(const std::string& title) const {
        return std::find(titles_.begin(), titles_.end(), title) != titles_.end();
    }

  public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name on the bus.
    unsigned Notify(const QString& /*program*/, unsigned /*replaces*/, const QString& /*icon*/,
                    const QString& title, const QString& /*text*/, const QStringList& /*actions*/,
                    const QVariantMap& /*hints*/, int /*time*/) {
        titles_.push_back(title.toStdString());
        return 1;
    }

  private:
    std::vector<std::string> titles_;
};

namespace {

using testing::ElementsAre;

/// A bus at one place, with a service of the test on it.
class RestartedBus {
  public:
    explicit RestartedBus(const char* variable) : name_(variable) {
        // Not what the daemon prints, which has the identity of one bus.
        ::setenv(variable, ("unix:path=" + path()).c_str(), 1);
        start();
    }
    ~RestartedBus() { end(); }
    RestartedBus(const RestartedBus&) = delete;
    RestartedBus& operator=(const RestartedBus&) = delete;

    void start() {
        bus_ = std::make_unique<TestBus>(path());
        connection = QDBusConnection::connectToBus(QString::fromStdString(bus_->address()), connectionName());
    }
    void end() {
        QDBusConnection::disconnectFromBus(connectionName());
        ++starts_;
        bus_.reset();
        std::filesystem::remove(path());
    }
    void restart() {
        end();
        start();
    }
    bool send(const char* path, const char* interface, const char* member, const QVariantList& arguments) {
        auto signal = QDBusMessage::createSignal(path, interface, member);
        signal.setArguments(arguments);
        return connection.send(signal);
    }
    QDBusConnection connection{"none"};

  private:
    std::string path() const { return (folder_.path() / name_).string(); }
    QString connectionName() const { return QStringLiteral("%1 %2").arg(name_).arg(starts_); }

    const char* name_;
    TemporaryFolder folder_;
    std::unique_ptr<TestBus> bus_;
    int starts_ = 0;
};

/// Made once, because the toolkit remembers where the buses are.
struct BusRestartTest : testing::Test {
    static RestartedBus& session() {
        static RestartedBus bus("DBUS_SESSION_BUS_ADDRESS");
        return bus;
    }
    static RestartedBus& system() {
        static RestartedBus bus("DBUS_SYSTEM_BUS_ADDRESS");
        return bus;
    }
    LoopWorld world;

    BusRestartTest() {
        session();
        system();
    }
};

TEST_F(BusRestartTest, SleepAndLockScreensAreHeardAgain) {
    std::vector<bool> sleeps;
    std::vector<bool> locks;
    const SessionWatch watch({[&](bool sleeping) { sleeps.push_back(sleeping); }, [] {},
                              [&](bool locked) { locks.push_back(locked); }});
    const auto sleep = [&](bool sleeping) {
        system().connection.registerService("org.freedesktop.login1");
        return LoopWorld::until([&] {
            system().send("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                          {sleeping});
            return !sleeps.empty() && sleeps.back() == sleeping;
        });
    };
    const auto lock = [&](bool locked) {
        return LoopWorld::until([&] {
            session().send("/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged", {locked});
            return !locks.empty() && locks.back() == locked;
        });
    };
    ASSERT_TRUE(sleep(true));
    ASSERT_TRUE(lock(true));
    system().restart();
    ASSERT_TRUE(sleep(false));
    session().end();
    ASSERT_TRUE(LoopWorld::until([&] { return locks.size() > 1; })) << "nobody is left to unlock";
    session().start();
    ASSERT_TRUE(lock(true));
    ASSERT_TRUE(lock(false));
    EXPECT_THAT(locks, ElementsAre(true, false, true, false));
}

TEST_F(BusRestartTest, ThePanelThatListensForIconsIsFoundAgain) {
    PanelRegister panel;
    const auto listen = [&] {
        session().connection.registerObject("/StatusNotifierWatcher", &panel,
                                            QDBusConnection::ExportAllProperties);
        session().connection.registerService("org.kde.StatusNotifierWatcher");
    };
    listen();
    int changes = 0;
    const NotifierWatch watch([&] { ++changes; });
    const auto becomes = [&](NotifierWatch::State state) {
        return LoopWorld::until([&] { return watch.state() == state; });
    };
    ASSERT_TRUE(becomes(NotifierWatch::State::present));
    session().end();
    ASSERT_TRUE(becomes(NotifierWatch::State::absent));
    session().start();
    listen();
    ASSERT_TRUE(becomes(NotifierWatch::State::present));
    EXPECT_EQ(changes, 3);
}

TEST_F(BusRestartTest, ThePortalIsObservedAgain) {
    PortalLook look;
    const PortalWatch watch([&](const PortalLook& reported) { look = reported; });
    const auto choose = [&](unsigned scheme) {
        session().connection.registerService("org.freedesktop.portal.Desktop");
        return LoopWorld::until([&] {
            session().send(
                "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged",
                {"org.freedesktop.appearance", "color-scheme", QVariant::fromValue(QDBusVariant(scheme))});
            return look.colorScheme == scheme;
        });
    };
    ASSERT_TRUE(choose(1));
    session().end();
    ASSERT_TRUE(LoopWorld::until([&] { return !look.colorScheme; })) << "the portal went with its bus";
    session().start();
    ASSERT_TRUE(choose(2));
}

TEST_F(BusRestartTest, MessagesAreShownAgain) {
    MessageBoard board;
    board.serve(session().connection);
    DesktopNotifications notifications;
    notifications.show("before", "");
    ASSERT_TRUE(LoopWorld::until([&] { return board.shows("before"); }));
    session().restart();
    board.serve(session().connection);
    EXPECT_TRUE(LoopWorld::until([&] {
        notifications.show("after", "");
        return board.shows("after");
    }));
}

TEST_F(BusRestartTest, TheLastMessageWaitsForABus) {
    session().end();
    DesktopNotifications notifications;
    notifications.show("overtaken", "");
    notifications.show("waiting", "");
    session().start();
    MessageBoard board;
    board.serve(session().connection);
    EXPECT_TRUE(LoopWorld::until([&] { return board.shows("waiting"); }));
    EXPECT_FALSE(board.shows("overtaken"));
}

TEST_F(BusRestartTest, ABusThatIsThereLaterIsJoined) {
    session().end();
    const NotifierWatch watch([] {});
    EXPECT_EQ(watch.state(), NotifierWatch::State::absent);
    session().start();
    PanelRegister panel;
    session().connection.registerObject("/StatusNotifierWatcher", &panel,
                                        QDBusConnection::ExportAllProperties);
    session().connection.registerService("org.kde.StatusNotifierWatcher");
    EXPECT_TRUE(LoopWorld::until([&] { return watch.state() == NotifierWatch::State::present; }));
}

}  // namespace
}  // namespace pintle

#include "bus_restart_test.moc"
