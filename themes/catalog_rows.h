// The catalog as plain data: one row per theme, in list order. Read by CursorThemeInfo::catalog.
#pragma once

#include <span>
#include <string_view>

#include "themes/cursor_handedness.h"

namespace pintle {

struct CatalogRow {
    std::string_view id;
    std::string_view name;
    std::string_view author;
    std::string_view license;
    std::string_view downloadURL;
    CursorHandedness handedness;
};

std::span<const CatalogRow> catalogRows();

}  // namespace pintle
