// Points, sizes and rectangles in points, in the one global coordinate system of the program: y grows
// upward and the origin is the lower-left corner of the first screen. Hotspots are the exception: they
// count from the top-left corner of their image.
#pragma once

namespace pintle {

struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    Point origin;
    Size size;
    friend bool operator==(const Rect&, const Rect&) = default;
};

/// Whether a mouse location lies in a rectangle. A mouse location names the upper left corner of its pixel,
/// so the left and upper edges belong to the rectangle and the right and lower ones do not.
constexpr bool mouseInRect(Point mouse, const Rect& rect) {
    return mouse.x >= rect.origin.x && mouse.x < rect.origin.x + rect.size.width && mouse.y > rect.origin.y &&
           mouse.y <= rect.origin.y + rect.size.height;
}

}  // namespace pintle
