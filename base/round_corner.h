// The steps of a round corner where nothing can blend. Pure; any thread.
#pragma once

#include <vector>

namespace pintle {

/// For each of the `radius` rows of pixels from the outer edge inward, how many pixels are cut off at its
/// end: those whose middle lies outside of the circle.
inline std::vector<int> cornerInsets(int radius) {
    std::vector<int> insets;
    for (int row = 0; row < radius; ++row) {
        // In half pixels, so that all of it is whole.
        const long long down = 2LL * (radius - row) - 1;
        int cut = 0;
        while (cut < radius) {
            const long long across = 2LL * (radius - cut) - 1;
            if (across * across + down * down <= 4LL * radius * radius) break;
            ++cut;
        }
        insets.push_back(cut);
    }
    return insets;
}

}  // namespace pintle
