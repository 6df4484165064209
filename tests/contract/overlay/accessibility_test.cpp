// The role of the element under a point, from applications on an accessibility bus of their own.
#include <array>
#include <sstream>

#include "platform/freedesktop/atspi_accessibility.h"
#include "tests/contract/overlay/child.h"
#include "tests/contract/overlay/overlay_fixture.h"

namespace pintle {
namespace {

std::string firstLine(int descriptor) {
    std::string line;
    char character = 0;
    while (::read(descriptor, &character, 1) == 1 && character != '\n') line += character;
    return line;
}

/// A program whose first line of output is waited for.
struct Talking {
    explicit Talking(std::vector<std::string> words) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        child = std::make_unique<Child>(std::move(words), ends[1]);
        ::close(ends[1]);
        line = firstLine(ends[0]);
        ::close(ends[0]);
    }
    std::unique_ptr<Child> child;
    std::string line;
};

class AccessibilityTest : public OverlayDesktopTest {
  protected:
    AccessibilityTest() {
        onlooker.close(backdrop);
        ::setenv("DISPLAY", x.display().c_str(), 1);
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_RUNTIME_DIR", home.path().c_str(), 1);
        ::setenv("GSETTINGS_BACKEND", "memory", 1);
        ::unsetenv("NO_AT_BRIDGE");
        ::unsetenv("AT_SPI_BUS_ADDRESS");
        bus = std::make_unique<Talking>(
            std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--print-address=1"});
        ::setenv("DBUS_SESSION_BUS_ADDRESS", bus->line.c_str(), 1);
    }
    struct Application {
        std::unique_ptr<Talking> program;
        TopLeftPoint text;
        TopLeftPoint label;
    };
    static Application startApplication(const std::string& title, int left, int top) {
        Application started;
        started.program = std::make_unique<Talking>(std::vector<std::string>{
            "/usr/bin/python3", TEXT_AND_LABEL, title, std::to_string(left), std::to_string(top)});
        std::istringstream words(started.program->line);
        words >> started.text.x >> started.text.y >> started.label.x >> started.label.y;
        return started;
    }
    /// Asks 120 times a second, as the overlay does, and measures the longest question.
    bool becomes(TopLeftPoint point, const std::optional<std::string>& role) {
        return eventually([&] {
            const auto begin = std::chrono::steady_clock::now();
            const auto answer = accessibility->roleAt(point);
            longest = std::max(longest, std::chrono::steady_clock::now() - begin);
            return answer == role;
        });
    }

    TemporaryFolder home;
    std::unique_ptr<Talking> bus;
    std::unique_ptr<Accessibility> accessibility;
    std::chrono::nanoseconds longest{0};
};

// First: the library keeps the first service that it has reached.
TEST_F(AccessibilityTest, WithoutTheServiceNobodyIsTrusted) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    accessibility = overlay::makeAtspiAccessibility(
        [](TopLeftPoint point) { return std::pair(static_cast<int>(point.x), static_cast<int>(point.y)); });
    for (int i = 0; i < 30; ++i) {
        EXPECT_FALSE(accessibility->isProcessTrusted());
        runFor(std::chrono::milliseconds(10));
    }
}

TEST_F(AccessibilityTest, TextFieldsAreDistinguishedFromLabelsAndAHungApplicationStallsNothing) {
    const Application first = startApplication("first", 0, 0);
    const Application second = startApplication("second", 300, 200);
    ASSERT_GT(second.text.x, 300);
    accessibility = overlay::makeAtspiAccessibility(
        [](TopLeftPoint point) { return std::pair(static_cast<int>(point.x), static_cast<int>(point.y)); });
    ASSERT_TRUE(eventually([&] { return accessibility->isProcessTrusted(); }));
    EXPECT_TRUE(becomes(first.text, "AXTextArea"));
    EXPECT_TRUE(becomes(second.text, "AXTextArea"));
    EXPECT_TRUE(becomes(first.label, std::nullopt));
    EXPECT_TRUE(becomes(first.text, "AXTextArea"));

    first.program->child->signal(SIGSTOP);
    EXPECT_TRUE(becomes(second.text, "AXTextArea"));
    for (int i = 0; i < 30; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        accessibility->roleAt({first.text.x + i, first.text.y});
        longest = std::max(longest, std::chrono::steady_clock::now() - begin);
        runFor(std::chrono::milliseconds(8));
    }
    EXPECT_LT(longest, std::chrono::milliseconds(50));

    first.program->child->signal(SIGCONT);
    EXPECT_TRUE(becomes(first.text, "AXTextArea"));
    // The end of the asking object waits for nobody either.
    first.program->child->signal(SIGSTOP);
    accessibility->roleAt(first.label);
    const auto begin = std::chrono::steady_clock::now();
    accessibility.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
}

}  // namespace
}  // namespace pintle
