// The grid of a slider. Pure; any thread.
#pragma once

#include <algorithm>
#include <cmath>

namespace pintle {

struct SliderRange {
    double from = 0;
    double to = 1;
    double step = 0.1;

    /// The nearest value that the slider can stand at. Computed from whole steps, so that the values on the
    /// way from one end to the other are those that people write: 1.15, not 1.1500000000000001.
    double nearest(double value) const {
        if (std::isnan(value)) return from;
        const double steps = std::round((std::clamp(value, from, to) - from) / step);
        const double perOne = std::round(1 / step);
        return std::min(to, (std::round(from * perOne) + steps) / perOne);
    }
    /// 0.0 to 1.0.
    double position(double value) const { return (std::clamp(value, from, to) - from) / (to - from); }
};

}  // namespace pintle
