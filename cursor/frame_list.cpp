#include "cursor/frame_list.h"

#include <cmath>

namespace pintle {

std::vector<std::size_t> sentFrames(std::size_t count) {
    constexpr std::size_t kMost = 24;
    std::vector<std::size_t> sent;
    const bool all = count <= kMost;
    sent.reserve(all ? count : kMost);
    const double step = all ? 1 : static_cast<double>(count) / static_cast<double>(kMost);
    for (std::size_t i = 0; i < (all ? count : kMost); ++i)
        sent.push_back(static_cast<std::size_t>(std::trunc(step * static_cast<double>(i))));
    return sent;
}

bool operator==(const FrameList& a, const FrameList& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!(a[i] == b[i])) return false;
    return true;
}

}  // namespace pintle
