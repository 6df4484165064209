// A client of its own on the test's display, independent of the backend: it makes monitors and windows, moves
// the pointer and clicks, and reads what is really drawn, the hardware pointer included, from the file into
// which the server draws.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/bitmap.h"

namespace pintle {

/// Red, green, blue.
using Pixel = std::array<std::uint8_t, 3>;

/// What the server has drawn at one moment.
class Drawn {
  public:
    Drawn(int width, int height, std::vector<Pixel> pixels)
        : width_(width), height_(height), pixels_(std::move(pixels)) {}
    int width() const { return width_; }
    int height() const { return height_; }
    Pixel at(int x, int y) const { return pixels_[static_cast<std::size_t>(y) * width_ + x]; }
    friend bool operator==(const Drawn&, const Drawn&) = default;

  private:
    int width_;
    int height_;
    std::vector<Pixel> pixels_;
};

class Onlooker {
  public:
    using Id = unsigned long;
    struct Place {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
    };

    /// `drawnInto`: the folder that the server was given for its picture.
    Onlooker(const std::string& display, std::filesystem::path drawnInto);
    ~Onlooker();
    Onlooker(const Onlooker&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;

    enum class Kind { overrideRedirect, managed };
    /// A window of one colour, mapped on top. It receives clicks.
    Id window(Place place, std::uint32_t rgb, const std::string& windowClass = "",
              Kind kind = Kind::overrideRedirect);
    void hide(Id window);
    void setType(Id window, const std::string& type);
    /// A cursor of the server's own font, without a name.
    void setShape(Id window, unsigned fontShape);
    void listAsManaged(const std::vector<Id>& backToFront);
    void close(Id window);

    /// The primary one has the server's only output.
    void setMonitor(const std::string& name, Place place, bool primary);
    void removeMonitor(const std::string& name);

    /// By a device of the test, as a mouse does.
    void move(int x, int y);
    /// By a request of a program: no device reports it.
    void warp(int x, int y);
    void click();
    /// How often the window was clicked since the last question.
    int clicksOn(Id window);
    void focus(Id window);
    Id focused();

    /// The windows of the overlay that are mapped.
    std::vector<Id> overlayWindows(bool alsoUnmapped = false);
    /// The topmost mapped window.
    Id topmost();
    Place placeOf(Id window);
    /// Ends the connection that made the window.
    void killOwnerOf(Id window);

    Drawn drawn();
    void synchronize();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// What must be drawn where an image with its top-left corner at (left, top) lies over `under`: blended by
/// its alpha, or, cut to a shape, in full wherever it is at least half opaque.
Drawn drawnOver(const Drawn& under, const Bitmap& image, int left, int top, bool blended);

/// Where the pictures begin to differ and how, in words.
std::string firstDifference(const Drawn& a, const Drawn& b);

/// The largest difference of any channel of any pixel.
int largestDifference(const Drawn& a, const Drawn& b);

}  // namespace pintle
