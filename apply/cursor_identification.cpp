#include "apply/cursor_identification.h"

#include <algorithm>
#include <cstdlib>

namespace pintle {
namespace {

constexpr int kShapeLimit = 2000;

bool nearlySquare(double ratio) { return ratio > 0.85 && ratio < 1.15; }

}  // namespace

int shapeDistance(const AlphaSignature& a, const AlphaSignature& b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(int{a[i]} - int{b[i]});
    return sum;
}

std::optional<std::string> nameByShape(std::span<const KnownCursor> known, const AlphaSignature& signature) {
    const KnownCursor* best = nullptr;
    int smallest = kShapeLimit;
    for (const KnownCursor& each : known) {
        const int distance = shapeDistance(each.signature, signature);
        if (distance < smallest) {
            smallest = distance;
            best = &each;
        }
    }
    if (!best) return std::nullopt;
    return best->name;
}

std::optional<std::string> nameForAccessibilityRole(std::string_view role) {
    if (role == "AXTextField" || role == "AXTextArea" || role == "AXSearchField" || role == "AXComboBox")
        return "xterm";
    if (role == "AXLink") return "pointer";
    return std::nullopt;
}

std::string nameByGeometry(Point hotspot, Size size) {
    const double w = size.width;
    const double h = size.height;
    const double fx = hotspot.x / w;
    const double fy = hotspot.y / h;
    const double r = w / h;
    if (h <= 0) {
        if (w <= 0) return "left_ptr";
        return fx >= 0.25 ? "pointer" : "left_ptr";
    }
    if (w <= 0) {
        if (fy >= 0.25) {
            if (r < 0.55) return "xterm";
            if (fy < 0.3 && nearlySquare(r)) return "pointer";
        }
        return "left_ptr";
    }
    if (fx < 0.25 && fy < 0.25) return "left_ptr";
    if (r < 0.55) return "xterm";
    if (fy < 0.3 && nearlySquare(r)) return "pointer";
    if (fx <= 0.4 || fx >= 0.6) return "left_ptr";
    if (fy <= 0.4 || fy >= 0.6) return "left_ptr";
    return r < 0.9 ? "size_ver" : "size_hor";
}

std::string identifyByDirectComparison(std::span<const KnownCursor> known, const CurrentCursorFacts& current,
                                       const std::string& currentCursorName,
                                       const std::function<AlphaSignature()>& signature,
                                       const std::function<std::optional<std::string>()>& accessibility) {
    for (const KnownCursor& each : known)
        if (std::equal(each.encoded.begin(), each.encoded.end(), current.encoded.begin(),
                       current.encoded.end()))
            return each.name;
    if (!current.present) return "left_ptr";
    const AlphaSignature mask = signature();
    if (std::all_of(mask.begin(), mask.end(), [](std::uint8_t alpha) { return alpha == 0; }))
        return currentCursorName;
    if (auto name = nameByShape(known, mask)) return *name;
    if (auto name = accessibility()) return *name;
    return nameByGeometry(current.hotspot, current.size);
}

}  // namespace pintle
