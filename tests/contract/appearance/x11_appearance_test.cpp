// The look as real programs report it: a settings manager and a compositor on a private X server, and a mock
// of the desktop portal on a private bus.
#include "platform/x11/desktop/x11_appearance.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <cstdlib>
#include <fstream>

#include "platform/fake/fake_appearance.h"
#include "platform/qt/qt_socket_watch.h"
#include "tests/contract/session/loop_world.h"
#include "tests/contract/test_bus.h"
#include "tests/contract/x11/x_test_server.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kSettings = "org.freedesktop.portal.Settings";

/// The bus that the code under test takes for the session's, made once because the toolkit keeps its
/// connection.
struct SessionBus {
    static SessionBus& shared() {
        static SessionBus bus;
        return bus;
    }
    SessionBus() {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", daemon.address().c_str(), 1);
        connection = QDBusConnection::connectToBus(QString::fromStdString(daemon.address()), "test session");
    }
    TestBus daemon;
    QDBusConnection connection{"none"};
};

/// A portal whose answer is the Python dictionary `settings`.
class Portal {
  public:
    explicit Portal(const std::string& settings) {
        process_ = std::make_unique<QuietChild>(std::vector<std::string>{
            "timeout", "100", "/usr/bin/python3", "-m", "dbusmock", "--session", kPortal, kPath, kSettings});
        const bool there = LoopWorld::until([&] {
            return SessionBus::shared().connection.interface()->isServiceRegistered(kPortal).value();
        });
        answer_ = "ret = " + QString::fromStdString(settings);
        if (!there || !answerWith(answer_)) throw std::runtime_error("no mock of the portal");
    }
    /// Observers and later callers both get the new value.
    bool change(const char* group, const char* key, const QVariant& value) {
        const auto text = value.metaType() == QMetaType::fromType<quint32>()
                              ? QStringLiteral("dbus.UInt32(%1)").arg(value.toUInt())
                              : QStringLiteral("'%1'").arg(value.toString());
        answer_ += QStringLiteral("\nret.setdefault('%1', {})['%2'] = %3").arg(group, key, text);
        if (!answerWith(answer_)) return false;
        const QVariantList arguments{group, key, QVariant::fromValue(QDBusVariant(value))};
        return mock("EmitSignal", {kSettings, "SettingChanged", "ssv", QVariant::fromValue(arguments)});
    }

  private:
    static bool answerWith(const QString& code) {
        return mock("AddMethod", {kSettings, "ReadAll", "as", "a{sa{sv}}", code});
    }
    static bool mock(const char* method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(kPortal, kPath, "org.freedesktop.DBus.Mock", method);
        message.setArguments(arguments);
        return SessionBus::shared().connection.call(message).type() == QDBusMessage::ReplyMessage;
    }
    std::unique_ptr<QuietChild> process_;
    QString answer_;
};

struct X11AppearanceTest : testing::Test {
    SessionBus& bus = SessionBus::shared();
    XTestServer server;
    TemporaryFolder folder;
    LoopWorld world;
    std::unique_ptr<Appearance> appearance;
    Subscription observer;
    int changes = 0;

    void listen() {
        appearance =
            makeX11Appearance({server.display(), *world.queue, [this](int descriptor, auto readable) {
                                   return watchReadable(*world.queue, descriptor, std::move(readable));
                               }});
        observer = appearance->observe([this] { ++changes; });
    }
    bool until(const std::function<bool(const DesktopLook&)>& reached) const {
        return LoopWorld::until([&] { return reached(appearance->look()); });
    }
    std::string configuration() { return (folder.path() / "xsettingsd").string(); }
    void publish(const std::string& settings) { std::ofstream(configuration()) << settings; }
    std::unique_ptr<QuietChild> onScreen(std::vector<std::string> words) const {
        std::vector<std::string> all{"env", "DISPLAY=" + server.display()};
        all.insert(all.end(), words.begin(), words.end());
        return std::make_unique<QuietChild>(std::move(all));
    }
    std::unique_ptr<QuietChild> settingsManager(const std::string& settings) {
        publish(settings);
        return onScreen({"xsettingsd", "-c", configuration()});
    }
};

TEST_F(X11AppearanceTest, ADesktopThatReportsNothingHasTheDefaultLook) {
    listen();
    EXPECT_EQ(appearance->look(), DesktopLook());
    int turns = 0;
    world.queue->post([&] { ++turns; });
    ASSERT_TRUE(LoopWorld::until([&] { return turns == 1; }));
    EXPECT_EQ(appearance->look(), DesktopLook());
    EXPECT_EQ(changes, 0);
}

TEST_F(X11AppearanceTest, WithoutAServerTheLookIsTheDefaultOneAndThePortalIsFollowed) {
    const Portal portal("{'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(1)}}");
    appearance = makeX11Appearance({":9987", *world.queue, [this](int descriptor, auto readable) {
                                        return watchReadable(*world.queue, descriptor, std::move(readable));
                                    }});
    EXPECT_EQ(appearance->look(), DesktopLook());
    EXPECT_TRUE(until([](const auto& look) { return look.dark; }));
}

TEST_F(X11AppearanceTest, ASettingsManagerThatIsThereFirstIsAsked) {
    const auto first = settingsManager("Net/ThemeName \"Adwaita-dark\"\nGtk/EnableAnimations 0\n");
    listen();
    ASSERT_TRUE(until([](const auto& look) { return look.dark && look.reducedMotion; }));
    EXPECT_EQ(changes, 1);
}

TEST_F(X11AppearanceTest, ASettingsManagerThatComesLaterIsFollowedAndSoIsEachThemeThatTheUserChooses) {
    listen();
    const auto manager = settingsManager("Net/ThemeName \"Adwaita\"\nGtk/EnableAnimations 0\n");
    ASSERT_TRUE(until([](const auto& look) { return look.reducedMotion; }));
    publish("Net/ThemeName \"Adwaita-dark\"\nGtk/EnableAnimations 0\n");
    manager->signalWhenCaught(SIGHUP);
    ASSERT_TRUE(until([](const auto& look) { return look.dark; }));
    publish("Net/ThemeName \"Adwaita\"\nGtk/EnableAnimations 1\n");
    manager->signalWhenCaught(SIGHUP);
    ASSERT_TRUE(until([](const auto& look) { return !look.dark; }));
    EXPECT_EQ(appearance->look(), DesktopLook());
    EXPECT_EQ(changes, 3);
}

TEST_F(X11AppearanceTest, ASettingsManagerThatEndsTakesItsLookAlong) {
    auto manager = settingsManager("Net/ThemeName \"Adwaita-dark\"\n");
    listen();
    ASSERT_TRUE(until([](const auto& look) { return look.dark; }));
    manager.reset();
    EXPECT_TRUE(until([](const auto& look) { return !look.dark; }));
    EXPECT_EQ(changes, 2);
}

TEST_F(X11AppearanceTest, ACompositorThatComesAndGoesIsNoticed) {
    listen();
    auto compositor = onScreen({"picom", "--config", "/dev/null", "--backend", "xrender"});
    ASSERT_TRUE(until([](const auto& look) { return look.blendsWindows; }));
    compositor.reset();
    EXPECT_TRUE(until([](const auto& look) { return !look.blendsWindows; }));
    EXPECT_EQ(changes, 2);
}

TEST_F(X11AppearanceTest, ThePortalsAnswerCountsAndGoesBeforeTheSettingsManagers) {
    const auto manager = settingsManager("Net/ThemeName \"Adwaita-dark\"\nGtk/EnableAnimations 0\n");
    const Portal portal(
        "{'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(2), 'contrast': dbus.UInt32(1)}, "
        "'org.gnome.desktop.interface': {'text-scaling-factor': 1.5, 'gtk-theme': 'Yaru'}}");
    listen();
    EXPECT_TRUE(until([](const auto& look) {
        return look == DesktopLook{.reducedMotion = true, .highContrast = true, .textScale = 1.5};
    }));
}

TEST_F(X11AppearanceTest, AChangeOfThePortalsSettingsIsReported) {
    Portal portal("{'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(1)}}");
    listen();
    ASSERT_TRUE(until([](const auto& look) { return look.dark; }));
    ASSERT_TRUE(portal.change("org.freedesktop.appearance", "color-scheme", 2U));
    ASSERT_TRUE(until([](const auto& look) { return !look.dark; }));
    ASSERT_TRUE(portal.change("org.freedesktop.appearance", "reduced-motion", 1U));
    ASSERT_TRUE(until([](const auto& look) { return look.reducedMotion; }));
    const int before = changes;
    ASSERT_TRUE(portal.change("org.gnome.desktop.interface", "gtk-theme", "Adwaita-dark"));
    ASSERT_TRUE(portal.change("org.freedesktop.appearance", "color-scheme", "not a number"));
    ASSERT_TRUE(portal.change("org.freedesktop.appearance", "contrast", 1U));
    ASSERT_TRUE(until([](const auto& look) { return look.highContrast; }));
    EXPECT_FALSE(appearance->look().dark);
    EXPECT_EQ(changes, before + 1);
}

TEST_F(X11AppearanceTest, APortalThatComesLaterIsAskedAndOneThatGoesIsForgotten) {
    listen();
    {
        Portal portal("{'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(1)}}");
        // The mock knows its answer a moment after it has its name.
        ASSERT_TRUE(portal.change("org.freedesktop.appearance", "color-scheme", 1U));
        ASSERT_TRUE(until([](const auto& look) { return look.dark; }));
    }
    EXPECT_TRUE(until([](const auto& look) { return !look.dark; }));
}

TEST_F(X11AppearanceTest, APortalThatDoesNotAnswerDelaysNothing) {
    const Portal portal("__import__('time').sleep(5)");
    listen();
    const auto manager = settingsManager("Net/ThemeName \"Adwaita-dark\"\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(until([](const auto& look) { return look.dark; }));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
}

TEST_F(X11AppearanceTest, AServerThatCrashesLeavesTheLookAsItWas) {
    const auto manager = settingsManager("Net/ThemeName \"Adwaita-dark\"\n");
    listen();
    ASSERT_TRUE(until([](const auto& look) { return look.dark; }));
    server.crash();
    int turns = 0;
    const Timer timer = world.queue->after(std::chrono::milliseconds(100), [&] { ++turns; });
    ASSERT_TRUE(LoopWorld::until([&] { return turns == 1; }));
    EXPECT_TRUE(appearance->look().dark);
}

TEST_F(X11AppearanceTest, AfterItsEndNothingIsReported) {
    listen();
    appearance.reset();
    const auto compositor = onScreen({"picom", "--config", "/dev/null", "--backend", "xrender"});
    int turns = 0;
    const Timer timer = world.queue->after(std::chrono::milliseconds(200), [&] { ++turns; });
    ASSERT_TRUE(LoopWorld::until([&] { return turns == 1; }));
    EXPECT_EQ(changes, 0);
}

TEST(FakeAppearance, ReportsEachChangeOnceAndOnlyChanges) {
    FakeAppearance appearance;
    int changes = 0;
    auto observer = appearance.observe([&] { ++changes; });
    EXPECT_EQ(appearance.look(), DesktopLook());
    appearance.become({.dark = true});
    appearance.become({.dark = true});
    EXPECT_TRUE(appearance.look().dark);
    EXPECT_EQ(changes, 1);
    observer.end();
    appearance.become({});
    EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace pintle
