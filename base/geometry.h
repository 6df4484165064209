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

}  // namespace pintle
