// Windows of GTK 3 and GTK 4, which set their cursors for the device, themed by the keeper.
#include <fcntl.h>

#include "tests/contract/x11/x11_fixture.h"

namespace pintle {
namespace {

const char* const kGtk3 = R"(
import gi
gi.require_version('Gtk', '3.0')
from gi.repository import Gtk, Gdk
window = Gtk.Window(type=Gtk.WindowType.POPUP)
window.set_default_size(200, 200)
window.move(0, 0)
window.show_all()
window.get_window().set_cursor(Gdk.Cursor.new_from_name(Gdk.Display.get_default(), 'pointer'))
Gtk.main()
)";

const char* const kGtk4 = R"(
import gi
gi.require_version('Gtk', '4.0')
from gi.repository import Gtk, GLib
window = Gtk.Window(default_width=200, default_height=200)
window.set_cursor_from_name('pointer')
window.set_child(Gtk.Box())
window.present()
GLib.MainLoop().run()
)";

class Program {
  public:
    Program(const std::string& display, const char* script) {
        process_ = ::fork();
        if (process_ != 0) return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::setenv("DISPLAY", display.c_str(), 1);
        ::setenv("GDK_BACKEND", "x11", 1);
        ::setenv("GSK_RENDERER", "cairo", 1);
        ::setenv("GTK_A11Y", "none", 1);
        ::setenv("NO_AT_BRIDGE", "1", 1);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
        const int nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, 0);
        ::dup2(nothing, 1);
        ::dup2(nothing, 2);
        ::execl("/usr/bin/python3", "python3", "-c", script, static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ~Program() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

  private:
    pid_t process_ = -1;
};

class X11Toolkits : public X11Test, public testing::WithParamInterface<int> {
  protected:
    /// Moves the pointer over the place until the program's own cursor shows.
    bool programShows() {
        int step = 0;
        return eventually([&] {
            client->warp(60 + ++step % 2, 60);
            return client->shown() && shownName() == "pointer";
        });
    }
    X11Toolkits() {
        for (const auto& [theme, base] :
             {std::pair("A", kThemeA), std::pair("B", kThemeB), std::pair("C", kThemeC)})
            writeTestTheme(themes.path(), theme, {{"pointer", base + 0x60}, {"default", base + 0x10}});
        client->publishSettings("A", 24);
        client->warp(400, 400);
    }
};

TEST_P(X11Toolkits, AWindowUnderARestingPointerIsThemedAndGivenBack) {
    const Program program(x.display(), GetParam() == 3 ? kGtk3 : kGtk4);
    ASSERT_TRUE(programShows());
    EXPECT_TRUE(becomes(kThemeA + 0x60));
    start();
    apply(10);
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_EQ(shownName(), "pointer");
    apply(11);
    EXPECT_TRUE(becomes(themePixel(11)));
    restore();
    EXPECT_TRUE(becomes(kThemeA + 0x60));
    client->publishSettings("B", 24);
    // The program takes the new theme in its own time, and shows it when the pointer comes.
    int step = 0;
    EXPECT_TRUE(eventually([&] {
        if (step++ % 20 == 0) {
            client->warp(400, 400);
            client->warp(60, 60);
        }
        return shownPixel() == kThemeB + 0x60;
    }));
}

TEST_P(X11Toolkits, AWindowThatThePointerReachesLaterIsThemed) {
    const Program program(x.display(), GetParam() == 3 ? kGtk3 : kGtk4);
    ASSERT_TRUE(programShows());
    client->warp(400, 400);
    start();
    apply(10);
    settle();
    client->warp(60, 60);
    EXPECT_TRUE(becomes(themePixel(10)));
    client->warp(400, 400);
    EXPECT_TRUE(becomes(themePixel(10)));
    client->warp(61, 60);
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_TRUE(eventually([&] { return shownName() == "pointer"; }));
}

TEST_P(X11Toolkits, AWindowOfAProgramStartedAfterTheApplyIsThemed) {
    start();
    apply(10);
    const Program program(x.display(), GetParam() == 3 ? kGtk3 : kGtk4);
    ASSERT_TRUE(programShows());
    EXPECT_TRUE(becomes(themePixel(10)));
    EXPECT_EQ(shownName(), "pointer");
}

TEST_P(X11Toolkits, AfterARestartAResetGivesTheWindowBack) {
    const Program program(x.display(), GetParam() == 3 ? kGtk3 : kGtk4);
    ASSERT_TRUE(programShows());
    start();
    apply(10);
    ASSERT_TRUE(becomes(themePixel(10)));
    stop();
    start();
    restore();
    settle();
    client->warp(400, 400);
    settle();
    client->warp(60, 60);
    EXPECT_TRUE(becomes(kThemeA + 0x60));
}

INSTANTIATE_TEST_SUITE_P(Gtk3, X11Toolkits, testing::Values(3));
INSTANTIATE_TEST_SUITE_P(Gtk4, X11Toolkits, testing::Values(4));

}  // namespace
}  // namespace pintle
