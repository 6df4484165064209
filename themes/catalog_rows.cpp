#include "themes/catalog_rows.h"

#include <iterator>

namespace pintle {
namespace {

using enum CursorHandedness;

constexpr CatalogRow kRows[] = {
#include "themes/catalog_rows.inc"
};

}  // namespace

std::span<const CatalogRow> catalogRows() { return kRows; }

}  // namespace pintle
