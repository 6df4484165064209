// The table of desktop cursor identifiers: which X11 names of a theme may supply each. Pure data, read by
// the registration plan and the snapshots.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace pintle {

struct CursorIdentifierRow {
    std::string_view identifier;
    /// X11 names in order of preference; unused places at the end are empty.
    std::array<std::string_view, 4> places;

    constexpr std::span<const std::string_view> candidates() const {
        std::size_t count = 0;
        while (count < places.size() && !places[count].empty()) ++count;
        return {places.data(), count};
    }
};

/// All 46 rows in the order in which they are registered.
std::span<const CursorIdentifierRow> cursorIdentifiers();

/// The rows whose desktop cursors are backed up and restored: the first ten.
std::span<const CursorIdentifierRow> backedUpIdentifiers();

inline constexpr std::string_view kArrowIdentifier = "com.apple.coregraphics.Arrow";

}  // namespace pintle
