// The scales of the outputs that a Wayland compositor has now.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace pintle::wayland {

/// As `display` (a name or a path; absent: the environment's) announces them: whole numbers, rounded up from
/// what is really used. Where an output's is 2, the usual fractions below it are answered too. Empty without
/// a compositor, and when it does not answer within a second. Any thread.
std::vector<double> outputScales(const std::optional<std::string>& display);

}  // namespace pintle::wayland
