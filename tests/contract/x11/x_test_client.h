// A program like any other on the test's display, written against the old X library and independent of the
// backend: it has windows with cursors of a theme, moves the pointer and reports which cursor is shown.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pintle {

/// As the server reports it.
struct SeenCursor {
    std::string name;
    int width = 0;
    int height = 0;
    int hotspotX = 0;
    int hotspotY = 0;
    /// 0xAARRGGBB.
    std::vector<std::uint32_t> pixels;
};

class XTestClient {
  public:
    using Id = unsigned long;

    XTestClient(const std::string& display, const std::string& theme);
    ~XTestClient();
    XTestClient(const XTestClient&) = delete;
    XTestClient& operator=(const XTestClient&) = delete;

    Id root() const;
    /// A mapped window of 100 × 100 pixels at (x, y) without a cursor of its own.
    Id window(int x, int y);
    /// A cursor of the client's theme, made as programs make it: with its name.
    Id cursor(const std::string& name);
    /// The same picture in a cursor without a name.
    Id namelessCursor(const std::string& name);
    /// A glyph of the font "cursor" for which the client's theme has no picture, in two colours of 0xRRGGBB.
    Id glyphCursor(unsigned number, std::uint32_t foreground, std::uint32_t background);
    /// A named cursor none of whose pixels can be seen.
    Id blankCursor(const std::string& name);
    void define(Id window, Id cursor);
    void defineForDevice(Id window, Id cursor);
    void changeByName(Id cursor, const std::string& name);
    /// Takes the pointer for itself, showing this cursor wherever it is.
    void grab(Id cursor);
    void ungrab();
    void warp(int x, int y);
    std::pair<int, int> pointer();
    void killOwnerOf(Id resource);
    bool exists(Id window);
    Id windowProperty(Id window, const std::string& name);
    void setWindowProperty(Id window, const std::string& name, Id value);
    void setResources(const std::string& text);
    /// Becomes the settings manager, with this cursor theme and size.
    void publishSettings(const std::string& theme, int size);
    /// Answers each cursor that comes to be shown with a new one of its own on the window. Returns how often
    /// it did so since the last question: once or not at all.
    int contendFor(Id window, const std::string& name, bool channelIsDevice);
    void synchronize();

    /// Absent when the server does not let the cursor be read.
    std::optional<SeenCursor> shown();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Writes a theme whose cursors each have a colour of their own. A name with `frames` above 1 is animated.
struct TestThemeCursor {
    std::string name;
    std::uint32_t color = 0;
    int frames = 1;
    std::uint32_t delay = 50;
    int size = 24;
};
void writeTestTheme(const std::filesystem::path& folder, const std::string& theme,
                    const std::vector<TestThemeCursor>& cursors);

}  // namespace pintle
