// The workspace on a private X server. The test plays the window manager and the applications, and for the
// rest uses the programs that real desktops use.
#include "platform/x11/desktop/desktop_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <xcb/xcb.h>

#include <cstdlib>

#include "tests/contract/session/session_world.h"
#include "tests/contract/x11/x_test_server.h"
#include "tests/support/signals_of_process.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kActivated = "NSWorkspaceDidActivateApplicationNotification: ";

class TestProgram {
  public:
    explicit TestProgram(std::vector<std::string> words) {
        pid_ = ::fork();
        if (pid_ != 0) return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::vector<char*> arguments;
        for (auto& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ~TestProgram() { end(); }
    TestProgram(const TestProgram&) = delete;
    TestProgram& operator=(const TestProgram&) = delete;
    void signal(int number) const { signalWhenCaught(pid_, number); }
    void end() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

  private:
    pid_t pid_ = -1;
};

struct DesktopWatchTest : testing::Test {
    XTestServer server;
    SessionWorld world;
    std::unique_ptr<x11::XConnection> client = x11::XConnection::open(server.display());
    std::unique_ptr<Workspace> workspace;

    void watch() { workspace = world.makeWorkspace(server.display()); }
    xcb_window_t makeWindow(const std::string& windowClass, std::uint32_t pid) {
        const auto window = xcb_generate_id(client->get());
        xcb_create_window(client->get(), XCB_COPY_FROM_PARENT, window, client->root(), 0, 0, 10, 10, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        if (!windowClass.empty()) {
            const std::string text = "instance" + std::string(1, '\0') + windowClass + std::string(1, '\0');
            set(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, text);
        }
        if (pid != 0)
            xcb_change_property(client->get(), XCB_PROP_MODE_REPLACE, window, client->atom("_NET_WM_PID"),
                                XCB_ATOM_CARDINAL, 32, 1, &pid);
        return window;
    }
    void set(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& text) {
        xcb_change_property(client->get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
        client->synchronize();
    }
    void setOnRoot(const char* property, xcb_window_t window) {
        xcb_change_property(client->get(), XCB_PROP_MODE_REPLACE, client->root(), client->atom(property),
                            XCB_ATOM_WINDOW, 32, 1, &window);
        client->synchronize();
    }
    void activate(xcb_window_t window) { setOnRoot("_NET_ACTIVE_WINDOW", window); }
    /// Everything that was reported before this moment; the mark itself is left out.
    std::vector<std::string> reportedSoFar() {
        static int marks = 0;
        const std::string name = "mark" + std::to_string(++marks);
        activate(makeWindow(name, static_cast<std::uint32_t>(100000 + marks)));
        EXPECT_TRUE(world.untilReported(kActivated + name));
        auto before = world.reported;
        before.pop_back();
        world.reported.clear();
        world.applications.clear();
        return before;
    }
    /// Changes with every property that the settings manager writes.
    std::vector<std::uint8_t> settingsSerial() {
        const x11::Reply<xcb_get_selection_owner_reply_t> owner{xcb_get_selection_owner_reply(
            client->get(), xcb_get_selection_owner(client->get(), client->atom("_XSETTINGS_S0")), nullptr)};
        if (!owner || owner->owner == 0) return {};
        return client->property(owner->owner, client->atom("_XSETTINGS_SETTINGS"));
    }
    int run(const std::string& command) const {
        return std::system(("DISPLAY=" + server.display() + " " + command).c_str());
    }
};

TEST_F(DesktopWatchTest, TheApplicationOfTheActiveWindowIsInFront) {
    activate(makeWindow("XTerm", 41));
    watch();
    EXPECT_EQ(workspace->frontmostApplication(), (RunningApplication{"XTerm", 41}));
    EXPECT_THAT(reportedSoFar(), IsEmpty());
}

TEST_F(DesktopWatchTest, AnotherApplicationInFrontIsAnActivationWithItsNameAndProcess) {
    activate(makeWindow("XTerm", 41));
    watch();
    activate(makeWindow("Blender", 42));
    ASSERT_TRUE(world.untilReported(std::string(kActivated) + "Blender"));
    EXPECT_EQ(world.applications.back(), (RunningApplication{"Blender", 42}));
    EXPECT_EQ(workspace->frontmostApplication(), (RunningApplication{"Blender", 42}));
}

TEST_F(DesktopWatchTest, TheFirstApplicationEverIsAnActivation) {
    watch();
    EXPECT_FALSE(workspace->frontmostApplication());
    activate(makeWindow("XTerm", 41));
    EXPECT_TRUE(world.untilReported(std::string(kActivated) + "XTerm"));
}

TEST_F(DesktopWatchTest, AWindowWithoutAClassIsNamedAfterItsProcess) {
    watch();
    std::ifstream comm("/proc/self/comm");
    std::string own;
    std::getline(comm, own);
    activate(makeWindow("", static_cast<std::uint32_t>(::getpid())));
    EXPECT_TRUE(world.untilReported(kActivated + own));
}

TEST_F(DesktopWatchTest, AWindowWithNeitherClassNorProcessIsAnApplicationWithoutAName) {
    watch();
    activate(makeWindow("", 0));
    ASSERT_TRUE(world.untilReported(std::string(kActivated) + "(none)"));
    EXPECT_EQ(world.applications.back(), (RunningApplication{std::nullopt, 0}));
}

TEST_F(DesktopWatchTest, AChangeInsideOneApplicationIsNoActivation) {
    activate(makeWindow("Gimp", 41));
    watch();
    activate(makeWindow("Gimp", 41));
    EXPECT_THAT(reportedSoFar(), IsEmpty());
    activate(makeWindow("Gimp", 41));
    EXPECT_TRUE(world.untilReported(std::string(kActivated) + "Gimp"));
}

TEST_F(DesktopWatchTest, ADialogOfAnotherClassBelongsToTheApplicationOfItsProcess) {
    activate(makeWindow("Tk", 41));
    watch();
    activate(makeWindow("Toplevel", 41));
    EXPECT_THAT(reportedSoFar(), IsEmpty());
}

TEST_F(DesktopWatchTest, TwoProcessesOfOneProgramAreTwoApplications) {
    activate(makeWindow("XTerm", 41));
    watch();
    activate(makeWindow("XTerm", 42));
    EXPECT_TRUE(world.untilReported(std::string(kActivated) + "XTerm"));
}

TEST_F(DesktopWatchTest, WindowsWithoutAProcessAreKnownByTheirClass) {
    activate(makeWindow("XLogo", 0));
    watch();
    activate(makeWindow("XLogo", 0));
    EXPECT_THAT(reportedSoFar(), IsEmpty());
    activate(makeWindow("XLogo", 0));
    ASSERT_TRUE(world.untilReported(std::string(kActivated) + "XLogo"));
    activate(makeWindow("XClock", 0));
    EXPECT_TRUE(world.untilReported(std::string(kActivated) + "XClock"));
}

TEST_F(DesktopWatchTest, TheWayThroughNoWindowIsNoActivation) {
    const auto window = makeWindow("XTerm", 41);
    activate(window);
    watch();
    activate(0);
    ASSERT_TRUE(SessionWorld::until([&] { return !workspace->frontmostApplication(); }));
    activate(window);
    ASSERT_TRUE(SessionWorld::until([&] { return workspace->frontmostApplication().has_value(); }));
    EXPECT_THAT(world.reported, IsEmpty());
    activate(0);
    activate(makeWindow("Blender", 42));
    ASSERT_TRUE(world.untilReported(std::string(kActivated) + "Blender"));
    EXPECT_THAT(world.reported, ElementsAre(std::string(kActivated) + "Blender"));
}

TEST_F(DesktopWatchTest, AnActiveWindowThatIsGoneAlreadyIsIgnored) {
    watch();
    const auto window = makeWindow("XTerm", 41);
    xcb_destroy_window(client->get(), window);
    activate(window);
    EXPECT_THAT(reportedSoFar(), IsEmpty());
}

TEST_F(DesktopWatchTest, AMonitorThatComesOrGoesIsADisplayChange) {
    watch();
    ASSERT_EQ(run("xrandr --setmonitor LEFT 320/85x480/127+0+0 screen"), 0);
    ASSERT_TRUE(world.untilReported("display 0"));
    ASSERT_TRUE(world.untilReported("NSApplicationDidChangeScreenParametersNotification"));
    reportedSoFar();
    ASSERT_EQ(run("xrandr --setmonitor RIGHT 320/85x480/127+320+0 none"), 0);
    ASSERT_TRUE(world.untilReported("display 0"));
    reportedSoFar();
    ASSERT_EQ(run("xrandr --delmonitor RIGHT"), 0);
    EXPECT_TRUE(world.untilReported("display 0"));
}

TEST_F(DesktopWatchTest, AnotherCursorThemeInTheResourcesIsAPointerChange) {
    set(client->root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, "XTerm*font:\tfixed\n");
    watch();
    for (const auto* resources : {"XTerm*font:\tfixed\nXcursor.theme:\tDMZ-White\n",
                                  "XTerm*font:\tfixed\nXcursor.theme:\tDMZ-Black\n",
                                  "Xcursor.theme:\tDMZ-Black\nXcursor.size:\t48\n", ""}) {
        set(client->root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, resources);
        EXPECT_THAT(reportedSoFar(), ElementsAre("pointer change")) << resources;
    }
}

TEST_F(DesktopWatchTest, OtherResourcesAreNoPointerChange) {
    set(client->root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, "Xcursor.theme:\tDMZ-White\n");
    watch();
    for (const auto* resources :
         {"Xcursor.theme:\tDMZ-White\n", "XTerm*font:\tfixed\nXcursor.theme:\tDMZ-White\nXft.dpi:\t96\n"})
        set(client->root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, resources);
    EXPECT_THAT(reportedSoFar(), IsEmpty());
}

TEST_F(DesktopWatchTest, TheSettingsManagersCursorThemeIsAPointerChangeAndItsOtherSettingsAreNot) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "xsettingsd";
    watch();
    writeFile(file, std::string("Gtk/CursorThemeName \"DMZ-White\"\n"));
    TestProgram manager({"env", "DISPLAY=" + server.display(), "xsettingsd", "-c", file.string()});
    ASSERT_TRUE(world.untilReported("pointer change"));
    // It takes the selection before it writes its first property.
    ASSERT_TRUE(SessionWorld::until([&] { return !settingsSerial().empty(); }));
    reportedSoFar();

    const auto settle = [&](const std::string& text) {
        const auto serial = settingsSerial();
        writeFile(file, text);
        manager.signal(SIGHUP);
        return SessionWorld::until([&] { return settingsSerial() != serial; });
    };
    ASSERT_TRUE(settle("Gtk/CursorThemeName \"DMZ-White\"\nGtk/FontName \"Sans 11\"\n"));
    EXPECT_THAT(reportedSoFar(), IsEmpty());
    ASSERT_TRUE(settle("Gtk/CursorThemeName \"DMZ-Black\"\nGtk/FontName \"Sans 11\"\n"));
    EXPECT_THAT(reportedSoFar(), ElementsAre("pointer change"));
    ASSERT_TRUE(settle("Gtk/CursorThemeName \"DMZ-Black\"\nGtk/CursorThemeSize 48\n"));
    EXPECT_THAT(reportedSoFar(), ElementsAre("pointer change"));
    manager.end();
    EXPECT_TRUE(world.untilReported("pointer change"));
}

TEST_F(DesktopWatchTest, OtherDotsPerInchInTheResourcesAreADensityChange) {
    const auto resources = [this](const char* text) {
        set(client->root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, text);
    };
    resources("Xft.dpi:\t144\n");
    watch();
    EXPECT_EQ(workspace->pixelsPerPoint(), 1.5);
    resources("Xft.dpi:\t192\n");
    EXPECT_THAT(reportedSoFar(), ElementsAre("pixel density change", "pointer change"));
    EXPECT_EQ(workspace->pixelsPerPoint(), 2);
    resources("Xft.dpi:\t190\n");
    EXPECT_THAT(reportedSoFar(), IsEmpty());
    resources("");
    EXPECT_THAT(reportedSoFar(), ElementsAre("pixel density change", "pointer change"));
    EXPECT_EQ(workspace->pixelsPerPoint(), 1);
}

TEST_F(DesktopWatchTest, TheSettingsManagersFactorForWindowsIsADensityChangeAndItsSizeOfTextsIsNot) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "xsettingsd";
    set(client->root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, "Xft.dpi:\t192\n");
    watch();
    EXPECT_EQ(workspace->pixelsPerPoint(), 2);
    writeFile(file, std::string("Xft/DPI 196608\nGdk/WindowScalingFactor 3\n"));
    TestProgram manager({"env", "DISPLAY=" + server.display(), "xsettingsd", "-c", file.string()});
    ASSERT_TRUE(SessionWorld::until([&] { return workspace->pixelsPerPoint() == 3; }));
    writeFile(file, std::string("Xft/DPI 196608\n"));
    manager.signal(SIGHUP);
    ASSERT_TRUE(SessionWorld::until([&] { return workspace->pixelsPerPoint() == 1; }));
    manager.end();
    EXPECT_TRUE(SessionWorld::until([&] { return workspace->pixelsPerPoint() == 2; }));
}

TEST_F(DesktopWatchTest, AWindowManagerThatComesBackIsAPointerChange) {
    const auto check = makeWindow("", 0);
    setOnRoot("_NET_SUPPORTING_WM_CHECK", check);
    watch();
    // The new one may get the same number as the old.
    setOnRoot("_NET_SUPPORTING_WM_CHECK", check);
    EXPECT_THAT(reportedSoFar(), ElementsAre("pointer change"));
    xcb_set_selection_owner(client->get(), check, client->atom("WM_S0"), XCB_CURRENT_TIME);
    client->synchronize();
    EXPECT_THAT(reportedSoFar(), ElementsAre("pointer change"));
}

TEST_F(DesktopWatchTest, TheScreenSaverPutsTheScreensToSleepAndWakesThem) {
    watch();
    ASSERT_EQ(run("xset s activate"), 0);
    ASSERT_TRUE(world.untilReported("NSWorkspaceScreensDidSleepNotification"));
    ASSERT_EQ(run("xset s reset"), 0);
    ASSERT_TRUE(world.untilReported("NSWorkspaceScreensDidWakeNotification"));
    EXPECT_THAT(reportedSoFar(), ElementsAre("NSWorkspaceScreensDidSleepNotification",
                                             "NSWorkspaceScreensDidWakeNotification"));
}

TEST_F(DesktopWatchTest, AClosedConnectionIsOpenedAgain) {
    activate(makeWindow("XTerm", 41));
    watch();
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(::shutdown(world.watchedDescriptor, SHUT_RDWR), 0);
        ASSERT_TRUE(world.untilReported("display 0"));
        EXPECT_EQ(workspace->frontmostApplication()->name, round == 0 ? "XTerm" : "Blender");
        activate(makeWindow("Blender", 42 + static_cast<std::uint32_t>(round)));
        EXPECT_TRUE(world.untilReported(std::string(kActivated) + "Blender"));
        world.reported.clear();
    }
}

TEST_F(DesktopWatchTest, AServerThatDiesIsSilence) {
    activate(makeWindow("XTerm", 41));
    watch();
    bool over = false;
    server.crash();
    const auto timer = world.queue->after(std::chrono::milliseconds(300), [&] { over = true; });
    ASSERT_TRUE(SessionWorld::until([&] { return over; }));
    EXPECT_THAT(world.reported, IsEmpty());
}

TEST(DesktopWatch, WithoutAServerThereIsNoApplication) {
    SessionWorld world;
    const auto workspace = world.makeWorkspace(":9987");
    EXPECT_FALSE(workspace->frontmostApplication());
}

TEST(ApplicationName, TheClassIsTheNameAndTheProcessTheSecondChoice) {
    const auto text = [](const char* raw, std::size_t size) { return std::string_view(raw, size); };
    EXPECT_EQ(applicationName(text("xterm\0XTerm\0", 12), 0), "XTerm");
    EXPECT_EQ(applicationName(text("xterm\0XTerm", 11), 0), "XTerm");
    EXPECT_FALSE(applicationName(text("xterm\0\0", 7), 0));
    EXPECT_FALSE(applicationName(text("xterm\0", 6), 0));
    EXPECT_FALSE(applicationName("xterm", 0));
    EXPECT_FALSE(applicationName("", 0));
    EXPECT_FALSE(applicationName("", -1));
    EXPECT_FALSE(applicationName("", 0x7ffffff0));
}

}  // namespace
}  // namespace pintle
