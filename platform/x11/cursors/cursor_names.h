// Which X11 cursor names each cursor identifier covers: what is replaced, by name, when the identifier is
// registered. A constant table; any thread.
#pragma once

#include <span>
#include <string_view>

namespace pintle::x11 {

struct CursorNameRow {
    std::string_view identifier;
    /// In order of preference where one of them has to stand for the row. No name is in two rows.
    std::span<const std::string_view> names;
};

/// The rows that have X11 names.
std::span<const CursorNameRow> cursorNameTable();

/// Empty for an identifier without X11 counterpart of its own.
std::span<const std::string_view> namesOf(std::string_view identifier);

/// The row a name belongs to, absent (nullptr) for names outside the table.
const CursorNameRow* rowOf(std::string_view name);

/// Every name of the table, row by row.
std::span<const std::string_view> allCursorNames();

/// Names of cursors that are meant to be invisible.
bool isNeverTouched(std::string_view name);

/// The first name of the identifier whose picture the root window shows.
inline constexpr std::string_view kRootCursorName = "left_ptr";

}  // namespace pintle::x11
