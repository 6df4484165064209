#include "platform/wayland/sway_messages.h"

#include <cstring>
#include <nlohmann/json.hpp>

namespace pintle::wayland::sway {
namespace {

constexpr std::string_view kMagic = "i3-ipc";
static_assert(kMagic.size() + sizeof(Header) == kHeaderBytes);

}  // namespace

std::string message(Request request, std::string_view payload) {
    // In the byte order of this machine.
    const Header header{static_cast<std::uint32_t>(payload.size()), static_cast<std::uint32_t>(request)};
    std::string bytes(kMagic);
    bytes.append(reinterpret_cast<const char*>(&header), sizeof header);
    return bytes.append(payload);
}

std::optional<Header> headerOf(std::string_view bytes) {
    if (bytes.size() < kHeaderBytes || !bytes.starts_with(kMagic)) return std::nullopt;
    Header header;
    std::memcpy(&header, bytes.data() + kMagic.size(), sizeof header);
    return header;
}

std::string textIn(const nlohmann::json& object, const char* key) {
    if (!object.is_object()) return {};
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::string socketOf(const Environment& environment) {
    auto path = environment("SWAYSOCK").value_or("");
    return path.starts_with('/') ? path : std::string();
}

}  // namespace pintle::wayland::sway
