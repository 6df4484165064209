#include "platform/plist/plist_guard.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string_view>
#include <vector>

namespace pintle {
namespace {

constexpr std::string_view kBinaryMark = "bplist00";
constexpr std::size_t kTrailerSize = 32;
/// Of all objects together, each counted as often as it is referred to.
constexpr std::uint64_t kMostExpandedBytes = std::uint64_t{128} << 20;
constexpr std::uint64_t kMostExpandedObjects = std::uint64_t{1} << 20;

class BinaryList {
  public:
    explicit BinaryList(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool sound() {
        if (bytes_.size() < kBinaryMark.size() + 1 + kTrailerSize || bytes_.size() > kLargestPropertyList ||
            !std::equal(kBinaryMark.begin(), kBinaryMark.end(), bytes_.begin()))
            return false;
        const std::size_t trailer = bytes_.size() - kTrailerSize;
        offsetSize_ = bytes_[trailer + 6];
        referenceSize_ = bytes_[trailer + 7];
        objects_ = number(trailer + 8, 8);
        const std::uint64_t root = number(trailer + 16, 8);
        table_ = number(trailer + 24, 8);
        if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 || objects_ < 1 ||
            root >= objects_ || table_ <= kBinaryMark.size() || table_ > trailer)
            return false;
        if (objects_ > (trailer - table_) / offsetSize_ || objects_ * offsetSize_ != trailer - table_)
            return false;
        return walk(root);
    }

  private:
    struct Level {
        std::uint64_t next;
        std::uint64_t end;
        /// References up to here are keys and must be strings.
        std::uint64_t keysEnd;
    };
    struct Object {
        int type = 0;
        std::uint64_t count = 0;
        std::uint64_t payload = 0;
    };

    std::uint64_t number(std::uint64_t at, std::uint64_t size) const {
        std::uint64_t value = 0;
        for (std::uint64_t i = 0; i < size; ++i) value = (value << 8) | bytes_[at + i];
        return value;
    }

    /// Reads the head of an object and checks that its content ends before the table.
    std::optional<Object> object(std::uint64_t index) const {
        const std::uint64_t at = number(table_ + index * offsetSize_, offsetSize_);
        if (at < kBinaryMark.size() || at >= table_) return std::nullopt;
        Object found{bytes_[at] >> 4, static_cast<std::uint64_t>(bytes_[at] & 0x0f), at + 1};
        std::uint64_t size = 0;
        switch (found.type) {
            case 0x0:
                if (found.count != 8 && found.count != 9) return std::nullopt;
                return found;
            case 0x1:
                if (found.count > 4) return std::nullopt;
                size = std::uint64_t{1} << found.count;
                break;
            case 0x2:
                if (found.count != 2 && found.count != 3) return std::nullopt;
                size = std::uint64_t{1} << found.count;
                break;
            case 0x3:
                if (found.count != 3) return std::nullopt;
                size = 8;
                break;
            case 0x8:
                size = found.count + 1;
                if (size > 8) return std::nullopt;
                break;
            case 0x4:
            case 0x5:
            case 0x6:
            case 0xa:
            case 0xd: {
                if (found.count == 0x0f) {
                    if (found.payload >= table_) return std::nullopt;
                    const int width = bytes_[found.payload];
                    if (width < 0x10 || width > 0x13) return std::nullopt;
                    const std::uint64_t length = std::uint64_t{1} << (width & 0x0f);
                    if (length > table_ - found.payload - 1) return std::nullopt;
                    found.count = number(found.payload + 1, length);
                    found.payload += 1 + length;
                }
                if (found.count > bytes_.size()) return std::nullopt;
                const std::uint64_t unit = found.type == 0x6   ? 2
                                           : found.type == 0xa ? referenceSize_
                                           : found.type == 0xd ? 2 * referenceSize_
                                                               : 1;
                size = found.count * unit;
                break;
            }
            default:
                return std::nullopt;
        }
        if (found.payload > table_ || size > table_ - found.payload) return std::nullopt;
        if (found.type == 0x3) {
            const auto seconds = std::bit_cast<double>(number(found.payload, 8));
            if (!(seconds >= kEarliestDate && seconds <= kLatestDate)) return std::nullopt;
        }
        if ((found.type == 0x5 || found.type == 0x6) && !isText(found)) return std::nullopt;
        expanded_ += size + 1;
        return found;
    }

    /// Without NUL, which the library stops the process for, and without half a pair of surrogates.
    bool isText(const Object& text) const {
        const auto content = bytes_.subspan(text.payload);
        if (text.type == 0x5)
            return std::all_of(content.begin(), content.begin() + static_cast<std::ptrdiff_t>(text.count),
                               [](std::uint8_t c) { return c > 0 && c < 0x80; });
        bool half = false;
        for (std::uint64_t i = 0; i < text.count; ++i) {
            const unsigned unit = (unsigned{content[2 * i]} << 8) | content[2 * i + 1];
            const bool low = unit >= 0xdc00 && unit < 0xe000;
            if (unit == 0 || low != half) return false;
            half = unit >= 0xd800 && unit < 0xdc00;
        }
        return !half;
    }

    bool enter(std::uint64_t index, bool asKey, std::vector<Level>& levels) {
        if (index >= objects_ || ++visited_ > kMostExpandedObjects) return false;
        const auto found = object(index);
        if (!found || expanded_ > kMostExpandedBytes) return false;
        if (asKey) return found->type == 0x5 || found->type == 0x6;
        if (found->type != 0xa && found->type != 0xd) return true;
        if (levels.size() >= kDeepestPropertyList) return false;
        const std::uint64_t keys = found->type == 0xd ? found->count : 0;
        const std::uint64_t keysEnd = found->payload + keys * referenceSize_;
        levels.push_back({found->payload, keysEnd + found->count * referenceSize_, keysEnd});
        return true;
    }

    bool walk(std::uint64_t root) {
        std::vector<Level> levels;
        if (!enter(root, false, levels)) return false;
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next >= level.end) {
                levels.pop_back();
                continue;
            }
            const bool asKey = level.next < level.keysEnd;
            const std::uint64_t index = number(level.next, referenceSize_);
            level.next += referenceSize_;
            if (!enter(index, asKey, levels)) return false;
        }
        return true;
    }

    std::span<const std::uint8_t> bytes_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objects_ = 0;
    std::uint64_t table_ = 0;
    std::uint64_t visited_ = 0;
    mutable std::uint64_t expanded_ = 0;
};

constexpr std::string_view kSpaces = " \t\r\n";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kSpaces);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpaces) - first + 1);
}

bool isInteger(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        return !text.empty() && text.size() <= 16 &&
               text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
    }
    return !text.empty() && text.size() <= 20 && std::all_of(text.begin(), text.end(), isDigit);
}

bool isReal(std::string_view text) {
    if (text == "nan" || text == "NaN") return true;
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    if (text == "infinity" || text == "inf") return true;
    const auto digits = [&text] {
        std::size_t count = 0;
        while (!text.empty() && isDigit(text.front())) {
            text.remove_prefix(1);
            ++count;
        }
        return count;
    };
    std::size_t mantissa = digits();
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        mantissa += digits();
    }
    if (mantissa == 0) return false;
    if (text.starts_with('e') || text.starts_with('E')) {
        text.remove_prefix(1);
        if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
        if (digits() == 0) return false;
    }
    return text.empty();
}

bool isDate(std::string_view text) {
    constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
    if (text.size() != kForm.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (kForm[i] == '0' ? !isDigit(text[i]) : text[i] != kForm[i]) return false;
    return text.substr(0, 4) != "0000";
}

class XmlList {
  public:
    explicit XmlList(std::string_view text) : text_(text) {}

    std::optional<std::string> plain() {
        if (text_.size() > kLargestPropertyList || text_.find('\0') != std::string_view::npos)
            return std::nullopt;
        if (text_.starts_with("\xEF\xBB\xBF")) text_.remove_prefix(3);
        if (!prologue() || !root() || !body()) return std::nullopt;
        // After the root only blanks and comments may follow.
        while (true) {
            skipSpaces();
            if (text_.empty()) return plain_;
            if (!text_.starts_with("<!--") || !skipPast("-->")) return std::nullopt;
        }
    }

  private:
    static constexpr std::array<std::string_view, 8> kScalars = {"key",  "string", "integer", "real",
                                                                 "true", "false",  "date",    "data"};
    struct Level {
        std::string_view name;
        bool wantsKey = false;
    };

    void skipSpaces() {
        const auto first = text_.find_first_not_of(kSpaces);
        text_.remove_prefix(first == std::string_view::npos ? text_.size() : first);
    }
    bool skipPast(std::string_view mark) {
        const auto at = text_.find(mark);
        if (at == std::string_view::npos) return false;
        text_.remove_prefix(at + mark.size());
        return true;
    }

    bool prologue() {
        while (true) {
            skipSpaces();
            if (text_.starts_with("<?")) {
                if (!skipPast("?>")) return false;
            } else if (text_.starts_with("<!--")) {
                if (!skipPast("-->")) return false;
            } else if (text_.starts_with("<!DOCTYPE")) {
                const auto end = text_.find('>');
                // An internal subset could declare entities, which nothing here resolves.
                if (end == std::string_view::npos || text_.substr(0, end).find('[') != std::string_view::npos)
                    return false;
                text_.remove_prefix(end + 1);
            } else {
                return true;
            }
        }
    }

    bool root() {
        constexpr std::string_view kOpen = "<plist";
        if (!text_.starts_with(kOpen) || text_.size() == kOpen.size()) return false;
        const char after = text_[kOpen.size()];
        if (after != '>' && kSpaces.find(after) == std::string_view::npos) return false;
        const auto end = text_.find('>');
        if (end == std::string_view::npos || text_[end - 1] == '/') return false;
        text_.remove_prefix(end + 1);
        plain_ = "<plist version=\"1.0\">";
        levels_.push_back({"plist"});
        return true;
    }

    /// A value, or a key, begins in the innermost level.
    bool place(bool key) {
        Level& level = levels_.back();
        if (level.name == "plist") {
            if (key || rootTaken_) return false;
            rootTaken_ = true;
            return true;
        }
        if (level.name == "array") return !key;
        if (key != level.wantsKey) return false;
        level.wantsKey = !level.wantsKey;
        return true;
    }

    bool body() {
        while (!levels_.empty()) {
            skipSpaces();
            if (text_.starts_with("<!--")) {
                if (!skipPast("-->")) return false;
                continue;
            }
            const auto end = text_.find('>');
            if (!text_.starts_with('<') || end == std::string_view::npos) return false;
            std::string_view tag = text_.substr(1, end - 1);
            text_.remove_prefix(end + 1);
            if (tag.starts_with('/')) {
                if (!close(trimmed(tag.substr(1)))) return false;
                continue;
            }
            const bool empty = tag.ends_with('/');
            if (empty) tag.remove_suffix(1);
            if (!open(trimmed(tag), empty)) return false;
        }
        return true;
    }

    bool close(std::string_view name) {
        const Level level = levels_.back();
        if (level.name != name || (name == "dict" && !level.wantsKey) || (name == "plist" && !rootTaken_))
            return false;
        levels_.pop_back();
        plain_.append("</").append(name).append(">");
        return true;
    }

    bool open(std::string_view name, bool empty) {
        const bool container = name == "dict" || name == "array";
        if (!container && std::find(kScalars.begin(), kScalars.end(), name) == kScalars.end()) return false;
        if (!place(name == "key")) return false;
        if (container && !empty) {
            // The root element is a level of its own here.
            if (levels_.size() > kDeepestPropertyList) return false;
            levels_.push_back(
                {name == "dict" ? std::string_view("dict") : std::string_view("array"), name == "dict"});
            plain_.append("<").append(name).append(">");
            return true;
        }
        if (container || name == "true" || name == "false") {
            if (!empty && !closesAtOnce(name)) return false;
            plain_.append("<").append(name).append("/>");
            return true;
        }
        std::string content;
        if (!empty && !scalar(name, content)) return false;
        if (name == "integer" && !isInteger(trimmed(content))) return false;
        if (name == "real" && !isReal(trimmed(content))) return false;
        if (name == "integer" || name == "real" || name == "date") content = std::string(trimmed(content));
        if (name == "date") {
            // The library writes years before 1000 without their zeros.
            const auto digits = std::min(content.find('-'), content.size());
            if (digits >= 1 && digits < 4) content.insert(0, 4 - digits, '0');
            if (!isDate(content)) return false;
        }
        plain_.append("<").append(name).append(">").append(content).append("</").append(name).append(">");
        return true;
    }

    bool closesAtOnce(std::string_view name) {
        skipSpaces();
        if (!text_.starts_with("</") || !text_.substr(2).starts_with(name)) return false;
        text_.remove_prefix(2 + name.size());
        skipSpaces();
        if (!text_.starts_with('>')) return false;
        text_.remove_prefix(1);
        return true;
    }

    /// The text up to the closing tag, comments left out and CDATA turned into escaped text.
    bool scalar(std::string_view name, std::string& content) {
        while (true) {
            const auto next = text_.find('<');
            if (next == std::string_view::npos) return false;
            content.append(text_.substr(0, next));
            text_.remove_prefix(next);
            if (text_.starts_with("<!--")) {
                if (!skipPast("-->")) return false;
            } else if (text_.starts_with("<![CDATA[")) {
                text_.remove_prefix(9);
                const auto end = text_.find("]]>");
                if (end == std::string_view::npos) return false;
                for (const char c : text_.substr(0, end)) {
                    if (c == '<')
                        content += "&lt;";
                    else if (c == '&')
                        content += "&amp;";
                    else
                        content += c;
                }
                text_.remove_prefix(end + 3);
            } else {
                return closesAtOnce(name) && entitiesAreKnown(content);
            }
        }
    }

    static bool entitiesAreKnown(std::string_view content) {
        for (auto at = content.find('&'); at != std::string_view::npos; at = content.find('&')) {
            content.remove_prefix(at + 1);
            const auto end = content.find(';');
            if (end == std::string_view::npos || end > 8) return false;
            const auto name = content.substr(0, end);
            const bool known =
                name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
            const bool number = name.size() > 1 && name.front() == '#';
            if (!known && !number) return false;
            content.remove_prefix(end + 1);
        }
        return true;
    }

    std::string_view text_;
    std::string plain_;
    std::vector<Level> levels_;
    bool rootTaken_ = false;
};

}  // namespace

bool isSoundBinaryPropertyList(std::span<const std::uint8_t> bytes) { return BinaryList(bytes).sound(); }

std::optional<std::string> plainXmlPropertyList(std::span<const std::uint8_t> bytes) {
    return XmlList({reinterpret_cast<const char*>(bytes.data()), bytes.size()}).plain();
}

}  // namespace pintle
