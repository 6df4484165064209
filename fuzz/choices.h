// Turns the bytes of an input into decisions, for targets whose input describes something. Bytes that are
// used up give zeros, so that every input means something.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace pintle {

class Choices {
  public:
    explicit Choices(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    bool isEmpty() const { return rest_.empty(); }
    std::span<const std::uint8_t> rest() const { return rest_; }

    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const auto value = rest_.front();
        rest_ = rest_.subspan(1);
        return value;
    }
    bool flag() { return byte() % 2 == 1; }
    /// 0 to `count` - 1; `count` is 1 to 65536.
    std::size_t below(std::size_t count) { return count <= 256 ? byte() % count : number(2) % count; }
    std::uint64_t number(int bytes) {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) value = value << 8 | byte();
        return value;
    }
    /// As many bytes as the next one says.
    std::string text() {
        const std::size_t wanted = byte();
        const auto length = std::min(wanted, rest_.size());
        std::string value(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(length));
        rest_ = rest_.subspan(length);
        return value;
    }

  private:
    std::span<const std::uint8_t> rest_;
};

/// Ends the program, which the engine reports as a crash.
inline void require(bool holds) {
    if (!holds) std::abort();
}

inline std::string_view textOf(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace pintle
