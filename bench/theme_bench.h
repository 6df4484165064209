// Registers the benches of one theme with the runner.
#pragma once

#include "bench/themes.h"

namespace pintle::bench {

void addThemeBenches(const Theme& theme);

}  // namespace pintle::bench
