// What the desktop's accessibility service says of the element at a point. Main thread only; never blocks.
#pragma once

#include <optional>
#include <string>

namespace pintle {

/// The only place counted from the top: x and y from the top-left corner of the first screen, in points.
struct TopLeftPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const TopLeftPoint&, const TopLeftPoint&) = default;
};

class Accessibility {
  public:
    virtual ~Accessibility() = default;
    /// Whether this process may ask.
    virtual bool isProcessTrusted() = 0;
    /// The role of the element there ("AXTextField", "AXLink", …); absent when there is none or it is not
    /// known yet.
    virtual std::optional<std::string> roleAt(TopLeftPoint point) = 0;
};

}  // namespace pintle
