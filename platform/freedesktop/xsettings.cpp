#include "platform/freedesktop/xsettings.h"

#include <utility>

namespace pintle {
namespace {

/// Reads numbers of either byte order from bytes that may end anywhere.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    void readBigEndian(bool big) { big_ = big; }
    std::optional<std::uint64_t> number(std::size_t bytes) {
        const auto raw = take(bytes);
        if (!raw) return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value |= std::uint64_t{(*raw)[i]} << (8 * (big_ ? bytes - 1 - i : i));
        return value;
    }
    std::optional<std::span<const std::uint8_t>> take(std::size_t bytes) {
        if (bytes > rest_.size()) return std::nullopt;
        const auto taken = rest_.first(bytes);
        rest_ = rest_.subspan(bytes);
        return taken;
    }
    /// A text and the padding behind it.
    std::optional<std::string> text(std::size_t bytes) {
        const auto raw = take(bytes);
        if (!raw || !take((4 - bytes % 4) % 4)) return std::nullopt;
        return std::string(raw->begin(), raw->end());
    }

  private:
    std::span<const std::uint8_t> rest_;
    bool big_ = false;
};

}  // namespace

std::vector<XSetting> readXSettings(std::span<const std::uint8_t> property) {
    enum { integer = 0, string = 1, color = 2 };
    std::vector<XSetting> result;
    Reader reader(property);
    const auto order = reader.number(4);
    if (!order) return result;
    reader.readBigEndian((*order & 0xFF) == 1);
    if (!reader.number(4)) return result;
    const auto count = reader.number(4);
    for (std::uint64_t i = 0; count && i < *count; ++i) {
        const auto type = reader.number(1);
        if (!type || !reader.take(1)) break;
        const auto nameLength = reader.number(2);
        if (!nameLength) break;
        auto name = reader.text(*nameLength);
        if (!name || !reader.number(4)) break;
        if (*type == integer) {
            const auto value = reader.number(4);
            if (!value) break;
            result.push_back(
                {std::move(*name), static_cast<std::int32_t>(static_cast<std::uint32_t>(*value))});
        } else if (*type == string) {
            const auto length = reader.number(4);
            if (!length) break;
            auto value = reader.text(*length);
            if (!value) break;
            result.push_back({std::move(*name), std::move(*value)});
        } else if (*type == color) {
            if (!reader.take(8)) break;
        } else {
            break;
        }
    }
    return result;
}

CursorXSettings parseXSettings(std::span<const std::uint8_t> property) {
    CursorXSettings result;
    for (auto& [name, value] : readXSettings(property)) {
        const auto* const size = std::get_if<std::int32_t>(&value);
        auto* const theme = std::get_if<std::string>(&value);
        if (size && name == "Gtk/CursorThemeSize" && *size > 0) result.themeSize = *size;
        if (size && name == "Gdk/WindowScalingFactor") result.windowScalingFactor = *size;
        if (theme && name == "Gtk/CursorThemeName" && !theme->empty()) result.themeName = std::move(*theme);
    }
    return result;
}

}  // namespace pintle
