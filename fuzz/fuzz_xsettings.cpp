// The input is what a settings manager publishes in a property of its window.
#include <optional>
#include <vector>

#include "fuzz/choices.h"
#include "platform/freedesktop/look_rules.h"
#include "platform/freedesktop/xsettings.h"

namespace pintle {
namespace {

/// The format written down as offsets.
class PlainXSettings {
  public:
    explicit PlainXSettings(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::vector<XSetting> read() const {
        std::vector<XSetting> all;
        if (bytes_.size() < 12) return all;
        const auto count = number(8, 4);
        std::size_t at = 12;
        for (std::uint64_t i = 0; i < count && has(at, 4); ++i) {
            const auto type = bytes_[at];
            const auto nameLength = number(at + 2, 2);
            const auto name = at + 4;
            at = name + padded(nameLength);
            if (!has(name, padded(nameLength)) || !has(at, 4)) break;
            at += 4;
            if (type == 0) {
                if (!has(at, 4)) break;
                all.push_back({text(name, nameLength),
                               static_cast<std::int32_t>(static_cast<std::uint32_t>(number(at, 4)))});
                at += 4;
            } else if (type == 1) {
                if (!has(at, 4)) break;
                const auto length = number(at, 4);
                if (!has(at + 4, padded(length))) break;
                all.push_back({text(name, nameLength), text(at + 4, length)});
                at += 4 + padded(length);
            } else if (type == 2) {
                if (!has(at, 8)) break;
                at += 8;
            } else {
                break;
            }
        }
        return all;
    }

  private:
    static std::uint64_t padded(std::uint64_t length) { return (length + 3) / 4 * 4; }
    bool has(std::uint64_t at, std::uint64_t count) const { return at + count <= bytes_.size(); }
    std::uint64_t number(std::uint64_t at, std::uint64_t size) const {
        const bool big = bytes_[0] == 1;
        std::uint64_t value = 0;
        for (std::uint64_t i = 0; i < size; ++i)
            value = value << 8 | bytes_[static_cast<std::size_t>(big ? at + i : at + size - 1 - i)];
        return value;
    }
    std::string text(std::uint64_t at, std::uint64_t length) const {
        return std::string(
            textOf(bytes_.subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(length))));
    }

    std::span<const std::uint8_t> bytes_;
};

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    const std::span data(bytes, count);
    const auto settings = readXSettings(data);
    require(settings == PlainXSettings(data).read());

    std::optional<std::string> theme;
    std::optional<int> size;
    for (const auto& [name, value] : settings) {
        const auto* const text = std::get_if<std::string>(&value);
        const auto* const number = std::get_if<std::int32_t>(&value);
        if (text && name == "Gtk/CursorThemeName" && !text->empty()) theme = *text;
        if (number && name == "Gtk/CursorThemeSize" && *number > 0) size = *number;
    }
    const auto cursors = parseXSettings(data);
    require(cursors.themeName == theme && cursors.themeSize == size);

    const auto look = desktopLook({}, publishedLook(settings), true, false);
    require(look.textScale >= 0.5 && look.textScale <= 4);
    return 0;
}
