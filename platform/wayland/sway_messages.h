// How sway is talked to: messages of a header and a text. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland::sway {

enum class Request : std::uint32_t { runCommand = 0, subscribe = 2, outputs = 3, version = 7, seats = 101 };
/// What the answers to a subscription are followed by.
enum class Event : std::uint32_t { workspace = 0x80000000, output = 0x80000001 };

struct Header {
    /// Bytes of what follows.
    std::uint32_t length = 0;
    std::uint32_t type = 0;
};

inline constexpr std::size_t kHeaderBytes = 14;
/// Longer ones are not read.
inline constexpr std::uint32_t kLargestAnswer = std::uint32_t{16} << 20;

std::string message(Request request, std::string_view payload);
/// Of the first bytes; absent when they are not sway's or too few.
std::optional<Header> headerOf(std::string_view bytes);
/// Empty where there is no such text.
std::string textIn(const nlohmann::json& object, const char* key);
/// Empty outside of sway.
std::string socketOf(const Environment& environment);

}  // namespace pintle::wayland::sway
